#include "host/library/TextNumbers.h"

#include <limits>
#include <new>

namespace tavrel::host {
namespace {

constexpr std::size_t kFirstSlots = 64;

std::uint32_t HighestBits(std::uint64_t hash) noexcept {
  return static_cast<std::uint32_t>(hash >> 32);
}

}  // namespace

TextNumbers::Found TextNumbers::Of(std::string_view text, std::uint64_t hash) {
  if (2 * (entries_.size() + 1) > slots_.size()) Grow();
  Slot& slot = slots_[SlotOf(text, hash)];
  if (slot.next != 0) return {slot.next - std::size_t{1}, false};
  const std::size_t number = entries_.size();
  if (number == std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  entries_.push_back({hash, texts_.size(), text.size()});
  texts_ += text;
  slot = {static_cast<std::uint32_t>(number + 1), HighestBits(hash)};
  return {number, true};
}

std::optional<std::size_t> TextNumbers::Find(std::string_view text) const {
  if (entries_.empty()) return std::nullopt;
  const Slot& slot = slots_[SlotOf(text, hash_(text))];
  return slot.next == 0 ? std::nullopt : std::optional(slot.next - std::size_t{1});
}

std::size_t TextNumbers::SlotOf(std::string_view text, std::uint64_t hash) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t place = hash & mask;
  for (; slots_[place].next != 0; place = (place + 1) & mask) {
    if (slots_[place].hash != HighestBits(hash)) continue;
    const std::size_t number = slots_[place].next - std::size_t{1};
    if (entries_[number].hash == hash && Text(number) == text) break;
  }
  return place;
}

std::size_t TextNumbers::FreeSlot(std::uint64_t hash) const noexcept {
  const std::size_t mask = slots_.size() - 1;
  std::size_t place = hash & mask;
  while (slots_[place].next != 0) place = (place + 1) & mask;
  return place;
}

void TextNumbers::Grow() {
  const std::size_t count = slots_.empty() ? kFirstSlots : 2 * slots_.size();
  slots_.assign(count, {});
  std::uint32_t next = 0;
  for (const Entry& entry : entries_) {
    slots_[FreeSlot(entry.hash)] = {++next, HighestBits(entry.hash)};
  }
}

}  // namespace tavrel::host
