// Paths of files and folders below one folder, out of texts that may hold anything.
#pragma once

#include <string>
#include <string_view>

#include "host/library/TextHash.h"
#include "host/naming/FileNames.h"

namespace tavrel::host {

// Gives paths below a folder that is new or empty. They are relative to it, their parts are joined by '/', and
// any file system takes each part; "" is the folder itself. A text is as the library has it, and may hold
// anything; a `parent` is a path that this object has given, or "".
// Cost: linear in the lengths of text and parent.
class FolderTree {
 public:
  // The folder that the text names: the one that a text alike has got (in case, composed accents and shapes),
  // so that the albums of one artist come together.
  [[nodiscard]] std::string Folder(const std::string& parent, std::string_view text);

  // A folder of its own, whatever else has that name.
  [[nodiscard]] std::string NewFolder(const std::string& parent, std::string_view text);

  // A file of its own. extension: as SafeExtension gives it.
  [[nodiscard]] std::string NewFile(const std::string& parent, std::string_view text,
                                    std::string_view extension);

 private:
  struct Room {
    FileNames names;
    TextMap<std::string> folders;  // paths, by what names them as it compares
  };

  TextMap<Room> rooms_;  // by the folder's path
};

}  // namespace tavrel::host
