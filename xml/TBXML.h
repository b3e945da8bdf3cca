// TBXML: an XML text, held in one buffer and parsed in place into a tree of records.
//
// The parser is small and forgiving on purpose: it decodes no entities, knows no namespaces, never
// compares a closing tag with the element that it closes, and reports no errors. A text without any
// element leaves a document whose rootXMLElement() is none; that is how callers notice a file that
// they cannot use.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "system/ByteBuffer.h"
#include "system/Memory.h"
#include "text/TextFile.h"
#include "xml/DocumentTree.h"
#include "xml/Records.h"

class TBXML {
 public:
  TBXML() noexcept = default;
  TBXML(const TBXML&) = delete;
  TBXML& operator=(const TBXML&) = delete;
  ~TBXML();

  // A new document, not yet initialised; none when memory is exhausted.
  [[nodiscard]] static std::unique_ptr<TBXML> alloc() noexcept;

  // Constructors. Each returns the document itself. An input that is none, missing or unreadable
  // gives a document with an empty tree. Initialising a document again releases what it held.
  TBXML* init() noexcept;
  // The text of a file that a "file:" URL leads to, in UTF-8. May throw std::bad_alloc.
  TBXML* initWithURL(std::string_view url);
  // A text that was read before, and is there; the document takes its block over.
  TBXML* initWithFileText(const tavrel::text::FileText& text) noexcept;
  TBXML* initWithXMLString(const std::optional<std::string>& string) noexcept;
  TBXML* initWithXMLData(const tavrel::system::ByteBuffer& data) noexcept;
  // A resource file of the application; one whose extension is "gz" is inflated. May throw
  // std::bad_alloc.
  TBXML* initWithXMLFile(std::string_view name);
  TBXML* initWithXMLFile(std::string_view name, std::string_view fileExtension);

  // Factories: the same, on a new document that the caller owns; none only when memory is
  // exhausted.
  [[nodiscard]] static std::unique_ptr<TBXML> tbxmlWithURL(std::string_view url);
  [[nodiscard]] static std::unique_ptr<TBXML> tbxmlWithXMLString(
      const std::optional<std::string>& string) noexcept;
  [[nodiscard]] static std::unique_ptr<TBXML> tbxmlWithXMLData(
      const tavrel::system::ByteBuffer& data) noexcept;
  [[nodiscard]] static std::unique_ptr<TBXML> tbxmlWithXMLFile(std::string_view name);
  [[nodiscard]] static std::unique_ptr<TBXML> tbxmlWithXMLFile(std::string_view name,
                                                               std::string_view fileExtension);

  // The element of the first start tag, or none.
  [[nodiscard]] TBXMLElement* rootXMLElement() const noexcept {
    return tree_.fields.rootXMLElement;
  }
  [[nodiscard]] const TBXMLFields& fields() const noexcept { return tree_.fields; }

  // Has the constructors list the elements of one level that have children: the root's level is 1,
  // that of its children 2, and so on; 0, as at first, for none. For owners who will visit them all.
  void listElementsOfLevel(std::size_t level) noexcept;
  // These elements in the order of their end tags. Only a hint on where to look soon: some or all
  // may be missing.
  [[nodiscard]] std::span<TBXMLElement* const> listedElements() const noexcept {
    return tree_.listed.All();
  }

  // Class operations. Records must belong to a live document and must not be none. A missing name,
  // text or value reads as ""; bytes that are not valid UTF-8 read as none.
  [[nodiscard]] static std::optional<std::string> elementName(const TBXMLElement* element);
  [[nodiscard]] static std::optional<std::string> textForElement(const TBXMLElement* element);
  [[nodiscard]] static std::optional<std::string> attributeName(const TBXMLAttribute* attribute);
  [[nodiscard]] static std::optional<std::string> attributeValue(const TBXMLAttribute* attribute);

  // The first child, or the first following sibling, of exactly that name, byte for byte; or none.
  // Cost: linear in the number of children looked at.
  [[nodiscard]] static TBXMLElement* childElementNamed(std::string_view name,
                                                       const TBXMLElement* parentElement) noexcept;
  [[nodiscard]] static TBXMLElement* nextSiblingNamed(
      std::string_view name, const TBXMLElement* searchFromElement) noexcept;
  // The value of the element's first attribute of that name. Unlike a missing field above, a
  // missing attribute is none: kept.
  [[nodiscard]] static std::optional<std::string> valueOfAttributeNamed(
      std::string_view name, const TBXMLElement* forElement);

 private:
  // Copies the bytes into the document's own buffer and parses them.
  void decodeData(std::string_view data) noexcept;
  // textLength: where the text ends for the parser, at its first zero byte.
  void decodeBytes(std::size_t textLength) noexcept;
  void dealloc() noexcept;

  tavrel::xml::DocumentTree tree_;
  tavrel::system::ZeroedBlock buffer_;  // behind `bytes`
};
