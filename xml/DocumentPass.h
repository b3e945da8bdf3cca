// The pass: one walk over a document's buffer that builds its tree. It writes zero bytes where
// names, texts and values end, and moves bytes towards the start to take CDATA markers out.
#pragma once

#include "xml/TBXML.h"

class DocumentPass {
 public:
  // text, end: the buffer; a zero byte stands at `end` and none before it.
  DocumentPass(TBXML& document, char* text, const char* end) noexcept
      : document_(document), position_(text), end_(end) {}

  // Builds the tree. An unterminated comment, CDATA section or tag ends the pass where it stands,
  // as does exhausted memory; the records built so far stay.
  void Run() noexcept;

 private:
  // Each handles what begins with the '<' at `open`; false ends the pass.
  [[nodiscard]] bool Step(char* open) noexcept;
  [[nodiscard]] bool SkipComment(char* open) noexcept;
  [[nodiscard]] bool TakeSections(char* open) noexcept;
  [[nodiscard]] bool OpenElement(char* open, char* close) noexcept;
  void CloseElement() noexcept;

  [[nodiscard]] char* FindTagEnd(char* from) noexcept;
  void AppendToOpenElement(TBXMLElement* element) noexcept;

  TBXML& document_;
  char* position_;
  const char* end_;
  TBXMLElement* openElement_ = nullptr;
};
