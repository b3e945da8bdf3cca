#include "host/output/GrowingText.h"

#include <algorithm>
#include <utility>

namespace tavrel::host {

void GrowingText::Grow(std::size_t bytes) {
  const auto size = static_cast<std::size_t>(limit_ - room_.get());
  const std::size_t grown = std::max(2 * size, Size() + bytes);
  auto room = std::make_unique<char[]>(grown);
  end_ = Copy(View(), room.get());
  limit_ = room.get() + grown;
  room_ = std::move(room);
}

}  // namespace tavrel::host
