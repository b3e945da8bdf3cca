#include "system/TemporaryHome.h"

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

void WriteFile(const std::string& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  ASSERT_TRUE(file.good()) << path;
}

}  // namespace tavrel::test
