// Songs that a library holds twice.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "host/checks/NamedFiles.h"
#include "host/library/SongRecord.h"
#include "host/library/TextNumbers.h"

namespace tavrel::host {

using Positions = std::vector<std::int32_t>;  // among all songs, ascending

struct Duplicates {
  bool isOneFile = false;  // several songs name one file; else they are alike
  Positions songs;
};

// Two songs are the same when they name one file, or share artist, album and name, without regard to case and
// to how accents are composed, and are of one length within two seconds.
class DuplicateSearch {
 public:
  // What it reads of a song.
  [[nodiscard]] static FieldSet Fields();

  void Add(std::int32_t position, const SongRecord& song);

  // Takes what was added. In the order of their first songs.
  [[nodiscard]] std::vector<Duplicates> Take();

  // The files of the songs that were added.
  [[nodiscard]] NamedFiles TakeFiles() { return std::move(files_); }

 private:
  // A song of a title.
  struct Titled {
    std::size_t title;
    std::int64_t milliseconds;
    std::int32_t position;

    auto operator<=>(const Titled&) const = default;
  };

  void AddFiles(std::vector<Duplicates>& groups) const;
  void AddTitles(std::vector<Duplicates>& groups);
  void KeepTitlesOfSeveral();
  // Of the artist and the album, as they compare.
  [[nodiscard]] const std::string& FoldedAlbum(const SongRecord& song);
  [[nodiscard]] bool ShareOneFile(const Positions& songs) const;

  NamedFiles files_;
  std::vector<std::size_t> fileOf_;  // by the position; kNoFile
  TextNumbers titles_;
  std::vector<Titled> titled_;
  std::string title_;
  std::string artist_;  // of the song before, as it is written
  std::string album_;
  std::string foldedAlbum_;
};

}  // namespace tavrel::host
