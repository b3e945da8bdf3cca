// The literal form of the pass: each of its rules is a step, with plain calls of the C library and
// nothing clever. Tests compare trees with it, benchmarks times. Hostile texts take it forever.
#pragma once

#include "xml/Records.h"

namespace tavrel::reference {

class LiteralPass {
 public:
  LiteralPass() noexcept = default;
  LiteralPass(const LiteralPass&) = delete;
  LiteralPass& operator=(const LiteralPass&) = delete;
  ~LiteralPass();

  // Builds the tree of a zero-terminated text, inside of it; once only. The text is borrowed and
  // must outlive the tree. Throws std::bad_alloc.
  void Run(char* text);

  [[nodiscard]] const TBXMLFields& fields() const noexcept { return fields_; }

 private:
  [[nodiscard]] char* TakeSection(char* open) const noexcept;
  void OpenElement(char* open, char* close);
  void CloseElement() noexcept;
  void ScanAttributes(TBXMLElement* element, char* from, const char* to);
  TBXMLElement* NextElement();
  TBXMLAttribute* NextAttribute();

  TBXMLFields fields_ = {};
  TBXMLElement* openElement_ = nullptr;
};

}  // namespace tavrel::reference
