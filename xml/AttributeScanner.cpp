#include "xml/AttributeScanner.h"

#include "xml/ByteScan.h"
#include "xml/CDataSections.h"

namespace tavrel::xml {
namespace {

// The searches below stop at the zero byte that ends the tag.

char* SkipWhitespace(char* at) noexcept {
  while (IsWhitespace(*at)) ++at;
  return at;
}

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

// The end of a value, at its closing quote or at the end of the tag. CDATA markers are taken out of
// one that has a closing quote.
char* FinishValue(char* value, char* end, char quote) noexcept {
  char* at = value;
  while (*at != quote && *at != '<' && *at != '\0') ++at;
  if (*at != '<') return at;
  at = FindEndBehindSections(at, end, quote);
  if (at != end) RemoveValueMarkers(value, at);
  return at;
}

}  // namespace

//     <a name = "value" next='...'>
//        ^   ^  ^     ^
//        |   |  open  close
//        name nameEnd
//
// A tag that ends before the closing quote leaves no record of that attribute.
bool AttributeScanner::Scan(char* from, char* end) noexcept {
  for (char* name = SkipWhitespace(from); name != end;) {
    char* nameEnd = FindNameEnd(name + 1);  // whatever the first byte is, it belongs to the name
    if (nameEnd == end) return true;
    *nameEnd = '\0';
    char* open = FindQuote(nameEnd + 1);  // everything else is skipped, the '=' included
    if (open == end) return true;
    char* close = FinishValue(open + 1, end, *open);
    if (close == end) return true;
    *close = '\0';
    if (!Append(name, open + 1)) return false;
    name = SkipWhitespace(close + 1);
  }
  return true;
}

bool AttributeScanner::Append(char* name, char* value) noexcept {
  TBXMLAttribute* attribute = tree_.nextAvailableAttribute();
  if (attribute == nullptr) return false;
  (last_ == nullptr ? element_.firstAttribute : last_->next) = attribute;
  attribute->name = name;
  attribute->value = value;
  last_ = attribute;
  return true;
}

}  // namespace tavrel::xml
