#include "tests/reference/LiteralTrackProperties.h"

#include <stdlib.h>

#include <cstring>
#include <new>
#include <optional>
#include <string>

#include "library/file/PersistentId.h"
#include "library/file/XmlText.h"
#include "text/FileUrl.h"
#include "text/Numbers.h"

namespace tavrel::reference {
namespace {

enum class Kind { Number, Text, Path };

const TBXMLElement* ValueOf(const TBXMLElement* dict, const char* key) {
  const TBXMLElement* keyElement = dict->firstChild;
  while (keyElement != nullptr) {
    const TBXMLElement* value = keyElement->nextSibling;
    if (value == nullptr) return nullptr;
    if (keyElement->text != nullptr && std::strcmp(keyElement->text, key) == 0) return value;
    keyElement = value->nextSibling;
  }
  return nullptr;
}

char* NewText(std::size_t size) {
  auto* text = static_cast<char*>(calloc(1, size));
  if (text == nullptr) throw std::bad_alloc();
  return text;
}

// Stores the path of the URL `text`, which it takes over; a malformed one leaves no text and the size 0.
void StorePath(char* url, char** text, std::int32_t* value) {
  const std::optional<std::string> path = text::PathOfUrl(url);
  free(url);
  *value = 0;
  if (!path) return;
  *text = NewText(path->size() + 1);
  std::memcpy(*text, path->c_str(), path->size());
  *value = static_cast<std::int32_t>(path->size() + 1);
}

void Read(const TBXMLElement* dict, const char* key, Kind kind, char** text, std::int32_t* value) {
  const TBXMLElement* element = ValueOf(dict, key);
  if (element == nullptr) return;
  const bool isTrue = element->name != nullptr && std::strcmp(element->name, "true") == 0;
  const bool isFalse = element->name != nullptr && std::strcmp(element->name, "false") == 0;
  if (isTrue || isFalse || element->text == nullptr) {
    *value = isTrue ? 1 : 0;
    return;
  }
  if (kind == Kind::Number) {
    *value = text::ReadDecimal(element->text);
    return;
  }
  const std::size_t size = std::strlen(element->text) + 1;
  char* decoded = NewText(size);
  DecodeXmlText(decoded, element->text, static_cast<std::int32_t>(size));
  if (kind == Kind::Path) return StorePath(decoded, text, value);
  *text = decoded;
  *value = static_cast<std::int32_t>(size);
}

}  // namespace

void LoadTrackPropertiesLiterally(TrackRecord& track) {
  const TBXMLElement* dict = track.pendingDict;
  SongInfo& info = track.info;
  Read(dict, "Name", Kind::Text, &info.name, &info.nameSize);
  Read(dict, "Location", Kind::Path, &info.location, &info.locationSize);
  Read(dict, "Artist", Kind::Text, &info.artist, &info.artistSize);
  Read(dict, "Album", Kind::Text, &info.album, &info.albumSize);
  Read(dict, "Genre", Kind::Text, &info.genre, &info.genreSize);
  Read(dict, "Total Time", Kind::Number, nullptr, &info.totalTime);
  Read(dict, "Play Count", Kind::Number, nullptr, &info.playCount);
  Read(dict, "Movie", Kind::Number, nullptr, &info.movie);
  Read(dict, "Track Number", Kind::Number, nullptr, &info.trackNumber);

  char* id = nullptr;
  std::int32_t idSize = 0;
  Read(dict, "Persistent ID", Kind::Text, &id, &idSize);
  ParsePersistentId(id, track.persistentId);
  free(id);
  track.pendingDict = nullptr;
}

}  // namespace tavrel::reference
