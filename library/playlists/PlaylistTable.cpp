#include "library/playlists/PlaylistTable.h"

#include <algorithm>
#include <iterator>

#include "library/TableAppender.h"
#include "library/file/PropertyList.h"
#include "library/tracks/TrackLookup.h"
#include "system/Memory.h"
#include "text/Numbers.h"
#include "xml/TBXML.h"

using namespace tavrel;
using tavrel::TableAppender;
using tavrel::TrackLookup;

const std::int32_t arrLibraryKind[7] = {4, 2, 3, 10, 31, 5, 19};
const std::int32_t arrGeniusKind[1] = {26};

constinit std::uint32_t tavrel::playlistChanges = 0;

namespace {

template <class Record>
Record* NewRecord() noexcept {
  return static_cast<Record*>(system::AllocateZeroed(sizeof(Record)));
}

template <std::size_t kSize>
bool Holds(const std::int32_t (&kinds)[kSize], std::int32_t kind) noexcept {
  return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds);
}

int GroupOfKind(std::int32_t kind) noexcept {
  if (Holds(arrLibraryKind, kind)) return 0;
  return Holds(arrGeniusKind, kind) ? 1 : 2;
}

// The groups exist, empty, whatever the file holds; none of them when memory is exhausted.
bool CreateGroups(GlobalState& state) noexcept {
  auto** groups =
      static_cast<PlaylistGroup**>(system::AllocateZeroed(kGroupCount * sizeof(PlaylistGroup*)));
  if (groups == nullptr) return false;
  bool complete = true;
  for (int i = 0; i < kGroupCount; ++i) {
    groups[i] = NewRecord<PlaylistGroup>();
    complete = complete && groups[i] != nullptr;
  }
  if (!complete) {
    for (int i = 0; i < kGroupCount; ++i) system::Release(groups[i]);
    system::Release(groups);
    return false;
  }
  state.groups = groups;
  state.groupCapacity = kGroupCount;
  state.groupCount = kGroupCount;
  return true;
}

bool IsVisible(const TBXMLElement* playlistDict) noexcept {
  std::int32_t visible = 1;
  ReadSongProp(playlistDict, "Visible", nullptr, &visible, 0);
  return visible != 0;
}

void ReadItems(PlaylistRecord& playlist, const TBXMLElement* dict,
               const TrackLookup& tracks) noexcept {
  const TBXMLElement* items = TBXML::childElementNamed("array", dict);
  if (items == nullptr) return;
  TableAppender<TrackRecord> table(playlist.tracks, playlist.capacity, playlist.count);
  for (const TBXMLElement* item = items->firstChild; item != nullptr; item = item->nextSibling) {
    // Room is made before the item is looked up, so that the capacity may grow for one that is
    // dropped.
    if (!table.Reserve()) return;
    const TBXMLElement* value = tavrel::FirstValue(item);
    if (value == nullptr || value->text == nullptr) continue;
    TrackRecord* track = tracks.Find(tavrel::text::ReadDecimal(value->text));
    if (track != nullptr) table.Append(track);
  }
}

PlaylistRecord* ReadPlaylist(const TBXMLElement* dict, const TrackLookup& tracks) noexcept {
  auto* playlist = NewRecord<PlaylistRecord>();
  if (playlist == nullptr) return nullptr;
  ReadSongProp(dict, "Distinguished Kind", nullptr, &playlist->kind, 0);
  ReadSongProp(dict, "Name", &playlist->name, &playlist->nameSize, SONGPROP_TEXT);
  ReadItems(*playlist, dict, tracks);
  return playlist;
}

void ReleasePlaylist(PlaylistRecord* playlist) noexcept {
  system::Release(playlist->tracks);
  system::Release(playlist);
}

void ReadPlaylists(const TBXMLElement* playlistArray) noexcept {
  TrackLookup tracks(*g_pGlobal);
  tracks.Prepare();
  PlaylistGroup** groups = g_pGlobal->groups;
  TableAppender<PlaylistRecord> tables[kGroupCount] = {
      {groups[0]->playlists, groups[0]->capacity, groups[0]->count},
      {groups[1]->playlists, groups[1]->capacity, groups[1]->count},
      {groups[2]->playlists, groups[2]->capacity, groups[2]->count}};
  for (const TBXMLElement* dict = playlistArray->firstChild; dict != nullptr;
       dict = dict->nextSibling) {
    if (!IsVisible(dict)) continue;
    PlaylistRecord* playlist = ReadPlaylist(dict, tracks);
    if (playlist == nullptr) return;
    TableAppender<PlaylistRecord>& table = tables[GroupOfKind(playlist->kind)];
    if (!table.Reserve()) {
      system::Release(playlist->name);
      ReleasePlaylist(playlist);
      return;
    }
    table.Append(playlist);
  }
}

}  // namespace

std::int32_t CreatePlaylistArray() noexcept {
  if (g_pGlobal == nullptr) return 0;
  ++tavrel::playlistChanges;
  if (!CreateGroups(*g_pGlobal)) return 0;
  const TBXMLElement* top = tavrel::TopLevelDictionary();
  const TBXMLElement* playlists = top == nullptr ? nullptr : TBXML::childElementNamed("array", top);
  if (playlists != nullptr) ReadPlaylists(playlists);
  return 0;
}

std::int32_t CreatePlaylistTrack(PlaylistRecord* playlist,
                                 const TBXMLElement* playlistDict) noexcept {
  if (playlist == nullptr || playlistDict == nullptr || g_pGlobal == nullptr) return 0;
  ++tavrel::playlistChanges;
  ReadItems(*playlist, playlistDict, TrackLookup(*g_pGlobal));
  return 0;
}

// Names and the groups' arrays go to the pool, which gives them back when it is drained at unload.
std::int32_t DestroyPlaylistArray() noexcept {
  if (g_pGlobal == nullptr || g_pGlobal->groups == nullptr) return 0;
  ++tavrel::playlistChanges;
  DestroyRingtoneArray();  // its songs and its name are not the table's; at unload it has gone
  system::ReleasePool& pool = *g_pGlobal->pool;
  for (std::int32_t g = 0; g < g_pGlobal->groupCount; ++g) {
    PlaylistGroup* group = g_pGlobal->groups[g];
    for (std::int32_t i = 0; i < group->count; ++i) {
      pool.Adopt(group->playlists[i]->name);
      ReleasePlaylist(group->playlists[i]);
    }
    pool.Adopt(group->playlists);
    system::Release(group);
  }
  system::Release(g_pGlobal->groups);
  g_pGlobal->groups = nullptr;
  g_pGlobal->groupCount = 0;
  return 0;
}
