/* The records that hosts see, read field by field in C. Argument: the library to load. */
#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>

#include "Check.h"
#include "Mirror.h"

static void* library;

/* A data symbol, or a function pointer's bits: C has no cast between the two. */
static void* Find(const char* name) {
  void* symbol = dlsym(library, name);
  if (symbol == NULL) fprintf(stderr, "missing: %s\n", name);
  CHECK(symbol != NULL);
  return symbol;
}

#define HOLDS(condition) _Static_assert(sizeof(void*) != 8 || (condition), #condition)
HOLDS(sizeof(struct MirrorAttribute) == 24);
HOLDS(sizeof(struct MirrorElement) == 64);
HOLDS(sizeof(struct MirrorDocument) == 56);
HOLDS(sizeof(struct MirrorSongInfo) == 96);
HOLDS(offsetof(struct MirrorTrack, trackId) == 96);
HOLDS(offsetof(struct MirrorTrack, persistentId) == 100);
HOLDS(offsetof(struct MirrorTrack, pendingDict) == 112);
HOLDS(sizeof(struct MirrorTrack) == 120);
HOLDS(offsetof(struct MirrorPlaylist, capacity) == 8);
HOLDS(offsetof(struct MirrorPlaylist, count) == 12);
HOLDS(offsetof(struct MirrorPlaylist, kind) == 16);
HOLDS(offsetof(struct MirrorPlaylist, name) == 24);
HOLDS(offsetof(struct MirrorPlaylist, nameSize) == 32);
HOLDS(sizeof(struct MirrorPlaylist) == 40);
HOLDS(sizeof(struct MirrorGroup) == 16);
HOLDS(offsetof(struct MirrorState, groups) == 16);
HOLDS(offsetof(struct MirrorState, artworkFiles) == 32);
HOLDS(offsetof(struct MirrorState, libraryPersistentId) == 48);
HOLDS(offsetof(struct MirrorState, document) == 56);
HOLDS(offsetof(struct MirrorState, pool) == 64);

static void CheckDocument(const struct MirrorDocument* document) {
  static const char kDeclaration[] = "<?xml";
  intptr_t chunks = 0;
  const struct MirrorElementChunk* chunk;
  const struct MirrorElement* root;
  CHECK(document != NULL);
  if (document == NULL) return;
  root = document->rootXMLElement;
  CHECK(root != NULL && strcmp(root->name, "plist") == 0);
  CHECK(strcmp(root->firstAttribute->name, "version") == 0);
  CHECK(strcmp(root->firstAttribute->value, "1.0") == 0);
  CHECK(root->firstAttribute->next == NULL);
  CHECK(root->parentElement == NULL && root->nextSibling == NULL);
  CHECK(strcmp(root->firstChild->name, "dict") == 0);
  CHECK(root->firstChild->parentElement == root);
  CHECK(root->currentChild == root->firstChild);
  CHECK(root->firstChild->firstChild->nextSibling->previousSibling == root->firstChild->firstChild);

  CHECK(document->bytesLength > 1000);
  CHECK(document->bytes[document->bytesLength] == '\0');
  CHECK(memcmp(document->bytes + 1, kDeclaration + 1, 4) == 0);
  CHECK(root->name > document->bytes && root->name < document->bytes + document->bytesLength);

  CHECK(document->currentElement >= 0 && document->currentElement < 100);
  CHECK(document->currentAttribute == 0);
  CHECK(document->currentAttributeBuffer->attributes == root->firstAttribute);
  CHECK(document->currentElementBuffer->next == NULL);
  chunk = document->currentElementBuffer;
  for (; chunk != NULL; chunk = chunk->previous) {
    ++chunks;
    if (chunk->previous != NULL) {
      CHECK(chunk->previous->next == chunk);
    } else {
      CHECK(chunk->elements == root);
    }
  }
  CHECK(chunks >= 2);
}

