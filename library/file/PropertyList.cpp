#include "library/file/PropertyList.h"

#include "xml/TBXML.h"

namespace tavrel {

const TBXMLElement* TopLevelDictionary(const TBXML* document) noexcept {
  const TBXMLElement* root = document == nullptr ? nullptr : document->rootXMLElement();
  return root == nullptr ? nullptr : root->firstChild;
}

const TBXMLElement* TopLevelChild(const TBXML* document, const char* name) noexcept {
  const TBXMLElement* top = TopLevelDictionary(document);
  return top == nullptr ? nullptr : TBXML::childElementNamed(name, top);
}

}  // namespace tavrel
