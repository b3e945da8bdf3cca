#include "host/library/Fields.h"

#include "text/Ascii.h"

namespace tavrel::host {

std::optional<Field> FindField(std::string_view name) noexcept {
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    if (text::EqualIgnoringCase(kFields[i].name, name)) return static_cast<Field>(i);
  }
  return std::nullopt;
}

std::size_t FieldKeys::SlotOf(std::string_view key) noexcept {
  if (key.empty()) return 0;
  const auto at = [key](std::size_t place) { return static_cast<unsigned char>(key[place]); };
  const std::size_t mixed =
      key.size() * 61 + at(0) * 7u + at(key.size() / 2) * 3u + at(key.size() - 1);
  return mixed % kSlots;
}

FieldKeys::FieldKeys() noexcept {
  fields_.fill(kEmpty);
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    if (kFields[i].key.empty()) continue;
    std::size_t slot = SlotOf(kFields[i].key);
    while (fields_[slot] != kEmpty) slot = (slot + 1) % kSlots;
    fields_[slot] = static_cast<std::uint8_t>(i);
  }
}

std::optional<Field> FieldKeys::Find(std::string_view key) const noexcept {
  for (std::size_t slot = SlotOf(key); fields_[slot] != kEmpty; slot = (slot + 1) % kSlots) {
    const std::uint8_t field = fields_[slot];
    if (kFields[field].key == key) return static_cast<Field>(field);
  }
  return std::nullopt;
}

}  // namespace tavrel::host
