// What somebody may have meant who wrote something else.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::host {

inline constexpr std::size_t kMostNear = 3;

// Which of the candidates come near `wanted`, the nearest first: those that contain it, and those that a
// few changes turn into it. Case and how accents are composed make no difference. No more than kMostNear.
// Cost: linear in the length of all candidates; those of more than 200 bytes are never near.
[[nodiscard]] std::vector<std::size_t> Nearest(std::string_view wanted,
                                               const std::vector<std::string>& candidates);

}  // namespace tavrel::host
