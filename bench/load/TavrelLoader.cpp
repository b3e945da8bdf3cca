#include <dlfcn.h>
#include <stdlib.h>

#include <stdexcept>

#include "bench/load/Loaders.h"
#include "bench/support/LinkedHome.h"
#include "tavrel/tavrel.h"

namespace tavrel::bench {
namespace {

template <typename Function>
Function* FindFunction(void* library, const char* name) {
  void* address = dlsym(library, name);
  if (address == nullptr) throw std::runtime_error(dlerror());
  return reinterpret_cast<Function*>(address);
}

LoadFigures LoadWithTavrel(const std::string& library, const std::string& file) {
  const LinkedHome home(file);
  setenv("HOME", home.path().c_str(), 1);
  LoadMeter meter;
  void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  meter.Loaded();
  if (handle == nullptr) throw std::runtime_error(dlerror());

  auto* openAllSongs = FindFunction<decltype(OpenAllSongs)>(handle, "OpenAllSongs");
  auto* getSongCount = FindFunction<decltype(GetSongCount)>(handle, "GetSongCount");
  const PlaylistRecord* songs = openAllSongs();
  if (songs == nullptr) throw std::runtime_error("the library could not use the file");
  meter.Found(getSongCount(songs));

  meter.ReleaseBegins();
  dlclose(handle);
  const LoadFigures figures = meter.Released();
  if (dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr) {
    throw std::runtime_error("the library stayed in memory after dlclose");
  }
  return figures;
}

std::string VersionOf(const std::string& library) {
  return library == TAVREL_LIBRARY_NAME ? TAVREL_VERSION : library;
}

}  // namespace

Loader TavrelLoader(const std::string& library) {
  return {kTavrel, VersionOf(library), false,
          [library](const std::string& file) { return LoadWithTavrel(library, file); }};
}

}  // namespace tavrel::bench
