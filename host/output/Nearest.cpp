#include "host/output/Nearest.h"

#include <algorithm>
#include <utility>

#include "host/output/EditDistance.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kLongestCompared = 200;  // in bytes; no name that a person types is longer
constexpr std::size_t kLeastContained = 2;     // one letter is in nearly every name

}  // namespace

std::vector<std::size_t> Nearest(std::string_view wanted,
                                 const std::vector<std::string>& candidates) {
  if (wanted.size() > kLongestCompared) return {};
  const std::string folded = Fold(wanted);
  const EditDistance distanceFromWanted(folded);
  const std::size_t farthest = std::max<std::size_t>(1, folded.size() / 3);

  std::vector<std::pair<std::size_t, std::size_t>> near;  // distance, number
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (candidates[i].size() > kLongestCompared) continue;
    const std::string candidate = Fold(candidates[i]);
    const bool contains =
        folded.size() >= kLeastContained && candidate.find(folded) != std::string::npos;
    const std::size_t distance = distanceFromWanted.To(candidate);
    // What differs in everything has nothing in common with what was meant.
    const bool isNear = distance <= farthest && distance < candidate.size();
    if (contains || isNear) near.emplace_back(distance, i);
  }
  std::sort(near.begin(), near.end());
  if (near.size() > kMostNear) near.resize(kMostNear);

  std::vector<std::size_t> numbers;
  for (const auto& [distance, number] : near) numbers.push_back(number);
  return numbers;
}

}  // namespace tavrel::host
