// Where the files of a folder of the library may lie here.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/Folders.h"
#include "host/library/Options.h"

namespace tavrel::host {

// The texts stand in the FilePlaces that it comes from, and in the folder that was asked for.
struct FilePlace {
  std::string_view base;         // a folder here, named as it is
  std::string_view tail;         // folders below it, named as the library names them
  std::string_view musicFolder;  // the folder of music that the place belongs to; empty: to none

  [[nodiscard]] std::string Path() const;
};

// What is wrong with an OLD=NEW is a Failure.
void CheckMappings(const PathOptions& options);

// Knows what the user and the library file say of places. The library file's "Music Folder" is what old paths
// have in common; the same tail is looked for in folders beside the library file, and in the user's:
//
//   Music Folder   /Users/me/Music/iTunes/iTunes Media
//   folder         /Users/me/Music/iTunes/iTunes Media/Music/Sousa/Marches
//   tail                                               Music/Sousa/Marches
class FilePlaces {
 public:
  // The mappings must be right. musicFolder: as the library file has it. libraryFolder: that of
  // the library file; none where it comes from a program.
  FilePlaces(const PathOptions& options, std::string_view musicFolder,
             const std::optional<std::string>& libraryFolder);
  FilePlaces(const FilePlaces&) = delete;
  FilePlaces& operator=(const FilePlaces&) = delete;

  // The places of a folder of the library, in the order in which they are tried. A place beside the library
  // file, or named as in a folder of iTunes, is one only where `folders` has such a folder. What a mapping
  // says is the only one.
  [[nodiscard]] std::vector<FilePlace> Of(std::string_view folder, Folders& folders) const;

  // As the library names it; empty when it does not.
  [[nodiscard]] const std::string& MusicFolder() const noexcept { return musicFolder_; }

  // Of these, which are some, the one where a file should be that is in none: in the user's folder, else beside
  // the library file, else where it was.
  [[nodiscard]] const FilePlace& MostLikely(const std::vector<FilePlace>& places) const;

  // Where it is without a look at any disk: what the user says or, in the end, as it is written.
  [[nodiscard]] FilePlace WithoutLook(std::string_view folder) const;

 private:
  struct Mapping {
    std::string old;  // comparable
    std::string now;
    std::string musicFolder;  // where it maps the Music Folder to, or what lies around that
  };
  // A folder of the library, and what is left of it below the Music Folder; none for one that lies elsewhere.
  struct Sought {
    std::string_view folder;
    std::string comparable;
    std::optional<std::string_view> tail;
  };

  void AddMapping(const std::string& text, bool isLookedAt);
  [[nodiscard]] Sought Seek(std::string_view folder) const;
  [[nodiscard]] std::optional<FilePlace> Mapped(const Sought& sought) const;
  void AddBeside(const Sought& sought, std::vector<FilePlace>& places, Folders& folders) const;
  void AddBelowMusic(const Sought& sought, std::vector<FilePlace>& places, Folders& folders) const;
  // The folders that may be that of all media, in another.
  [[nodiscard]] std::vector<std::string> MediaFoldersIn(const std::string& folder) const;

  std::vector<Mapping> mappings_;  // the longest first
  std::string musicFolder_;        // empty: none
  std::string comparableMusicFolder_;
  std::string comparableAbove_;  // the folder that the Music Folder lies in; empty: none
  std::optional<std::string> music_;
  std::optional<std::string> libraryFolder_;
  std::vector<std::string> belowMusic_;  // folders of media
  std::vector<std::string> beside_;      // the same, beside the library file
};

}  // namespace tavrel::host
