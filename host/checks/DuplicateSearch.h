// Songs that a library holds twice.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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

 private:
  // A song of a title.
  struct Titled {
    std::size_t title;
    std::int64_t milliseconds;
    std::int32_t position;

    auto operator<=>(const Titled&) const = default;
  };

  void TakeFiles(std::vector<Duplicates>& groups);
  void TakeTitles(std::vector<Duplicates>& groups);
  [[nodiscard]] bool ShareOneFile(const Positions& songs) const;

  TextNumbers files_;
  std::vector<std::size_t> fileOf_;  // by the position; kNoFile
  TextNumbers titles_;
  std::vector<Titled> titled_;
  std::string title_;
};

}  // namespace tavrel::host