static void CheckTracks(const struct MirrorState* state) {
  static const uint8_t kPersistentId[8] = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};
  static const uint8_t kNone[8] = {0};
  static const int32_t kIds[5] = {101, 103, 105, 107, 109};
  int32_t i;
  CHECK(memcmp(state->libraryPersistentId, kPersistentId, 8) == 0);
  CHECK(state->trackCount == 5);
  CHECK(state->trackCapacity == 32);
  for (i = 0; i < 5; ++i) {
    const struct MirrorTrack* track = state->tracks[i];
    CHECK(track->trackId == kIds[i]);
    CHECK(track->pendingDict != NULL);
    CHECK(strcmp(track->pendingDict->name, "dict") == 0);
    CHECK(track->info.name == NULL && track->info.nameSize == 0);
    CHECK(memcmp(track->persistentId, kNone, 8) == 0);
  }
}

static void CheckGroups(const struct MirrorState* state) {
  const struct MirrorPlaylist* music;
  CHECK(state->groupCapacity == 3 && state->groupCount == 3);
  CHECK(state->groups[0]->count >= 3 && state->groups[0]->capacity == 32);
  CHECK(state->groups[1]->count == 1 && state->groups[1]->capacity == 32);
  CHECK(state->groups[2]->count == 2 && state->groups[2]->capacity == 32);
  music = state->groups[0]->playlists[0];
  CHECK(music->kind == 4);
  CHECK(strcmp(music->name, "Music") == 0 && music->nameSize == 6);
  CHECK(music->count == 3 && music->capacity == 32);
  CHECK(music->tracks[0] == state->tracks[0] && music->tracks[2] == state->tracks[2]);
  /* A playlist without items has no array; one whose items are unknown has room all the same. */
  CHECK(state->groups[1]->playlists[0]->tracks == NULL);
  CHECK(state->groups[1]->playlists[0]->capacity == 0);
  CHECK(state->groups[2]->playlists[1]->count == 1);
  CHECK(state->groups[2]->playlists[1]->capacity == 32);
  CHECK(state->artworkFiles == NULL && state->artworkFileCount == 0);
  CHECK(state->pool != NULL);
}

static void CheckLoadOnDemand(struct MirrorState* state) {
  static const uint8_t kPersistentId[8] = {0, 0, 0, 0, 0, 0, 0, 0xFF};
  int32_t (*getSongInfo)(void*, int32_t, struct MirrorSongInfo*);
  struct MirrorPlaylist* music = state->groups[0]->playlists[0];
  const struct MirrorTrack* track = music->tracks[0];
  struct MirrorSongInfo info;
  void* symbol = Find("GetSongInfo");
  memcpy(&getSongInfo, &symbol, sizeof symbol);
  memset(&info, 0, sizeof info);
  CHECK(getSongInfo(music, 0, &info) > 96);
  CHECK(track->pendingDict == NULL);
  CHECK(strcmp(track->info.location, "/Users/x/Music/A B.mp3") == 0);
  CHECK(track->info.locationSize == 23);
  CHECK(track->info.totalTime == 191000 && track->info.playCount == 12);
  CHECK(track->info.trackNumber == 1 && track->info.movie == 0 && track->info.reserved == 0);
  CHECK(memcmp(track->persistentId, kPersistentId, 8) == 0);
  CHECK(track->info.nameSize == info.nameSize);
  CHECK(music->tracks[1]->pendingDict != NULL);
}

static void CheckTables(void) {
  static const int32_t kLibrary[7] = {4, 2, 3, 10, 31, 5, 19};
  static const char* const kEntities[5][2] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}, {"&apos;", "'"}, {"&quot;", "\""}};
  const struct MirrorEntity* entities = (const struct MirrorEntity*)Find("XMLEntities");
  int i;
  CHECK(memcmp(Find("arrLibraryKind"), kLibrary, sizeof kLibrary) == 0);
  CHECK(*(const int32_t*)Find("arrGeniusKind") == 26);
  for (i = 0; i < 5; ++i) {
    CHECK(strcmp(entities[i].entity, kEntities[i][0]) == 0);
    CHECK(strcmp(entities[i].replacement, kEntities[i][1]) == 0);
  }
}

int main(int argc, char** argv) {
  struct MirrorState* state;
  if (argc != 2) return 2;
  library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 2;
  }
  state = *(struct MirrorState**)Find("g_pGlobal");
  CHECK(state != NULL);
  if (state != NULL) {
    CheckDocument(state->document);
    CheckTracks(state);
    CheckGroups(state);
    CheckLoadOnDemand(state);
  }
  CheckTables();
  CHECK(dlclose(library) == 0);
  return failures == 0 ? 0 : 1;
}
