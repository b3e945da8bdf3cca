#include "xml/AttributeScanner.h"

#include "xml/ByteScan.h"
#include "xml/CDataSections.h"

using tavrel::xml::IsWhitespace;
using tavrel::xml::StartsWith;

bool AttributeScanner::Scan(char* from, char* end) noexcept {
  State state = State::kBetween;
  char quote = 0;
  for (char* at = from; at <= end; ++at) {
    const char byte = *at;
    switch (state) {
      case State::kBetween:
        if (IsWhitespace(byte)) break;
        name_ = at;
        state = State::kName;
        break;
      case State::kName:
        if (!IsWhitespace(byte) && byte != '=') break;
        *at = '\0';
        state = State::kBeforeValue;
        break;
      case State::kBeforeValue:  // everything but a quote is skipped, the '=' included
        if (byte != '"' && byte != '\'') break;
        quote = byte;
        value_ = at + 1;
        state = State::kValue;
        break;
      case State::kValue:
        if (byte == '<' && StartsWith(at, end, tavrel::xml::kSectionOpener)) {
          state = State::kSection;
        } else if (byte == quote) {
          if (!Append(at)) return false;
          state = State::kBetween;
        }
        break;
      case State::kSection:  // quotes do not count here
        if (byte == ']' && StartsWith(at, end, tavrel::xml::kSectionEnd)) state = State::kValue;
        break;
    }
  }
  return true;
}

bool AttributeScanner::Append(char* valueEnd) noexcept {
  *valueEnd = '\0';
  tavrel::xml::RemoveValueMarkers(value_, valueEnd);
  TBXMLAttribute* attribute = document_.nextAvailableAttribute();
  if (attribute == nullptr) return false;
  (last_ == nullptr ? element_.firstAttribute : last_->next) = attribute;
  attribute->name = name_;
  attribute->value = value_;
  last_ = attribute;
  return true;
}
