#include "library/tracks/TrackProperties.h"

#include <array>
#include <cstring>

#include "library/file/PersistentId.h"
#include "library/file/PropertyList.h"
#include "library/file/PropertyValue.h"
#include "library/tracks/TrackFields.h"
#include "system/Memory.h"

namespace tavrel {
namespace {

// The value elements of all fields: of each the first, or none.
using FieldValues = std::array<const TBXMLElement*, kNoField>;

FieldValues ValuesOf(const TBXMLElement* dict) noexcept {
  FieldValues values = {};
  for (const auto [key, value] : Pairs(dict)) {
    const std::size_t field = FieldOfKey(key->text);
    if (field != kNoField && values[field] == nullptr) values[field] = value;
  }
  return values;
}

// Whether the record is one that the loaded library has made.
bool IsOwnTrack(const TrackRecord& track, const LibraryState* loaded) noexcept {
  return loaded != nullptr && loaded->trackRecords.Holds(&track);
}

// Sizes are outputs only: what the host put there is overwritten and never compared. Deliberate:
// the host learns the sizes from a first call and makes its buffers large enough.
void CopyText(const char* text, std::int32_t size, char* buffer,
              std::int32_t& bufferSize) noexcept {
  bufferSize = size;
  if (buffer != nullptr && text != nullptr) std::memcpy(buffer, text, std::strlen(text) + 1);
}

}  // namespace

void LoadTrackProperties(TrackRecord& track, LibraryState* loaded) noexcept {
  if (!IsOwnTrack(track, loaded)) return LoadTrackPropertiesPlainly(track);
  const FieldValues values = ValuesOf(track.pendingDict);
  const TextMemory memory(loaded->trackTexts);
  for (std::size_t i = 0; i < kTrackFields.size(); ++i) {
    if (values[i] == nullptr) continue;
    const TrackField& field = kTrackFields[i];
    char** text = field.text == nullptr ? nullptr : &(track.info.*field.text);
    ReadValue(values[i], text, &(track.info.*field.number), field.flags, memory);
  }
  ReadPersistentId(values[kPersistentIdField], track.persistentId);
  track.pendingDict = nullptr;
}

void LoadTrackPropertiesPlainly(TrackRecord& track) noexcept {
  const TBXMLElement* dict = track.pendingDict;
  for (const TrackField& field : kTrackFields) {
    char** text = field.text == nullptr ? nullptr : &(track.info.*field.text);
    ReadProperty(dict, field.key, text, &(track.info.*field.number), field.flags);
  }
  char* id = nullptr;
  std::int32_t idSize = 0;
  ReadProperty(dict, kPersistentIdKey, &id, &idSize, SONGPROP_TEXT);
  ParsePersistentId(id, track.persistentId);
  system::Release(id);
  track.pendingDict = nullptr;
}

std::int32_t CopySongInfo(const SongInfo& song, SongInfo& info) noexcept {
  CopyText(song.name, song.nameSize, info.name, info.nameSize);
  CopyText(song.location, song.locationSize, info.location, info.locationSize);
  CopyText(song.artist, song.artistSize, info.artist, info.artistSize);
  CopyText(song.album, song.albumSize, info.album, info.albumSize);
  CopyText(song.genre, song.genreSize, info.genre, info.genreSize);
  info.totalTime = song.totalTime;
  info.playCount = song.playCount;
  info.trackNumber = song.trackNumber;
  info.movie = song.movie;
  return static_cast<std::int32_t>(sizeof(SongInfo)) + song.nameSize + song.locationSize +
         song.artistSize + song.albumSize + song.genreSize;
}

}  // namespace tavrel
