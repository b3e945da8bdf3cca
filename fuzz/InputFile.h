// Inputs as files. They are kept in memory and written anew for each input: no disk takes part.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::fuzz {

class InputFile {
 public:
  InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  void Write(std::string_view bytes) const;

 private:
  std::string path_;
  int descriptor_;
};

// A home folder with a library file that is written anew for each input, and with two cache files and two
// ringtones that stay. $HOME leads there; it is removed at the program's end.
class InputHome {
 public:
  InputHome();
  InputHome(const InputHome&) = delete;
  InputHome& operator=(const InputHome&) = delete;
  ~InputHome();

  [[nodiscard]] const std::string& folder() const noexcept { return folder_; }
  [[nodiscard]] std::string LibraryFile() const;
  void WriteLibrary(std::string_view text) const { library_.Write(text); }

 private:
  std::string folder_;
  InputFile library_;
};

// The IDs that the names of its cache files are made of, for library files to hold.
inline constexpr std::string_view kLibraryId = "0A1B2C3D4E5F6071";
inline constexpr std::string_view kTrackIds[] = {"1122334455667788", "99AABBCCDDEEFF00"};

}  // namespace tavrel::fuzz
