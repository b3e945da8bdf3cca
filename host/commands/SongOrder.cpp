#include "host/commands/SongOrder.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "host/output/FindRange.h"

namespace tavrel::host {
namespace {

struct Key {
  bool isNone = true;
  std::int64_t number = 0;
  std::string text;
};

Key KeyOf(const SongRecord& song, Field field) {
  Key key;
  const auto text = song.Text(field);
  if (!text) return key;
  key.isNone = false;
  switch (FactsOf(field).type) {
    case FieldType::Number:
      key.number = song.Number(field).value_or(0);
      break;
    case FieldType::Seconds:
      key.number = song.Milliseconds();
      break;
    case FieldType::Flag:
      key.number = *text == "true" ? 1 : 0;
      break;
    case FieldType::Date:
    case FieldType::Text:
      AppendAccentless(key.text, *text);
      break;
  }
  return key;
}

// Below 0, 0, or above, as the left one stands before the right one, with it, or behind.
int Compare(const Key& left, const Key& right, bool isReversed) {
  if (left.isNone || right.isNone)
    return static_cast<int>(left.isNone) - static_cast<int>(right.isNone);
  int order = left.text.compare(right.text);
  if (order == 0 && left.number != right.number) order = left.number < right.number ? -1 : 1;
  return isReversed ? -order : order;
}

}  // namespace

void SortSongs(const LibraryFunctions& library, PlaylistRecord* playlist,
               const std::vector<Field>& fields, bool isReversed,
               std::vector<std::int32_t>& positions) {
  FieldSet wanted;
  for (const Field field : fields) wanted.set(IndexOf(field));
  SongRecordReader reader(library, wanted);
  std::vector<Key> keys;
  for (const std::int32_t position : positions) {
    const SongRecord& song = reader.Read(playlist, position);
    for (const Field field : fields) keys.push_back(KeyOf(song, field));
  }

  std::vector<std::size_t> order(positions.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const int compared =
          Compare(keys[left * fields.size() + i], keys[right * fields.size() + i], isReversed);
      if (compared != 0) return compared < 0;
    }
    return false;
  });
  std::vector<std::int32_t> sorted;
  for (const std::size_t place : order) sorted.push_back(positions[place]);
  positions = std::move(sorted);
}

}  // namespace tavrel::host
