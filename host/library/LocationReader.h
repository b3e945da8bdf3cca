// What the location of a song is on this machine.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/library/FileFinder.h"

namespace tavrel::host {

class LocationReader {
 public:
  // files: borrowed; null: nobody looks for the files of songs.
  explicit LocationReader(FileFinder* files) noexcept : files_(files) {}

  // The next location; its type of track. Borrowed as long as what is told of it. A zero byte stands behind the location.
  // isSought: whether the file is looked for.
  void Read(std::optional<std::string_view> location, std::string_view type, bool isSought);

  // The path that it names, where the file once was; none for what names no path.
  [[nodiscard]] std::optional<std::string_view> WrittenPath();
  // What became of the file; nothing when it was not looked for.
  [[nodiscard]] const SongFile& File() const noexcept { return file_; }

 private:
  void ReadOrdinary(std::string_view url);

  FileFinder* files_;
  std::optional<std::string_view> fileUrl_;
  std::optional<std::string_view> ordinary_;  // the path of an ordinary URL
  std::string ordinaryRoom_;
  // Of the file URL before: nearly always the next one leads to the same folder.
  std::string folderUrl_;  // up to its last '/'
  std::size_t folderLength_ =
      0;  // of the path up to there, '/' included; 0: the URL is not ordinary
  std::optional<std::string> other_;  // of any other file URL
  SongFile file_;
};

}  // namespace tavrel::host
