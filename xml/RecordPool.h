// Records come from chunks of 100, chained in the order of their making. The chunks themselves are
// pieces of a few large zero-filled blocks, so that many records cost few allocations and their
// release is a handful of calls.
#pragma once

#include <cstddef>

#include "system/ZeroedArena.h"
#include "xml/Records.h"

namespace tavrel::xml {

// Makes a new chunk the newest one and hands out its first record; none when memory is exhausted.
template <class Record, class Chunk>
Record* FirstOfNewChunk(Chunk*& newest, std::ptrdiff_t& current, Record* Chunk::*records,
                        system::ZeroedArena& arena) noexcept {
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

// The next zero-filled record.
// newest, current: the chunk and the index of the record that was handed out last.
template <class Record, class Chunk>
Record* NextRecord(Chunk*& newest, std::ptrdiff_t& current, Record* Chunk::*records,
                   system::ZeroedArena& arena) noexcept {
  if (newest != nullptr && current + 1 < kRecordsPerChunk) [[likely]] {
    return newest->*records + ++current;
  }
  return FirstOfNewChunk(newest, current, records, arena);
}

}  // namespace tavrel::xml
