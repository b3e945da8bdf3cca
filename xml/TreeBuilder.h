// The parser: one walk over a document's buffer that builds its tree. It writes zero bytes where
// names, texts and values end, and moves bytes towards the start to take CDATA markers out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "xml/DocumentTree.h"
#include "xml/StructuralIndex.h"

namespace tavrel::xml {

// The ways to parse, which all build the same tree.
struct ParsingWay {
  bool indexed;                // else the plain one
  system::InstructionSet set;  // of the index
};

// Parses the first `textLength` bytes of the tree's buffer, behind which a zero byte stands and
// before which none does. The tree is empty before.
void BuildTree(DocumentTree& tree, std::size_t textLength) noexcept;

// For tests and benchmarks: how BuildTree() parses from now on, or again as is best.
void ForceParsing(std::optional<ParsingWay> way) noexcept;

class TreeBuilder {
 public:
  // text, end: the buffer; a zero byte stands at `end` and none before it.
  TreeBuilder(DocumentTree& tree, char* text, const char* end) noexcept
      : tree_(tree), text_(text), position_(text), end_(end) {}

  // Builds the tree. An unterminated comment, CDATA section or tag ends the parsing where it
  // stands, as does exhausted memory; the records built so far stay.
  void Build() noexcept;

  // Builds the same tree, reading the places of '<' and '>' from an index made ahead.
  void BuildIndexed(system::InstructionSet set) noexcept;

 private:
  // Handles what begins with the '<' at `open`; false ends the parsing.
  // nextMark: the first '<' or '>' behind `open`, or null when it is not known.
  [[nodiscard]] bool TakeMarkup(char* open, char* nextMark) noexcept;
  [[nodiscard]] bool SkipComment(char* open) noexcept;
  [[nodiscard]] bool TakeSections(char* open) noexcept;
  [[nodiscard]] bool OpenElement(char* open, char* close) noexcept;
  void CloseElement() noexcept;
  void TakeLeaves(StructuralIndex& index) noexcept;
  [[nodiscard]] char* FindTagEnd(char* from) noexcept;

  DocumentTree& tree_;
  char* text_;
  char* position_;
  const char* end_;
  TBXMLElement* openElement_ = nullptr;
  std::size_t depth_ = 0;  // how many elements are open
};

}  // namespace tavrel::xml
