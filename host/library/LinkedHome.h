// A home folder made of links, so that the library can read a file that lies anywhere under any
// name.
#pragma once

#include <string>

namespace tavrel::host {

// Makes, below $TMPDIR or the system's folder for temporary files and readable by this user only,
//
//   tavrel-XXXXXX/Music/iTunes/iTunes Music Library.xml -> the file
//                              Album Artwork            -> its neighbour of that name, if any
//                              iTunes Media             -> likewise
//
// and removes it when the object goes, or when SIGHUP, SIGINT, SIGQUIT or SIGTERM ends the program
// (one that the program was started to ignore stays ignored). One at a time.
class LinkedHome {
 public:
  // A folder or a link that cannot be made is a Failure.
  explicit LinkedHome(const std::string& libraryFile);
  LinkedHome(const LinkedHome&) = delete;
  LinkedHome& operator=(const LinkedHome&) = delete;
  ~LinkedHome();

  // An absolute path.
  [[nodiscard]] const std::string& Folder() const noexcept { return folder_; }

 private:
  std::string folder_;
};

}  // namespace tavrel::host
