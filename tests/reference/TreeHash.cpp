#include "tests/reference/TreeHash.h"

#include <stdexcept>

namespace tavrel::reference {
namespace {

class Hash {
 public:
  explicit Hash(const char* bytes) noexcept : bytes_(bytes) {}

  void Add(std::uint64_t number) noexcept {
    value_ = (value_ ^ number) * 0x9E3779B97F4A7C15u;
    value_ ^= value_ >> 32;
  }
  // A string is its place and its bytes.
  void Add(const char* string) noexcept {
    Add(string == nullptr ? UINT64_MAX : static_cast<std::uint64_t>(string - bytes_));
    if (string == nullptr) return;
    while (*string != '\0') Add(std::uint64_t{static_cast<unsigned char>(*string++)});
  }
  // Names begin at different places: that of its name stands for a record.
  template <class Record>
  void AddLink(const Record* record) noexcept {
    Add(record == nullptr ? UINT64_MAX : static_cast<std::uint64_t>(record->name - bytes_));
  }
  [[nodiscard]] std::uint64_t value() const noexcept { return value_; }

 private:
  const char* bytes_;
  std::uint64_t value_ = 0;
};

template <class Chunk>
const Chunk* FirstOf(const Chunk* newest) {
  if (newest != nullptr && newest->next != nullptr) throw std::runtime_error("a chunk too many");
  while (newest != nullptr && newest->previous != nullptr) {
    if (newest->previous->next != newest) throw std::runtime_error("a chunk leads elsewhere");
    newest = newest->previous;
  }
  return newest;
}

void AddElement(Hash& hash, const TBXMLElement& element) noexcept {
  hash.Add(element.name);
  hash.Add(element.text);
  for (const TBXMLElement* link : {element.parentElement, element.firstChild, element.currentChild,
                                   element.nextSibling, element.previousSibling}) {
    hash.AddLink(link);
  }
  hash.AddLink(element.firstAttribute);
}

void AddAttribute(Hash& hash, const TBXMLAttribute& attribute) noexcept {
  hash.Add(attribute.name);
  hash.Add(attribute.value);
  hash.AddLink(attribute.next);
}

// Result: how many records there are.
template <class Record, class Chunk>
std::uint64_t AddRecords(Hash& hash, const Chunk* newest, std::ptrdiff_t current,
                         Record* Chunk::*records, void (*add)(Hash&, const Record&) noexcept) {
  std::uint64_t count = 0;
  for (const Chunk* chunk = FirstOf(newest); chunk != nullptr; chunk = chunk->next) {
    const std::ptrdiff_t used = chunk == newest ? current + 1 : kRecordsPerChunk;
    for (std::ptrdiff_t i = 0; i < used; ++i, ++count) add(hash, (chunk->*records)[i]);
    hash.Add(count);
  }
  return count;
}

}  // namespace

TreeSummary SummaryOf(const TBXMLFields& document) {
  Hash hash(document.bytes);
  hash.AddLink(document.rootXMLElement);
  TreeSummary summary{};
  summary.elements = AddRecords(hash, document.currentElementBuffer, document.currentElement,
                                &TBXMLElementBuffer::elements, AddElement);
  summary.attributes = AddRecords(hash, document.currentAttributeBuffer, document.currentAttribute,
                                  &TBXMLAttributeBuffer::attributes, AddAttribute);
  summary.hash = hash.value();
  return summary;
}

}  // namespace tavrel::reference
