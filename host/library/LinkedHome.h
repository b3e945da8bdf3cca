// A home folder made of links, so that the library can read a file that lies anywhere under any
// name.
#pragma once

#include <string>

#include "host/library/PrivateFolder.h"

namespace tavrel::host {

// Makes, in a private folder and for as long as that is there,
//
//   Music/iTunes/iTunes Music Library.xml -> the file
//                Album Artwork            -> its neighbour of that name, if any
//                iTunes Media             -> likewise
class LinkedHome {
 public:
  // A folder or a link that cannot be made is a Failure.
  explicit LinkedHome(const std::string& libraryFile);

  // An absolute path.
  [[nodiscard]] const std::string& Folder() const noexcept { return folder_.Path(); }

 private:
  PrivateFolder folder_;
};

}  // namespace tavrel::host
