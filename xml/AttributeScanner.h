// Reads the attributes of one start tag.
#pragma once

#include "xml/DocumentTree.h"

namespace tavrel::xml {

class AttributeScanner {
 public:
  AttributeScanner(DocumentTree& tree, TBXMLElement& element) noexcept
      : tree_(tree), element_(element) {}

  // Scans the bytes from `from` up to and including the zero byte at `end`, and hangs a record for
  // each attribute with a quoted value on the element. A name that never gets a quoted value leaves
  // none.
  // Result: false when memory is exhausted.
  [[nodiscard]] bool Scan(char* from, char* end) noexcept;

 private:
  [[nodiscard]] bool Append(char* name, char* value) noexcept;

  DocumentTree& tree_;
  TBXMLElement& element_;
  TBXMLAttribute* last_ = nullptr;
};

}  // namespace tavrel::xml
