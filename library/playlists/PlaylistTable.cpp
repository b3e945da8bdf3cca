#include "library/playlists/PlaylistTable.h"

#include <algorithm>
#include <iterator>

#include "library/TableAppender.h"
#include "library/file/PropertyList.h"
#include "library/file/PropertyValue.h"
#include "library/tracks/TrackLookup.h"
#include "system/Memory.h"
#include "xml/TBXML.h"

const std::int32_t arrLibraryKind[7] = {4, 2, 3, 10, 31, 5, 19};
const std::int32_t arrGeniusKind[1] = {26};

namespace tavrel {

constinit std::uint32_t playlistChanges = 0;

namespace {

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
    groups[i] = static_cast<PlaylistGroup*>(system::AllocateZeroed(sizeof(PlaylistGroup)));
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
  ReadProperty(playlistDict, "Visible", nullptr, &visible, 0);
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
    const TBXMLElement* value = FirstValue(item);
    if (value == nullptr || value->text == nullptr) continue;
    TrackRecord* track = tracks.Find(NumberOf(value));
    if (track != nullptr) table.Append(track);
  }
}

PlaylistRecord* ReadPlaylist(LibraryState& state, const TBXMLElement* dict,
                             const TrackLookup& tracks) noexcept {
  auto* playlist = static_cast<OwnPlaylist*>(state.playlistRecords.Take(sizeof(OwnPlaylist)));
  if (playlist == nullptr) return nullptr;
  playlist->properties = dict;
  ReadProperty(dict, "Distinguished Kind", nullptr, &playlist->kind, 0);
  ReadProperty(dict, "Name", &playlist->name, &playlist->nameSize, SONGPROP_TEXT);
  ReadItems(*playlist, dict, tracks);
  return playlist;
}

void ReadPlaylists(LibraryState& state, const TBXMLElement* playlistArray) noexcept {
  TrackLookup tracks(state);
  tracks.Prepare();
  PlaylistGroup** groups = state.groups;
  TableAppender<PlaylistRecord> tables[kGroupCount] = {
      {groups[0]->playlists, groups[0]->capacity, groups[0]->count},
      {groups[1]->playlists, groups[1]->capacity, groups[1]->count},
      {groups[2]->playlists, groups[2]->capacity, groups[2]->count}};
  for (const TBXMLElement* dict = playlistArray->firstChild; dict != nullptr;
       dict = dict->nextSibling) {
    if (!IsVisible(dict)) continue;
    PlaylistRecord* playlist = ReadPlaylist(state, dict, tracks);
    if (playlist == nullptr) return;
    TableAppender<PlaylistRecord>& table = tables[GroupOfKind(playlist->kind)];
    if (!table.Reserve()) {
      system::Release(playlist->name);
      system::Release(playlist->tracks);
      return;
    }
    table.Append(playlist);
  }
}

}  // namespace

const TBXMLElement* PropertiesOf(const LibraryState& state,
                                 const PlaylistRecord* playlist) noexcept {
  if (playlist == nullptr || !state.playlistRecords.Holds(playlist)) return nullptr;
  return static_cast<const OwnPlaylist*>(playlist)->properties;
}

void CreatePlaylists(LibraryState& state) noexcept {
  ++playlistChanges;
  const bool areMadeAnew = state.groups != nullptr;
  if (!CreateGroups(state)) return;
  // The groups that are there already stay allocated, and so do their records (kept).
  if (areMadeAnew) state.playlistRecords.Abandon();
  const TBXMLElement* playlists = TopLevelChild(state.document, "array");
  if (playlists != nullptr) ReadPlaylists(state, playlists);
}

void AppendTracks(const GlobalState& state, PlaylistRecord& playlist,
                  const TBXMLElement* playlistDict) noexcept {
  ++playlistChanges;
  ReadItems(playlist, playlistDict, TrackLookup(state));
}

void DestroyPlaylists(LibraryState& state) noexcept {
  if (state.groups == nullptr) return;
  ++playlistChanges;
  for (std::int32_t g = 0; g < state.groupCount; ++g) {
    PlaylistGroup* group = state.groups[g];
    for (std::int32_t i = 0; i < group->count; ++i) {
      state.pool->Adopt(group->playlists[i]->name);
      system::Release(group->playlists[i]->tracks);
    }
    state.pool->Adopt(group->playlists);
    system::Release(group);
  }
  state.playlistRecords.ReleaseAll();
  system::Release(state.groups);
  state.groups = nullptr;
  state.groupCount = 0;
}

void ReleasePlaylist(PlaylistRecord* playlist) noexcept {
  system::Release(playlist->tracks);
  system::Release(playlist);
}

}  // namespace tavrel
