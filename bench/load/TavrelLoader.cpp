#include <dlfcn.h>
#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "bench/Loaders.h"
#include "tavrel/tavrel.h"

namespace tavrel::bench {
namespace {

template <typename Function>
Function* FindFunction(void* library, const char* name) {
  void* address = dlsym(library, name);
  if (address == nullptr) throw std::runtime_error(dlerror());
  return reinterpret_cast<Function*>(address);
}

}  // namespace

TemporaryHome::TemporaryHome(const std::string& file) {
  namespace fs = std::filesystem;
  path = (fs::temp_directory_path() / "load_library.XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "cannot make a temporary home folder");
  }
  const fs::path folder = fs::path(path) / "Music" / "iTunes";
  fs::create_directories(folder);
  fs::create_symlink(fs::canonical(file), folder / "iTunes Music Library.xml");
}

TemporaryHome::~TemporaryHome() {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

LoadTimes LoadWithTavrel(const std::string& library, const std::string& home) {
  setenv("HOME", home.c_str(), 1);
  LoadTimes times{};
  const double start = SecondsNow();
  void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  times.loadSeconds = SecondsNow() - start;
  if (handle == nullptr) throw std::runtime_error(dlerror());

  auto* openAllSongs = FindFunction<decltype(OpenAllSongs)>(handle, "OpenAllSongs");
  auto* getSongCount = FindFunction<decltype(GetSongCount)>(handle, "GetSongCount");
  const PlaylistRecord* songs = openAllSongs();
  if (songs == nullptr) throw std::runtime_error("the library could not use the file");
  times.songCount = getSongCount(songs);

  const double end = SecondsNow();
  dlclose(handle);
  times.releaseSeconds = SecondsNow() - end;
  if (dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr) {
    throw std::runtime_error("the library stayed in memory after dlclose");
  }
  return times;
}

}  // namespace tavrel::bench
