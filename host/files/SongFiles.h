// Finds the files of songs by their locations in the library file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/FilePlaces.h"
#include "host/files/Folders.h"
#include "host/library/FileFinder.h"
#include "host/library/Options.h"
#include "host/library/TextHash.h"

namespace tavrel::host {

// A file is tried in each place as it is written, then with accents composed otherwise, and in another case
// where nothing else fits; the folders that lead to it likewise. A location that leads upwards ("..") names no
// file.
//
// Cost: each folder is listed once; nothing is opened, and nothing is looked at but folders and links. One that
// may be entered but not listed costs three looks a song.
class SongFiles final : public FileFinder {
 public:
  // As FilePlaces takes them.
  SongFiles(const PathOptions& options, std::string_view musicFolder,
            const std::optional<std::string>& libraryFolder);
  SongFiles(const SongFiles&) = delete;
  SongFiles& operator=(const SongFiles&) = delete;
  ~SongFiles() = default;

  [[nodiscard]] SongFile Find(std::optional<std::string_view> location,
                              std::string_view type) override;
  [[nodiscard]] SongFile FindPath(std::string_view path) override;

  [[nodiscard]] Folders& AllFolders() noexcept { return folders_; }

  // Where the library's Music Folder seems to be now; none when it is nowhere.
  [[nodiscard]] std::optional<std::string> MusicFolder();

 private:
  struct Reached {
    FolderContents* folder;
    std::string_view musicFolder;  // as FilePlace has it
  };
  // What is known of a folder of the library.
  struct Known {
    std::vector<Reached> exact;                 // named as they are written, of the places so far
    std::size_t places = 0;                     // that were looked at
    std::optional<std::vector<Reached>> alike;  // those and others; none until it is needed
    std::string sought;                         // where it should be; empty until then
  };
  using KnownFolder = TextMap<Known>::value_type;

  [[nodiscard]] SongFile FindIn(KnownFolder& known, std::string_view name);
  [[nodiscard]] SongFile WithoutLook(std::string_view folder, std::string_view name);
  // Null for a folder that leads upwards.
  [[nodiscard]] KnownFolder* KnownOf(std::string_view folder);
  // Looks for what is needed for songs that are not where they are written.
  void Extend(KnownFolder& known);
  // Looks at no place behind the one where the file is.
  [[nodiscard]] bool TakeExact(KnownFolder& known, std::string_view name);
  [[nodiscard]] bool TakeFrom(const Reached& reached, std::string_view name);
  [[nodiscard]] bool TakeAlike(const Known& known, std::string_view name);
  void Take(const Reached& reached, std::string_view name);

  PathForm form_;
  FilePlaces places_;
  Folders folders_;
  TextMap<Known> known_;
  KnownFolder* last_ = nullptr;  // of the song before
  std::string written_;
  std::string path_;
  std::string sought_;
  std::string_view musicFolder_;
};

}  // namespace tavrel::host
