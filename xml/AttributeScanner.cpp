#include "xml/AttributeScanner.h"

#include "xml/ByteScan.h"
#include "xml/CDataSections.h"

namespace tavrel::xml {
namespace {

// The searches below stop at the zero byte that ends the tag.

char* FindNameEnd(char* at) noexcept {
  while (*at != '=' && !IsWhitespace(*at) && *at != '\0') ++at;
  return at;
}

char* FindQuote(char* at) noexcept {
  while (*at != '"' && *at != '\'' && *at != '\0') ++at;
  return at;
}

// Quotes inside of CDATA sections do not count.
// at: the '<' of the first section, or one that opens none.
char* FindEndBehindSections(char* at, char* end, char quote) noexcept {
  while (*at == '<') {
    if (StartsWith(at, end, kSectionOpener)) {
      char* sectionEnd = FindNearText(at + kSectionOpener.size(), end, kSectionEnd);
      if (sectionEnd == nullptr) return end;
      at = sectionEnd + kSectionEnd.size();
    } else {
      ++at;
    }
    while (*at != quote && *at != '<' && *at != '\0') ++at;
  }
  return at;
}

}  // namespace

bool AttributeScanner::Scan(char* from, char* end) noexcept {
  for (char* at = from;; ++at) {
    while (IsWhitespace(*at)) ++at;
    if (at == end) return true;
    name_ = at;
    at = FindNameEnd(at + 1);  // whatever the first byte is, it belongs to the name
    if (at == end) return true;
    *at = '\0';
    at = FindQuote(at + 1);  // everything else is skipped, the '=' included
    if (at == end) return true;
    const char quote = *at++;
    value_ = at;
    while (*at != quote && *at != '<' && *at != '\0') ++at;
    if (*at == '<') {
      at = FindEndBehindSections(at, end, quote);
      if (at != end) RemoveValueMarkers(value_, at);
    }
    if (at == end) return true;
    *at = '\0';
    if (!Append()) return false;
  }
}

bool AttributeScanner::Append() noexcept {
  TBXMLAttribute* attribute = tree_.nextAvailableAttribute();
  if (attribute == nullptr) return false;
  (last_ == nullptr ? element_.firstAttribute : last_->next) = attribute;
  attribute->name = name_;
  attribute->value = value_;
  last_ = attribute;
  return true;
}

}  // namespace tavrel::xml
