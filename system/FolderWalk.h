// A deep walk: every file and folder below a folder, by paths in byte order, so that the same tree
// always gives the same list.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::system {

// Folders that cannot be read are listed but give nothing; no folder is entered through a link,
// except that the folder at the top may be one. One descriptor is open at a time, and only while a
// folder is read. What is remembered at any moment is the names still to come in the folders on the
// way down. The walk ends where paths become too long for the system.
class FolderWalk {
 public:
  explicit FolderWalk(std::string folder);  // may throw std::bad_alloc

  // The next path, relative to the folder; none at the end. It stays valid until the next call. May
  // throw std::bad_alloc.
  [[nodiscard]] std::optional<std::string_view> Next();

 private:
  // A folder on the way down. A folder in it has two places in its list: its name, and its name
  // with a '/' behind it, where what it holds begins in byte order ("a", "a-b", "a/x").
  struct Level {
    std::vector<std::string> toCome;  // the next one last
    std::size_t pathLength;           // of this folder's own path, with its '/'
  };

  void Enter();

  std::string path_;  // the whole path of the entry at hand
  std::size_t topLength_ = 0;
  std::vector<Level> levels_;
};

}  // namespace tavrel::system
