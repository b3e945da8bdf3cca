// Records come from chunks of 100, chained in the order of their making. The chunks themselves are
// pieces of a few large zero-filled blocks, so that many records cost few allocations and their
// release is a handful of calls.
#include "xml/TBXML.h"

namespace {

template <class Record, class Chunk>
Record* NextRecord(Chunk*& newest, std::ptrdiff_t& current, Record* Chunk::*records,
                   tavrel::platform::ZeroedArena& arena) noexcept {
  if (newest != nullptr && current + 1 < kRecordsPerChunk) {
    return newest->*records + ++current;
  }
  auto* chunk = static_cast<Chunk*>(arena.Take(sizeof(Chunk)));
  auto* array = static_cast<Record*>(arena.Take(kRecordsPerChunk * sizeof(Record)));
  if (chunk == nullptr || array == nullptr) return nullptr;
  chunk->*records = array;
  chunk->previous = newest;
  if (newest != nullptr) newest->next = chunk;
  newest = chunk;
  current = 0;
  return array;
}

}  // namespace

TBXMLElement* TBXML::nextAvailableElement() noexcept {
  TBXMLElement* element = NextRecord(fields_.currentElementBuffer, fields_.currentElement,
                                     &TBXMLElementBuffer::elements, records_);
  if (fields_.rootXMLElement == nullptr) fields_.rootXMLElement = element;
  return element;
}

TBXMLAttribute* TBXML::nextAvailableAttribute() noexcept {
  return NextRecord(fields_.currentAttributeBuffer, fields_.currentAttribute,
                    &TBXMLAttributeBuffer::attributes, records_);
}

void TBXML::dealloc() noexcept {
  tavrel::platform::ReleaseBlock(buffer_);
  records_.ReleaseAll();
  fields_ = {};
}
