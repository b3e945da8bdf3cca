// A host that happens to define functions and a variable of the names that the library uses inside: the
// library must go on with its own.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tavrel/tavrel.h"

namespace {

[[noreturn]] void TakenOver(const char* name) {
  std::fprintf(stderr, "the library called the host's %s\n", name);
  std::_Exit(3);
}

}  // namespace

#define TAVREL_HOST_FUNCTION(name)                                                      \
  extern "C" __attribute__((visibility("default"), used)) std::int32_t name() noexcept; \
  extern "C" std::int32_t name() noexcept {                                             \
    TakenOver(#name);                                                                   \
  }

TAVREL_HOST_FUNCTION(OpenXML)
TAVREL_HOST_FUNCTION(ReadSongProp)
TAVREL_HOST_FUNCTION(RestoreXMLEscChar)
TAVREL_HOST_FUNCTION(PersistentId2Buf)
TAVREL_HOST_FUNCTION(CreateTrackArray)
TAVREL_HOST_FUNCTION(CreatePlaylistArray)
TAVREL_HOST_FUNCTION(CreatePlaylistTrack)
TAVREL_HOST_FUNCTION(DestroyTrackArray)
TAVREL_HOST_FUNCTION(DestroyPlaylistArray)
TAVREL_HOST_FUNCTION(AgentInitializer)
TAVREL_HOST_FUNCTION(AgentInitializerImp)
TAVREL_HOST_FUNCTION(AgentFinalizer)
TAVREL_HOST_FUNCTION(AgentFinalizerImp)
TAVREL_HOST_FUNCTION(GetSongInfoImp)

// Too small for a pointer, and not to be written to.
extern "C" {
__attribute__((visibility("default"))) extern const char g_pGlobal[1];
const char g_pGlobal[1] = {'x'};
}

int main() {
  SongInfo info = {};
  PlaylistRecord* music = OpenPlaylist(0, 0);
  if (GetSongCount(music) != 3 || GetSongInfo(music, 0, &info) <= 96) {
    std::fprintf(stderr, "the library was not loaded\n");
    return 1;
  }
  return 0;
}
