// A folder for a test's files, removed with everything in it at the end.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace tavrel::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "tavrel-test-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    path_ = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string PathOf(std::string_view name) const {
    return std::string(path_).append("/").append(name);
  }

  // Writes a file, with the folders above it, and returns its path.
  std::string Write(std::string_view name, std::string_view contents) const {
    const std::string path = PathOf(name);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    EXPECT_TRUE(file.good()) << path;
    return path;
  }

 private:
  std::string path_;
};

}  // namespace tavrel::test
