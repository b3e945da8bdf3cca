#include "library/ringtones/RingtoneCatalogue.h"

#include <cstring>
#include <string>

#include "library/TableAppender.h"
#include "system/FolderListing.h"
#include "system/Guard.h"
#include "system/Memory.h"

namespace tavrel {
namespace {

constexpr std::string_view kRingtoneFolder = "Music/iTunes/iTunes Media/Ringtones";
constexpr std::string_view kPlaylistName = "Ringtones";
constexpr std::int32_t kRingtoneKind = 55;

// The sum of a record's size and two such texts stays within 32 bits.
constexpr std::size_t kLongestRingtoneText = (std::size_t{1} << 30) - 256;

PlaylistGroup* FirstGroup(const LibraryState& state) noexcept {
  return state.groups == nullptr ? nullptr : state.groups[0];
}

// The name belongs to the pool from here on: nobody releases it with the playlist.
PlaylistRecord* NewPlaylist(LibraryState& state) noexcept {
  auto* playlist = static_cast<PlaylistRecord*>(system::AllocateZeroed(sizeof(PlaylistRecord)));
  if (playlist == nullptr) return nullptr;
  playlist->kind = kRingtoneKind;
  if (!StoreText(kPlaylistName, playlist->name, playlist->nameSize) ||
      !state.pool->Adopt(playlist->name)) {
    ReleasePlaylist(playlist);
    return nullptr;
  }
  return playlist;
}

PlaylistRecord* AppendPlaylistTo(LibraryState& state, PlaylistGroup& group) noexcept {
  PlaylistRecord* playlist = NewPlaylist(state);
  if (playlist == nullptr) return nullptr;
  TableAppender<PlaylistRecord> table(group.playlists, group.capacity, group.count);
  if (!table.Reserve()) {
    ReleasePlaylist(playlist);
    return nullptr;
  }
  table.Append(playlist);
  return playlist;
}

// The name ends at the file name's first '.'; that of an imported ringtone ends at the last. Kept.
bool ListFile(const std::string& fileName, const std::string& path,
              TableAppender<TrackRecord>& table) noexcept {
  const std::string_view name = std::string_view(fileName).substr(0, fileName.find('.'));
  RingtoneHolder ringtone = NewRingtone();
  if (ringtone == nullptr || !StoreText(name, ringtone->info.name, ringtone->info.nameSize) ||
      !StoreText(path, ringtone->info.location, ringtone->info.locationSize) || !table.Reserve()) {
    return false;
  }
  table.Append(ringtone.release());
  return true;
}

// Every entry that is no folder, whatever its extension; those whose state cannot be read are left
// out. False when memory was exhausted: what was listed so far stays.
bool ListFolder(const std::string& folder, PlaylistRecord& playlist) {
  TableAppender<TrackRecord> table(playlist.tracks, playlist.capacity, playlist.count);
  for (const std::string& fileName : system::NamesIn(folder)) {
    if (fileName == ".DS_Store") continue;
    const std::string path = system::PathIn(folder, fileName);
    if (system::KindOfEntry(path) != system::EntryKind::Other) continue;
    if (!ListFile(fileName, path, table)) return false;
  }
  return true;
}

}  // namespace

void ReleaseRingtone::operator()(TrackRecord* ringtone) const noexcept {
  system::Release(ringtone->info.name);
  system::Release(ringtone->info.location);
  system::Release(ringtone);
}

RingtoneHolder NewRingtone() noexcept {
  return RingtoneHolder(static_cast<TrackRecord*>(system::AllocateZeroed(sizeof(TrackRecord))));
}

bool StoreText(std::string_view text, char*& field, std::int32_t& size) noexcept {
  if (text.size() > kLongestRingtoneText) return false;
  auto* copy = static_cast<char*>(system::AllocateZeroed(text.size() + 1));
  if (copy == nullptr) return false;
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  field = copy;
  size = static_cast<std::int32_t>(text.size() + 1);
  return true;
}

PlaylistRecord* RingtonePlaylist(const LibraryState& state) noexcept {
  const PlaylistGroup* group = FirstGroup(state);
  if (group == nullptr || group->count < 1) return nullptr;
  PlaylistRecord* last = group->playlists[group->count - 1];
  return last == state.ringtones ? last : nullptr;
}

void CreateRingtones(LibraryState& state) noexcept {
  PlaylistGroup* group = FirstGroup(state);
  if (group == nullptr) return;
  DestroyRingtones(state);  // there is one such playlist at the most, and it is the last
  // Before the folder is looked at: the playlist stands there even when the folder is missing.
  PlaylistRecord* playlist = AppendPlaylistTo(state, *group);
  state.ringtones = playlist;
  if (playlist == nullptr || state.home == nullptr) return;
  (void)system::Guarded(
      false, [&] { return ListFolder(system::PathIn(state.home, kRingtoneFolder), *playlist); });
}

void DestroyRingtones(LibraryState& state) noexcept {
  PlaylistRecord* playlist = RingtonePlaylist(state);
  if (playlist == nullptr) return;
  ++playlistChanges;
  state.ringtones = nullptr;
  --FirstGroup(state)->count;
  for (std::int32_t i = 0; i < playlist->count; ++i) {
    const RingtoneHolder released(playlist->tracks[i]);
  }
  ReleasePlaylist(playlist);
}

}  // namespace tavrel
