// The pass: one walk over a document's buffer that builds its tree. It writes zero bytes where
// names, texts and values end, and moves bytes towards the start to take CDATA markers out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "xml/TBXML.h"
#include "xml/TagIndex.h"

// The ways to run it, which build the same tree.
struct PassChoice {
  bool indexed;                     // else the plain pass
  tavrel::xml::InstructionSet set;  // of the index
};

// For tests and benchmarks: how documents are parsed from now on, or again as is best.
void ForcePass(std::optional<PassChoice> choice) noexcept;

class DocumentPass {
 public:
  // text, end: the buffer; a zero byte stands at `end` and none before it.
  DocumentPass(TBXML& document, char* text, const char* end) noexcept
      : document_(document), text_(text), position_(text), end_(end) {}

  // Builds the tree. An unterminated comment, CDATA section or tag ends the pass where it stands,
  // as does exhausted memory; the records built so far stay.
  void Run() noexcept;

  // Builds the same tree, reading the places of '<' and '>' from an index made ahead.
  void RunIndexed(tavrel::xml::InstructionSet set) noexcept;

 private:
  // Handles what begins with the '<' at `open`; false ends the pass.
  // nextMark: the first '<' or '>' behind `open`, or null when it is not known.
  [[nodiscard]] bool Step(char* open, char* nextMark) noexcept;
  [[nodiscard]] bool SkipComment(char* open) noexcept;
  [[nodiscard]] bool TakeSections(char* open) noexcept;
  [[nodiscard]] bool OpenElement(char* open, char* close) noexcept;
  void CloseElement() noexcept;

  // Handles as many elements of the form "<name>text</...>" as come next and have nothing special
  // about them, while the index and the newest chunk last; perhaps none.
  void TakeLeaves(tavrel::xml::TagIndex& index) noexcept;

  [[nodiscard]] char* FindTagEnd(char* from) noexcept;
  void AppendToOpenElement(TBXMLElement* element) noexcept;

  TBXML& document_;
  char* text_;
  char* position_;
  const char* end_;
  TBXMLElement* openElement_ = nullptr;
  std::size_t depth_ = 0;  // how many elements are open
};
