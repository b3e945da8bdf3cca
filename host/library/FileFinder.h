// The files of songs on this machine.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tavrel::host {

enum class FileStatus {
  Found,
  Respelled,  // under a name in another case, or with accents composed otherwise
  Missing,
  None,  // the library names no place
  Remote,
};
inline constexpr std::size_t kFileStatusCount = 5;

// "found", "respelled", "missing", "none", "remote"
[[nodiscard]] std::string_view StatusName(FileStatus status) noexcept;

// What became of a location. An empty text says that there is none.
struct SongFile {
  std::optional<FileStatus> status;  // none when nobody has looked
  std::string_view path;         // of the file; when nobody has looked, what is to be told as such
  std::string_view sought;       // where it is or, when it is missing, should be
  std::string_view musicFolder;  // the folder of music that it was found in
};

class FileFinder {
 public:
  // location: the song's, if it has one. type: its type of track. The texts stay valid until the next call.
  [[nodiscard]] virtual SongFile Find(std::optional<std::string_view> location,
                                      std::string_view type) = 0;
  // The same for a location whose path is known: an ordinary file URL, as text::PathOfOrdinaryUrl() takes them.
  // path: borrowed as long as the texts.
  [[nodiscard]] virtual SongFile FindPath(std::string_view path) = 0;

 protected:
  FileFinder() = default;
  FileFinder(const FileFinder&) = default;
  FileFinder& operator=(const FileFinder&) = default;
  ~FileFinder() = default;
};

}  // namespace tavrel::host
