#include "bench/hostile/Families.h"

#include <cstdint>

namespace tavrel::bench {
namespace {

// Writes the lowest digits of the number, as many as the piece has room for.
void AppendNumbered(std::string& text, const std::string& piece, std::uint64_t number) {
  const std::size_t start = text.size();
  text += piece;
  for (std::size_t i = text.size(); i > start; --i) {
    if (text[i - 1] != '#') continue;
    text[i - 1] = static_cast<char>('0' + number % 10);
    number /= 10;
  }
}

}  // namespace

std::string Family::OfSize(std::size_t bytes) const {
  std::string text = before;
  text.reserve(bytes + piece.size() + behind.size());
  for (std::uint64_t number = 0; text.size() + piece.size() <= bytes; ++number) {
    AppendNumbered(text, piece, number);
  }
  return text.append(behind);
}

std::vector<Family> AllFamilies() {
  return {
      {kSectionsInText, "<a>", "<![CDATA[]]>", "</a>"},
      {"CDATA sections with content and gaps", "<a>", "<![CDATA[x]]>yz ", "</a>"},
      {"CDATA sections without a tag behind", "<a>", "<![CDATA[x]]>", ""},
      {kSectionsInValue, "<a b='", "<![CDATA[]]>", "'/>"},
      {"CDATA sections with content in a value", "<a b='", "<![CDATA[xy]]>z", "'/>"},
      {"CDATA openers inside a section of a value", "<a b='<![CDATA[", "<![CDATA[", "]]>'/>"},
      {"CDATA markers that join in a value", "<a b='", "<![CDA<![CDATA[]]>TA[]]>", "'/>"},
      {kMillionAttributes, "<a", " a#######='four'", "/>"},  // at 16 MB
      {"attributes without quotes", "<a", " b=1", "/>"},
      {"nested elements", "", "<a>", ""},
      {"empty children", "<a> text ", "<b/>", "</a>"},
      {"closing tags without elements", "<a>", "</a>", ""},
      {"comments", "<a>", "<!---->", "</a>"},
      {"a comment that never ends", "<a>", "<!--", ""},
      {"a CDATA section that never ends", "<a>", "<![CDATA[", "</a>"},
      {"a tag that never ends, with sections", "<a ", "<![CDATA[<]]>", ""},
      {"nothing but '<'", "", "<", ""},
      {"nothing but '>'", "<a>", ">", "</a>"},
      {"blanks in a text", "<a>", " ", "</a>"},
      {"blanks in a tag", "<a", " ", "/>"},
  };
}

}  // namespace tavrel::bench
