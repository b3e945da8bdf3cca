#include "bench/pass/Passes.h"

#include <iterator>
#include <stdexcept>

#include "bench/support/Clocks.h"
#include "bench/support/InstructionSets.h"
#include "bench/support/Random.h"
#include "tests/reference/LiteralPass.h"
#include "xml/TreeBuilder.h"

namespace tavrel::bench {
namespace {

using system::InstructionSet;
using xml::ParsingWay;

Pass Literal() {
  const auto run = [](char* text, std::size_t) {
    reference::LiteralPass pass;
    const double start = ProcessorTime();
    pass.Run(text);
    return ProcessorTime() - start;
  };
  const auto summary = [](char* text, std::size_t) {
    reference::LiteralPass pass;
    pass.Run(text);
    return reference::SummaryOf(pass.fields());
  };
  return {"literal form", run, summary};
}

void Build(xml::DocumentTree& tree, const ParsingWay& way, char* text, std::size_t length) {
  xml::TreeBuilder builder(tree, text, text + length);
  if (way.indexed) {
    builder.BuildIndexed(way.set);
  } else {
    builder.Build();
  }
}

Pass Ours(std::string_view name, ParsingWay way) {
  const auto run = [=](char* text, std::size_t length) {
    xml::DocumentTree tree;
    const double start = ProcessorTime();
    Build(tree, way, text, length);
    return ProcessorTime() - start;
  };
  const auto summary = [=](char* text, std::size_t length) {
    xml::DocumentTree tree;
    Build(tree, way, text, length);
    TBXMLFields fields = tree.fields;
    fields.bytes = text;
    return reference::SummaryOf(fields);
  };
  return {std::string(name), run, summary};
}

std::string RandomText(Random& random) {
  // Leaves and the like most of the time, so that trees grow; everything special now and then.
  static constexpr std::string_view kUsual[] = {"<key>Name</key>",
                                                "<string>a&#38;b</string>",
                                                "<integer>7</integer>",
                                                "<k></k>",
                                                "<true/>",
                                                "<dict>",
                                                "</dict>",
                                                "\n\t\t"};
  static constexpr std::string_view kSpecial[] = {"<a b='c' d=\"e'\">",
                                                  "</a>",
                                                  "<a b='<![CDATA[>]]>x'>",
                                                  "<!-- c -->",
                                                  "<![CDATA[<x>]]>",
                                                  "<?x?>",
                                                  "<!D>",
                                                  "<eightone> x\n</k>",
                                                  "<k/x>y</k>",
                                                  "<k i = '1' j>",
                                                  "<k>\xC3\xA9</k>",
                                                  "text",
                                                  " ",
                                                  "<a b='",
                                                  "<k>>y</k>",
                                                  "<k\n>y</k>",
                                                  "'>",
                                                  "<kkkkkkk/>y</k>",
                                                  "<!k>y</k>",
                                                  "<k>y</k"};
  std::string text = "<plist>";
  for (std::uint32_t pieces = random.LowBelow(3000); pieces > 0; --pieces) {
    text += random.Chance(850) ? kUsual[random.Below(std::size(kUsual))]
                               : kSpecial[random.Below(std::size(kSpecial))];
  }
  return text;
}

}  // namespace

std::vector<Pass> AllPasses() {
  std::vector<Pass> passes = {Literal(), Ours("plain pass", {false, InstructionSet::kPlain})};
  for (const InstructionSet set : ComparedSets()) {
    passes.push_back(Ours("indexed, " + NameOf(set), {true, set}));
  }
  return passes;
}

void CheckRandomTexts(const std::vector<Pass>& passes) {
  Random random(20);
  for (int round = 0; round < 300; ++round) {
    const std::string text = RandomText(random);
    const auto summaryOf = [&](const Pass& pass) {
      std::string copy = text;
      return pass.summary(copy.data(), copy.size());
    };
    const reference::TreeSummary expected = summaryOf(passes.front());
    for (const Pass& pass : passes) {
      if (summaryOf(pass) != expected) throw std::runtime_error("another tree: " + pass.name);
    }
  }
}

}  // namespace tavrel::bench
