// The built shared library, loaded as any host would load it: by dlopen, with a home folder chosen
// beforehand.
#pragma once

#include <string>

#include "library/State.h"
#include "tavrel/tavrel.h"

namespace tavrel::test {

// What a host calls. A table, so that a survey of a library can also run on functions that are
// linked or wrapped.
struct HostFunctions {
  decltype(&GetPlaylistCount) getPlaylistCount;
  decltype(&OpenPlaylist) openPlaylist;
  decltype(&ClosePlaylist) closePlaylist;
  decltype(&GetPlaylistName) getPlaylistName;
  decltype(&GetPlaylistKind) getPlaylistKind;
  decltype(&GetSongCount) getSongCount;
  decltype(&GetSongInfo) getSongInfo;
  decltype(&OpenAllSongs) openAllSongs;
  decltype(&GetSongProperty) getSongProperty;
  decltype(&GetPlaylistProperty) getPlaylistProperty;
  decltype(&GetLibraryProperty) getLibraryProperty;
  decltype(&VisitSongProperties) visitSongProperties;
  decltype(&VisitPlaylistProperties) visitPlaylistProperties;
  decltype(&VisitLibraryProperties) visitLibraryProperties;
  decltype(&FindSongs) findSongs;
};

class LoadedLibrary {
 public:
  // Loads the library with HOME as it is.
  LoadedLibrary();
  // Sets HOME, and loads the library.
  explicit LoadedLibrary(const std::string& home);
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;
  ~LoadedLibrary();

  // Result: that of dlclose, 0 when it succeeded. A second call does nothing.
  int Unload();

  [[nodiscard]] const HostFunctions& functions() const { return functions_; }
  const HostFunctions* operator->() const { return &functions_; }
  [[nodiscard]] GlobalState* Global() const;
  [[nodiscard]] bool HasDocument() const { return Global()->document != nullptr; }

  // The exported function of that name; the type is that of its pointer.
  template <class Function>
  [[nodiscard]] Function Get(const char* name) const {
    return reinterpret_cast<Function>(Find(name));
  }

 private:
  void Load();
  [[nodiscard]] void* Find(const char* name) const;

  void* handle_ = nullptr;
  HostFunctions functions_ = {};
};

// Whether any page of the library is mapped into this process.
[[nodiscard]] bool IsLibraryMapped();

}  // namespace tavrel::test
