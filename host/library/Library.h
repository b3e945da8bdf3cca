// The library, opened at run time as any host may open it.
#pragma once

#include <tavrel/tavrel.h>

#include <memory>
#include <optional>
#include <string>

namespace tavrel::host {

class FileFinder;

// The library's functions that this host uses, typed by the public header; and what it adds to them.
struct LibraryFunctions {
  decltype(&::GetPlaylistCount) getPlaylistCount;
  decltype(&::OpenPlaylist) openPlaylist;
  decltype(&::GetPlaylistName) getPlaylistName;
  decltype(&::GetPlaylistKind) getPlaylistKind;
  decltype(&::GetSongCount) getSongCount;
  decltype(&::GetSongInfo) getSongInfo;
  decltype(&::AppendRingtone) appendRingtone;
  decltype(&::GetArtworkCount) getArtworkCount;
  decltype(&::GetArtworkInfo) getArtworkInfo;
  decltype(&::CloseArtwork) closeArtwork;
  decltype(&::OpenAllSongs) openAllSongs;
  decltype(&::OpenArtworkAny) openArtworkAny;
  decltype(&::OpenArtworkFile) openArtworkFile;
  decltype(&::GetSongProperty) getSongProperty;
  decltype(&::GetLibraryProperty) getLibraryProperty;
  decltype(&::VisitLibraryProperties) visitLibraryProperties;
  decltype(&::VisitSongProperties) visitSongProperties;
  decltype(&::VisitPlaylistProperties) visitPlaylistProperties;
  decltype(&::FindSongs) findSongs;
  FileFinder* files = nullptr;  // borrowed; null: nobody looks for the files of songs
};

// The opened library; its handles end with it.
class Library : public LibraryFunctions {
 public:
  // Opens the library, which reads its file at that moment. home: the folder to read below, an
  // absolute path; none for the user's own. $HOME is changed for no longer than that. A library
  // that cannot be opened, or that lacks a function, is a Failure.
  explicit Library(const std::optional<std::string>& home);

  // Whether the library has found and read its file.
  [[nodiscard]] bool IsLoaded() const noexcept { return openAllSongs() != nullptr; }

 private:
  struct Close {
    void operator()(void* handle) const noexcept;
  };
  std::unique_ptr<void, Close> handle_;
};

}  // namespace tavrel::host
