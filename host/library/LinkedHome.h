// A home folder made of links, so that the library can read a file that lies anywhere under any
// name.
#pragma once

#include <string>

#include "host/library/PrivateFolder.h"
#include "system/Files.h"

namespace tavrel::host {

// Makes, in a private folder and for as long as that is there,
//
//   Music/iTunes/iTunes Music Library.xml -> the library file, or a file of its own
//                Album Artwork            -> the library file's neighbour of that name, if any
//                iTunes Media             -> likewise
//
// A folder, a file or a link that cannot be made is a Failure.
class LinkedHome {
 public:
  LinkedHome();

  // Once either of them.
  void LinkLibrary(const std::string& file);
  [[nodiscard]] system::FileDescriptor MakeLibrary();  // empty, and open for writing

  void LinkNeighbours(const std::string& libraryFile);

  // An absolute path, and that of the library file below it.
  [[nodiscard]] const std::string& Folder() const noexcept { return folder_.Path(); }
  [[nodiscard]] std::string LibraryFile() const;

 private:
  PrivateFolder folder_;
};

}  // namespace tavrel::host
