// What became of the files of many songs, in one line.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/FileFinder.h"
#include "host/library/SongRecord.h"

namespace tavrel::host {

class FileTally {
 public:
  // The record's Path or Status must have been read. Each song once.
  void Add(const SongRecord& song);
  void Add(const SongFile& file);

  [[nodiscard]] std::int64_t Count(FileStatus status) const noexcept {
    return counts_[static_cast<std::size_t>(status)];
  }

  // The folders of music in which some are.
  [[nodiscard]] std::set<std::string> MusicFolders() const;

  // "1,980 of 2,325 files found below /media/disk/iTunes Media"; empty when no song has a file, or nobody
  // looked.
  [[nodiscard]] std::string Line() const;

 private:
  struct FoundIn {
    std::string folder;  // empty: in no folder of music
    std::int64_t songs;
  };

  void Add(FileStatus status, bool hasFile, std::string_view musicFolder);

  std::array<std::int64_t, kFileStatusCount> counts_{};
  std::vector<FoundIn> folders_;  // a handful: the user and the library name them
};

}  // namespace tavrel::host
