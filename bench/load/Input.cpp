#include "bench/load/Input.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "bench/support/WholeFile.h"

namespace tavrel::bench {
namespace {

std::uint64_t HashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  return hash;
}

void CountElements(std::string_view text, Input& input) {
  for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1)) {
    const char next = at + 1 < text.size() ? text[at + 1] : '/';
    if (next == '/' || next == '!' || next == '?') continue;
    ++input.elements;
    const std::string_view tag = text.substr(at, text.find('>', at) - at);
    input.attributes += std::count(tag.begin(), tag.end(), '=');
  }
}

std::int64_t Count(std::string_view text, std::string_view what) {
  std::int64_t count = 0;
  for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1)) ++count;
  return count;
}

}  // namespace

Input LookAt(const std::string& path) {
  Input input;
  input.path = path;
  input.name = std::filesystem::path(path).filename().string();
  const Buffer buffer = ReadWholeFile(path, input.bytes);
  const std::string_view text(buffer.get(), input.bytes);
  input.hash = HashOf(text);
  CountElements(text, input);
  // Both a track and an item of a playlist begin with the track's ID.
  constexpr std::string_view kTrackId = "<key>Track ID</key>";
  const std::size_t playlists = std::min(text.find("<key>Playlists</key>"), text.size());
  input.tracks = Count(text.substr(0, playlists), kTrackId);
  input.items = Count(text.substr(playlists), kTrackId);
  return input;
}

}  // namespace tavrel::bench
