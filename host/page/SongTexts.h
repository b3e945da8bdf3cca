// The texts of one song, as the library file has them.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/library/FieldTexts.h"
#include "host/library/Fields.h"
#include "host/page/SongBlock.h"

namespace tavrel::host {

class SongTexts {
 public:
  // From now on those of this song of the block, from which they are borrowed. The first of two equal keys counts.
  void Read(const SongBlock& block, std::size_t song) {
    KeySet seen;
    has_.reset();
    block.ForEachPair(song, [&](std::size_t key, std::string_view text, bool hasText) {
      if (seen[key]) return;
      seen[key] = true;
      has_[key] = hasText;
      texts_[key] = text;
    });
  }

  [[nodiscard]] bool Has(Field field) const noexcept { return has_[IndexOf(field)]; }
  // Empty for a field that the song has not.
  [[nodiscard]] std::string_view Of(Field field) const noexcept {
    return Has(field) ? texts_[IndexOf(field)] : std::string_view();
  }
  [[nodiscard]] std::optional<std::string_view> IfAny(Field field) const noexcept {
    return Has(field) ? std::optional(texts_[IndexOf(field)]) : std::nullopt;
  }
  // None for what is no whole number.
  [[nodiscard]] std::optional<std::int64_t> NumberOf(Field field) const noexcept {
    return NumberIn(Of(field));
  }
  [[nodiscard]] bool Is(Field flag) const noexcept { return Of(flag) == "true"; }
  // Empty when there is none.
  [[nodiscard]] std::string_view TrackId() const noexcept {
    return has_[SongWalk::kTrackId] ? texts_[SongWalk::kTrackId] : std::string_view();
  }

 private:
  static constexpr std::size_t kKeys = SongWalk::kTrackId + 1;
  using KeySet = std::bitset<kKeys>;

  KeySet has_;
  std::array<std::string_view, kKeys> texts_;
};

}  // namespace tavrel::host
