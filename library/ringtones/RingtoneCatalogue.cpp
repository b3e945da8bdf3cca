#include "library/ringtones/RingtoneCatalogue.h"

#include <cstring>
#include <string>

#include "library/TableAppender.h"
#include "system/FolderListing.h"
#include "system/Guard.h"
#include "system/Memory.h"

using namespace tavrel;
using tavrel::Private;

namespace {

constexpr std::string_view kRingtoneFolder = "Music/iTunes/iTunes Media/Ringtones";
constexpr std::string_view kPlaylistName = "Ringtones";
constexpr std::int32_t kRingtoneKind = 55;

// The sum of a record's size and two such texts stays within 32 bits.
constexpr std::size_t kLongestText = (std::size_t{1} << 30) - 256;

PlaylistGroup* FirstGroup() noexcept {
  const bool exists = g_pGlobal != nullptr && g_pGlobal->groups != nullptr;
  return exists ? g_pGlobal->groups[0] : nullptr;
}

void ReleasePlaylist(PlaylistRecord* playlist) noexcept {
  system::Release(playlist->tracks);
  system::Release(playlist);
}

// The name belongs to the pool from here on: nobody releases it with the playlist.
PlaylistRecord* NewPlaylist() noexcept {
  auto* playlist = static_cast<PlaylistRecord*>(system::AllocateZeroed(sizeof(PlaylistRecord)));
  if (playlist == nullptr) return nullptr;
  playlist->kind = kRingtoneKind;
  if (!tavrel::StoreText(kPlaylistName, playlist->name, playlist->nameSize) ||
      !g_pGlobal->pool->Adopt(playlist->name)) {
    ReleasePlaylist(playlist);
    return nullptr;
  }
  return playlist;
}

PlaylistRecord* AppendPlaylistTo(PlaylistGroup& group) noexcept {
  PlaylistRecord* playlist = NewPlaylist();
  if (playlist == nullptr) return nullptr;
  tavrel::TableAppender<PlaylistRecord> table(group.playlists, group.capacity, group.count);
  if (!table.Reserve()) {
    ReleasePlaylist(playlist);
    return nullptr;
  }
  table.Append(playlist);
  return playlist;
}

// The name ends at the file name's first '.'; that of an imported ringtone ends at the last. Kept.
bool ListFile(const std::string& fileName, const std::string& path,
              tavrel::TableAppender<TrackRecord>& table) noexcept {
  const std::string_view name = std::string_view(fileName).substr(0, fileName.find('.'));
  tavrel::RingtoneHolder ringtone = tavrel::NewRingtone();
  if (ringtone == nullptr ||
      !tavrel::StoreText(name, ringtone->info.name, ringtone->info.nameSize) ||
      !tavrel::StoreText(path, ringtone->info.location, ringtone->info.locationSize) ||
      !table.Reserve()) {
    return false;
  }
  table.Append(ringtone.release());
  return true;
}

// Every entry that is no folder, whatever its extension; those whose state cannot be read are left
// out. False when memory was exhausted: what was listed so far stays.
bool ListFolder(const std::string& folder, PlaylistRecord& playlist) {
  tavrel::TableAppender<TrackRecord> table(playlist.tracks, playlist.capacity, playlist.count);
  for (const std::string& fileName : system::NamesIn(folder)) {
    if (fileName == ".DS_Store") continue;
    const std::string path = system::PathIn(folder, fileName);
    if (system::KindOfEntry(path) != system::EntryKind::Other) continue;
    if (!ListFile(fileName, path, table)) return false;
  }
  return true;
}

}  // namespace

void tavrel::ReleaseRingtone::operator()(TrackRecord* ringtone) const noexcept {
  system::Release(ringtone->info.name);
  system::Release(ringtone->info.location);
  system::Release(ringtone);
}

tavrel::RingtoneHolder tavrel::NewRingtone() noexcept {
  return RingtoneHolder(static_cast<TrackRecord*>(system::AllocateZeroed(sizeof(TrackRecord))));
}

bool tavrel::StoreText(std::string_view text, char*& field, std::int32_t& size) noexcept {
  if (text.size() > kLongestText) return false;
  auto* copy = static_cast<char*>(system::AllocateZeroed(text.size() + 1));
  if (copy == nullptr) return false;
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  field = copy;
  size = static_cast<std::int32_t>(text.size() + 1);
  return true;
}

PlaylistRecord* tavrel::RingtonePlaylist() noexcept {
  const PlaylistGroup* group = FirstGroup();
  if (group == nullptr || group->count < 1) return nullptr;
  PlaylistRecord* last = group->playlists[group->count - 1];
  return last == Private().ringtones ? last : nullptr;
}

std::int32_t CreateRingtoneArray() noexcept {
  PlaylistGroup* group = FirstGroup();
  if (group == nullptr) return 0;
  DestroyRingtoneArray();  // there is one such playlist at the most, and it is the last
  // Before the folder is looked at: the playlist stands there even when the folder is missing.
  PlaylistRecord* playlist = AppendPlaylistTo(*group);
  Private().ringtones = playlist;
  const char* home = Private().home;
  if (playlist == nullptr || home == nullptr) return 0;
  (void)system::Guarded(
      false, [&] { return ListFolder(system::PathIn(home, kRingtoneFolder), *playlist); });
  return 0;
}

std::int32_t DestroyRingtoneArray() noexcept {
  PlaylistRecord* playlist = tavrel::RingtonePlaylist();
  if (playlist == nullptr) return 0;
  ++tavrel::playlistChanges;
  Private().ringtones = nullptr;
  --FirstGroup()->count;
  for (std::int32_t i = 0; i < playlist->count; ++i) {
    const tavrel::RingtoneHolder released(playlist->tracks[i]);
  }
  ReleasePlaylist(playlist);
  return 0;
}
