/* The records behind the interface as a host in C would write them down, with plain types and
 * nothing of the library's own headers: if a field moves, these tests fail. */
#ifndef TAVREL_TESTS_SYSTEM_C_MIRROR_H_
#define TAVREL_TESTS_SYSTEM_C_MIRROR_H_

#include <stddef.h>
#include <stdint.h>

struct MirrorAttribute {
  char* name;
  char* value;
  struct MirrorAttribute* next;
};

struct MirrorElement {
  char* name;
  char* text;
  struct MirrorAttribute* firstAttribute;
  struct MirrorElement* parentElement;
  struct MirrorElement* firstChild;
  struct MirrorElement* currentChild;
  struct MirrorElement* nextSibling;
  struct MirrorElement* previousSibling;
};

struct MirrorElementChunk {
  struct MirrorElement* elements;
  struct MirrorElementChunk* next;
  struct MirrorElementChunk* previous;
};

struct MirrorAttributeChunk {
  struct MirrorAttribute* attributes;
  struct MirrorAttributeChunk* next;
  struct MirrorAttributeChunk* previous;
};

struct MirrorDocument {
  struct MirrorElement* rootXMLElement;
  struct MirrorElementChunk* currentElementBuffer;
  struct MirrorAttributeChunk* currentAttributeBuffer;
  intptr_t currentElement;
  intptr_t currentAttribute;
  char* bytes;
  intptr_t bytesLength;
};

struct MirrorSongInfo {
  char* name;
  int32_t nameSize;
  char* location;
  int32_t locationSize;
  int32_t totalTime;
  char* artist;
  int32_t artistSize;
  char* album;
  int32_t albumSize;
  char* genre;
  int32_t genreSize;
  int32_t reserved;
  int32_t playCount;
  int32_t trackNumber;
  int32_t movie;
};

struct MirrorTrack {
  struct MirrorSongInfo info;
  int32_t trackId;
  uint8_t persistentId[8];
  struct MirrorElement* pendingDict;
};

struct MirrorPlaylist {
  struct MirrorTrack** tracks;
  int32_t capacity;
  int32_t count;
  int32_t kind;
  char* name;
  int32_t nameSize;
};

struct MirrorGroup {
  struct MirrorPlaylist** playlists;
  int32_t capacity;
  int32_t count;
};

struct MirrorState {
  struct MirrorTrack** tracks;
  int32_t trackCapacity;
  int32_t trackCount;
  struct MirrorGroup** groups;
  int32_t groupCapacity;
  int32_t groupCount;
  void** artworkFiles;
  int32_t artworkFileCapacity;
  int32_t artworkFileCount;
  uint8_t libraryPersistentId[8];
  struct MirrorDocument* document;
  void* pool;
};

struct MirrorEntity {
  const char* entity;
  const char* replacement;
};

#endif
