#include "text/ByteSearch.h"

#include <cstring>

#include "text/ByteSearchKernels.h"

namespace tavrel::text {
namespace {

// How common a byte is in folded texts: the less, the better it serves as a probe. The bytes of one
// script share few first bytes among many characters, so that a later byte tells more.
std::size_t Frequency(char byte) noexcept {
  constexpr std::string_view kRareToCommon = "zqjxk\x80vbpy\xC0gfwmucdlhrsnioate ";
  const auto value = static_cast<unsigned char>(byte);
  const char kind = value >= 0xC0 ? '\xC0' : value >= 0x80 ? '\x80' : byte;
  const std::size_t rank = kRareToCommon.find(kind);
  return rank == std::string_view::npos ? 0 : rank + 1;
}

}  // namespace

BytePattern MakePattern(std::string_view bytes, system::InstructionSet set) noexcept {
  BytePattern pattern{bytes, 0, bytes.size() - 1, set};
  if (bytes.size() == 1) return pattern;
  if (Frequency(bytes[pattern.secondProbe]) < Frequency(bytes[pattern.firstProbe])) {
    pattern = {bytes, pattern.secondProbe, pattern.firstProbe, set};
  }
  for (std::size_t i = 1; i + 1 < bytes.size(); ++i) {
    if (Frequency(bytes[i]) < Frequency(bytes[pattern.firstProbe])) {
      pattern.secondProbe = pattern.firstProbe;
      pattern.firstProbe = i;
    } else if (Frequency(bytes[i]) < Frequency(bytes[pattern.secondProbe])) {
      pattern.secondProbe = i;
    }
  }
  return pattern;
}

FoundBytes FindPlain(const BytePattern& pattern, const char* from, const char* end,
                     SearchEffort& effort) noexcept {
  if (static_cast<std::size_t>(end - from) < pattern.bytes.size()) return {end, false};
  const char* last = end - pattern.bytes.size();  // where the pattern may stand last
  const char first = pattern.bytes[pattern.firstProbe];
  const char second = pattern.bytes[pattern.secondProbe];
  while (from <= last) {
    const void* hit =
        std::memchr(from + pattern.firstProbe, first, static_cast<std::size_t>(last - from) + 1);
    if (hit == nullptr) break;
    const char* at = static_cast<const char*>(hit) - pattern.firstProbe;
    if (at[pattern.secondProbe] == second) {
      if (effort.IsExcessive(at)) return {at, false};
      if (StandsAt(pattern, at, effort)) return {at, true};
    }
    from = at + 1;
  }
  return {end, false};
}

FoundBytes FindPattern(const BytePattern& pattern, const char* from, const char* end,
                       SearchEffort& effort) noexcept {
  if constexpr (system::kForX86) {
    if (pattern.set >= system::InstructionSet::kAvx2) return FindAvx2(pattern, from, end, effort);
  }
  return FindPlain(pattern, from, end, effort);
}

}  // namespace tavrel::text
