#include "tests/support/LoadedLibrary.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>

namespace tavrel::test {

LoadedLibrary::LoadedLibrary() {
  Load();
}

LoadedLibrary::LoadedLibrary(const std::string& home) {
  setenv("HOME", home.c_str(), 1);
  Load();
}

LoadedLibrary::~LoadedLibrary() {
  Unload();
}

void LoadedLibrary::Load() {
  handle_ = dlopen(TAVREL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    ADD_FAILURE() << dlerror();
    return;
  }
  const auto set = [this]<class Function>(Function& function, const char* name) {
    function = Get<Function>(name);
  };
  set(functions_.getPlaylistCount, "GetPlaylistCount");
  set(functions_.openPlaylist, "OpenPlaylist");
  set(functions_.closePlaylist, "ClosePlaylist");
  set(functions_.getPlaylistName, "GetPlaylistName");
  set(functions_.getPlaylistKind, "GetPlaylistKind");
  set(functions_.getSongCount, "GetSongCount");
  set(functions_.getSongInfo, "GetSongInfo");
  set(functions_.openAllSongs, "OpenAllSongs");
  set(functions_.getSongProperty, "GetSongProperty");
  set(functions_.getPlaylistProperty, "GetPlaylistProperty");
  set(functions_.getLibraryProperty, "GetLibraryProperty");
  set(functions_.visitSongProperties, "VisitSongProperties");
  set(functions_.visitPlaylistProperties, "VisitPlaylistProperties");
  set(functions_.visitLibraryProperties, "VisitLibraryProperties");
  set(functions_.findSongs, "FindSongs");
}

int LoadedLibrary::Unload() {
  const int result = handle_ == nullptr ? 0 : dlclose(handle_);
  handle_ = nullptr;
  return result;
}

GlobalState* LoadedLibrary::Global() const {
  return *static_cast<GlobalState**>(Find("g_pGlobal"));
}

void* LoadedLibrary::Find(const char* name) const {
  void* symbol = dlsym(handle_, name);
  EXPECT_NE(symbol, nullptr) << name;
  return symbol;
}

bool IsLibraryMapped() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.find("libTavrel") != std::string::npos) return true;
  }
  return false;
}

}  // namespace tavrel::test
