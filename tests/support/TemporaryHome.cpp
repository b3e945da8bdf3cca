#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace tavrel::test {

TemporaryHome::TemporaryHome(std::string_view name) {
  std::string pattern = std::filesystem::temp_directory_path() / "tavrel-home-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder: " << pattern;
  parent_ = pattern;
  path_ = parent_ + "/" + std::string(name);
  std::filesystem::create_directories(path_ + "/Music/iTunes");
}

TemporaryHome::~TemporaryHome() {
  std::error_code ignored;
  std::filesystem::remove_all(parent_, ignored);
}

std::string TemporaryHome::LibraryFile() const {
  return path_ + "/Music/iTunes/iTunes Music Library.xml";
}

void TemporaryHome::WriteLibrary(std::string_view text) const {
  WriteFile(LibraryFile(), text);
}

// Written in place and then cut to size: file systems flush a file at once that was emptied first.
void WriteFile(const std::string& path, std::string_view bytes) {
  {
    std::ofstream create(path, std::ios::binary | std::ios::app);
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(create.good() && file.good()) << path;
  }
  std::filesystem::resize_file(path, bytes.size());
}

}  // namespace tavrel::test
