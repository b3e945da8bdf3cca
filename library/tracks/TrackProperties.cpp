#include "library/tracks/TrackProperties.h"

#include <cstring>
#include <optional>
#include <string>

#include "library/file/PersistentId.h"
#include "library/file/PropertyList.h"
#include "library/file/TextDecoding.h"
#include "library/tracks/PlainTrackProperties.h"
#include "system/Guard.h"
#include "text/FileUrl.h"
#include "text/OrdinaryUrl.h"

using namespace tavrel;

namespace {

// In the order in which their values are read.
enum Property : std::size_t {
  kName,
  kLocation,
  kArtist,
  kAlbum,
  kGenre,
  kTotalTime,
  kPlayCount,
  kMovie,
  kTrackNumber,
  kPersistentId,
  kNone
};

Property PropertyIf(const char* key, const char* name, Property property) noexcept {
  return std::strcmp(key, name) == 0 ? property : kNone;
}

// Most keys are of no property; the others take one comparison.
Property PropertyOf(const char* key) noexcept {
  switch (key[0]) {
    case 'A':
      return key[1] == 'l' ? PropertyIf(key, "Album", kAlbum) : PropertyIf(key, "Artist", kArtist);
    case 'G':
      return PropertyIf(key, "Genre", kGenre);
    case 'L':
      return key[1] == 'o' ? PropertyIf(key, "Location", kLocation) : kNone;
    case 'M':
      return PropertyIf(key, "Movie", kMovie);
    case 'N':
      return PropertyIf(key, "Name", kName);
    case 'P':
      return key[1] == 'l' ? PropertyIf(key, "Play Count", kPlayCount)
                           : PropertyIf(key, "Persistent ID", kPersistentId);
    case 'T':
      return key[1] == 'r' ? PropertyIf(key, "Track Number", kTrackNumber)
                           : PropertyIf(key, "Total Time", kTotalTime);
    default:
      return kNone;
  }
}

// The value elements of all properties, found in one walk: of each the first, or none.
class Values {
 public:
  explicit Values(const TBXMLElement& dict) noexcept {
    const TBXMLElement* key = dict.firstChild;
    while (key != nullptr && key->nextSibling != nullptr) {
      const TBXMLElement* value = key->nextSibling;
      const Property property = key->text == nullptr ? kNone : PropertyOf(key->text);
      if (values_[property] == nullptr) values_[property] = value;
      key = value->nextSibling;
    }
  }

  const TBXMLElement* operator[](Property property) const noexcept { return values_[property]; }

 private:
  const TBXMLElement* values_[kNone + 1] = {};
};

// Reads texts into the memory that the library keeps for those of its tracks.
class TextReader {
 public:
  explicit TextReader(system::ZeroedArena& memory) noexcept : memory_(memory) {}

  void ReadText(const TBXMLElement* element, char*& text, std::int32_t& size) noexcept {
    const char* source = tavrel::TextOrNumber(element, size);
    if (source == nullptr) return;
    const std::size_t length = std::strlen(source);
    Store(Decoded(source, length), length, text, size);
  }

  void ReadLocation(const TBXMLElement* element, char*& text, std::int32_t& size) noexcept {
    const char* source = tavrel::TextOrNumber(element, size);
    if (source == nullptr) return;
    std::size_t length = std::strlen(source);
    const char* url = HoldsReference(source, length) ? Decoded(source, length) : source;
    char* path = url == nullptr ? nullptr : Take(length + 1);
    if (path != nullptr && !DecodeUrl(url, path, length)) path = nullptr;
    Store(path, length, text, size);
  }

 private:
  char* Take(std::size_t bytes) noexcept { return static_cast<char*>(memory_.Take(bytes)); }

  static bool HoldsReference(const char* text, std::size_t length) noexcept {
    return std::memchr(text, '&', length) != nullptr;
  }

  // A new text; null when memory is exhausted.
  char* Decoded(const char* source, std::size_t length) noexcept {
    char* decoded = Take(length + 1);
    if (decoded == nullptr) return nullptr;
    if (HoldsReference(source, length)) {
      RestoreXMLEscChar(decoded, source, static_cast<std::int32_t>(length + 1));
    } else {
      std::memcpy(decoded, source, length);
    }
    return decoded;
  }

  // path:   more room than the URL takes.
  // length: receives that of the path. False when the URL is malformed or memory is exhausted.
  static bool DecodeUrl(const char* url, char* path, std::size_t& length) noexcept {
    if (const auto ordinary = text::PathOfOrdinaryUrl(url, path)) {
      length = *ordinary;
      path[length] = '\0';
      return true;
    }
    return system::Guarded(false, [&] {
      const std::optional<std::string> decoded = text::PathOfUrl(url);
      if (!decoded) return false;
      length = decoded->size();
      std::memcpy(path, decoded->c_str(), length + 1);
      return true;
    });
  }

  static void Store(char* result, std::size_t length, char*& text, std::int32_t& size) noexcept {
    size = result == nullptr ? 0 : static_cast<std::int32_t>(length + 1);
    if (result != nullptr) text = result;
  }

  system::ZeroedArena& memory_;
};

// Whether the record is one that the loaded library has made.
bool IsOwnTrack(const TrackRecord& track) noexcept {
  return tavrel::loadedState != nullptr && tavrel::loadedState->trackRecords.Holds(&track);
}

}  // namespace

void tavrel::LoadTrackProperties(TrackRecord& track) noexcept {
  if (!IsOwnTrack(track)) return LoadTrackPropertiesPlainly(track);
  const Values values(*track.pendingDict);
  TextReader reader(loadedState->trackTexts);
  SongInfo& info = track.info;
  reader.ReadText(values[kName], info.name, info.nameSize);
  reader.ReadLocation(values[kLocation], info.location, info.locationSize);
  reader.ReadText(values[kArtist], info.artist, info.artistSize);
  reader.ReadText(values[kAlbum], info.album, info.albumSize);
  reader.ReadText(values[kGenre], info.genre, info.genreSize);
  ReadValue(values[kTotalTime], nullptr, &info.totalTime, 0);
  ReadValue(values[kPlayCount], nullptr, &info.playCount, 0);
  ReadValue(values[kMovie], nullptr, &info.movie, 0);
  ReadValue(values[kTrackNumber], nullptr, &info.trackNumber, 0);
  ReadPersistentId(values[kPersistentId], track.persistentId);
  track.pendingDict = nullptr;
}
