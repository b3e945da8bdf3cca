// The constructors of TBXML that take a resource file of the application, plain or compressed.
#include <optional>
#include <string>

#include "codecs/Gzip.h"
#include "system/Resources.h"
#include "text/PathNames.h"
#include "xml/TBXML.h"

using tavrel::system::ByteBuffer;

TBXML* TBXML::initWithXMLFile(std::string_view name) {
  const auto [base, extension] = tavrel::text::SplitExtension(name);
  return initWithXMLFile(base, extension);
}

TBXML* TBXML::initWithXMLFile(std::string_view name, std::string_view fileExtension) {
  init();
  const auto path = tavrel::system::PathForResource(name, fileExtension);
  decodeData((path ? tavrel::dataWithUncompressedContentsOfFile(*path) : ByteBuffer()).view());
  return this;
}

std::unique_ptr<TBXML> TBXML::tbxmlWithXMLFile(std::string_view name) {
  auto document = alloc();
  if (document) document->initWithXMLFile(name);
  return document;
}

std::unique_ptr<TBXML> TBXML::tbxmlWithXMLFile(std::string_view name,
                                               std::string_view fileExtension) {
  auto document = alloc();
  if (document) document->initWithXMLFile(name, fileExtension);
  return document;
}
