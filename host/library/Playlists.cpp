#include "host/library/Playlists.h"

#include <array>
#include <cstring>
#include <utility>

#include "host/library/KeptFailure.h"

namespace tavrel::host {
namespace {

std::optional<std::string> ReadName(const LibraryFunctions& library, std::int32_t group,
                                    std::int32_t position) {
  const std::int32_t size = library.getPlaylistName(group, position, nullptr, 0);
  if (size <= 0) return std::nullopt;
  std::string name(static_cast<std::size_t>(size), '\0');
  library.getPlaylistName(group, position, name.data(), size);
  name.resize(std::strlen(name.c_str()));
  return name;
}

// What a playlist's properties tell.
struct Properties {
  std::string id;
  std::string parent;
  bool isFolder = false;
  bool isSmart = false;
  bool isMaster = false;
  KeptFailure failure;
};

void TakeProperty(const char* key, const char* text, const char* type, Properties& properties) {
  const std::string_view name = key;
  const bool isTrue = std::string_view(type) == "true";
  const auto keepFirst = [text](std::string& kept) {
    if (kept.empty() && text != nullptr) kept = text;
  };
  if (name == "Playlist Persistent ID") keepFirst(properties.id);
  if (name == "Parent Persistent ID") keepFirst(properties.parent);
  if (name == "Folder") properties.isFolder = properties.isFolder || isTrue;
  if (name == "Master") properties.isMaster = properties.isMaster || isTrue;
  if (name == "Smart Info" || name == "Smart Criteria") properties.isSmart = true;
}

std::int32_t Take(const char* key, const char* text, const char* type, void* context) {
  auto& properties = *static_cast<Properties*>(context);
  return properties.failure.Keep([&] {
    TakeProperty(key, text, type, properties);
    return 1;
  });
}

// Kinds from here on are smart lists that a new library comes with, and that its owner may change.
constexpr std::int32_t kFirstGivenKind = 200;

PlaylistType TypeOf(const Properties& properties, std::int32_t kind) {
  if (properties.isFolder) return PlaylistType::Folder;
  if (properties.isMaster || (kind != 0 && kind < kFirstGivenKind)) return PlaylistType::BuiltIn;
  return properties.isSmart ? PlaylistType::Smart : PlaylistType::List;
}

Playlist ReadPlaylist(const LibraryFunctions& library, std::int32_t group, std::int32_t position) {
  PlaylistRecord* handle = library.openPlaylist(group, position);
  const std::int32_t kind = library.getPlaylistKind(handle);
  Properties properties;
  const bool isInFile = library.visitPlaylistProperties(handle, Take, &properties) > 0;
  properties.failure.Throw();
  return {group,
          position,
          ReadName(library, group, position),
          kind,
          library.getSongCount(handle),
          handle,
          std::move(properties.id),
          std::move(properties.parent),
          TypeOf(properties, kind),
          isInFile};
}

}  // namespace

std::string_view TypeName(PlaylistType type) {
  constexpr std::array<std::string_view, 4> kNames{"list", "smart", "folder", "built-in"};
  return kNames.at(static_cast<std::size_t>(type));
}

std::string_view GroupName(std::int32_t group) {
  constexpr std::array<std::string_view, kGroupCount> kNames{"library", "Genius", "other"};
  return kNames.at(static_cast<std::size_t>(group));
}

std::vector<Playlist> ReadPlaylists(const LibraryFunctions& library) {
  std::vector<Playlist> playlists;
  for (std::int32_t group = 0; group < kGroupCount; ++group) {
    const std::int32_t count = library.getPlaylistCount(group);
    for (std::int32_t position = 0; position < count; ++position) {
      playlists.push_back(ReadPlaylist(library, group, position));
    }
  }
  return playlists;
}

}  // namespace tavrel::host
