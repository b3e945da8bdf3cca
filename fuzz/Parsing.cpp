// The parser: each of its ways builds the tree that the literal form builds.
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "tests/reference/LiteralPass.h"
#include "tests/reference/TreeHash.h"
#include "tests/support/InstructionSets.h"
#include "xml/TBXML.h"
#include "xml/TreeBuilder.h"

using tavrel::fuzz::Require;
using tavrel::reference::SummaryOf;
using tavrel::xml::ForceParsing;

namespace {

std::vector<tavrel::xml::ParsingWay> AllWays() {
  std::vector<tavrel::xml::ParsingWay> all = {{false, tavrel::system::InstructionSet::kPlain}};
  for (const auto set : tavrel::test::SetsForIndex()) all.push_back({true, set});
  return all;
}

void Compare(const std::string& text) {
  static const auto ways = AllWays();
  std::string bytes = text;
  tavrel::reference::LiteralPass literal;
  literal.Run(bytes.data());
  for (const tavrel::xml::ParsingWay& way : ways) {
    ForceParsing(way);
    const auto document = TBXML::tbxmlWithXMLString(text);
    Require(SummaryOf(document->fields()) == SummaryOf(literal.fields()), "The tree is another");
  }
}

// As it is, and in the middle of other elements, far enough from the end for the index to be used.
void ParseText(std::string_view input) {
  Compare(std::string(input));
  Compare(std::string("<r><k>v</k>").append(input).append("<k>v</k></r><k>v</k>"));
}

const tavrel::fuzz::Target parsingTarget("parsing", ParseText);

}  // namespace
