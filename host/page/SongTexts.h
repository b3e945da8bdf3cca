// The texts of one song, as the library file has them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/library/FieldTexts.h"
#include "host/library/Fields.h"

namespace tavrel::host {

// The texts are borrowed.
class SongTexts {
 public:
  void Clear() noexcept { seen_ = has_ = {}; }

  // The first of two equal keys counts. text: none where the value has none.
  void Take(Field field, std::optional<std::string_view> text) noexcept {
    const std::size_t place = IndexOf(field);
    if (seen_[place]) return;
    seen_[place] = true;
    has_[place] = text.has_value();
    texts_[place] = text.value_or("");
  }

  [[nodiscard]] std::optional<std::string_view> Of(Field field) const noexcept {
    if (!has_[IndexOf(field)]) return std::nullopt;
    return texts_[IndexOf(field)];
  }
  // None for what is no whole number.
  [[nodiscard]] std::optional<std::int64_t> NumberOf(Field field) const noexcept {
    const auto text = Of(field);
    return text ? NumberIn(*text) : std::nullopt;
  }
  [[nodiscard]] bool Is(Field flag) const noexcept { return Of(flag) == "true"; }

 private:
  FieldSet seen_;
  FieldSet has_;
  std::array<std::string_view, kFieldCount> texts_;
};

}  // namespace tavrel::host
