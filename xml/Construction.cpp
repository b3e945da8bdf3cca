#include <cstring>
#include <new>

#include "text/FileUrl.h"
#include "xml/TBXML.h"
#include "xml/TreeBuilder.h"

using tavrel::system::ByteBuffer;

TBXML::~TBXML() {
  dealloc();
}

std::unique_ptr<TBXML> TBXML::alloc() noexcept {
  return std::unique_ptr<TBXML>(new (std::nothrow) TBXML);
}

TBXML* TBXML::init() noexcept {
  dealloc();
  return this;
}

// The file is read straight into the document's buffer; the tree is that of initWithXMLString().
TBXML* TBXML::initWithURL(std::string_view url) {
  init();
  const std::optional<std::string> path = tavrel::text::PathOfFileUrl(url);
  const auto text = path ? tavrel::text::ReadFileText(path->c_str()) : tavrel::text::FileText{};
  if (text.block.address == nullptr) return initWithXMLString(std::nullopt);
  return initWithFileText(text);
}

TBXML* TBXML::initWithFileText(const tavrel::text::FileText& text) noexcept {
  init();
  buffer_ = text.block;
  tree_.fields.bytes = buffer_.address;
  tree_.fields.bytesLength = static_cast<std::ptrdiff_t>(text.length);
  decodeBytes(text.lengthToZero);
  return this;
}

TBXML* TBXML::initWithXMLString(const std::optional<std::string>& string) noexcept {
  init();
  decodeData(string ? std::string_view(*string) : std::string_view());
  return this;
}

TBXML* TBXML::initWithXMLData(const ByteBuffer& data) noexcept {
  init();
  decodeData(data.view());
  return this;
}

std::unique_ptr<TBXML> TBXML::tbxmlWithURL(std::string_view url) {
  auto document = alloc();
  if (document) document->initWithURL(url);
  return document;
}

std::unique_ptr<TBXML> TBXML::tbxmlWithXMLString(
    const std::optional<std::string>& string) noexcept {
  auto document = alloc();
  if (document) document->initWithXMLString(string);
  return document;
}

std::unique_ptr<TBXML> TBXML::tbxmlWithXMLData(const ByteBuffer& data) noexcept {
  auto document = alloc();
  if (document) document->initWithXMLData(data);
  return document;
}

void TBXML::dealloc() noexcept {
  tree_.Release();
  tavrel::system::ReleaseBlock(buffer_);
}

void TBXML::listElementsOfLevel(std::size_t level) noexcept {
  tree_.listedLevel = level;
}

void TBXML::decodeBytes(std::size_t textLength) noexcept {
  tavrel::xml::BuildTree(tree_, textLength);
}

void TBXML::decodeData(std::string_view data) noexcept {
  buffer_ = tavrel::system::AllocateBlock(data.size() + 1);
  if (buffer_.address == nullptr) return;
  if (!data.empty()) std::memcpy(buffer_.address, data.data(), data.size());
  tree_.fields.bytes = buffer_.address;
  tree_.fields.bytesLength = static_cast<std::ptrdiff_t>(data.size());
  decodeBytes(strnlen(tree_.fields.bytes, data.size()));
}
