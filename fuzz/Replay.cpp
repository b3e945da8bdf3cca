// Runs a fuzz target on every file of the given folders, or on the given files.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/FuzzTarget.h"

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void Replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  tavrel::fuzz::Require(file.is_open(), "A file cannot be read");
  // In a block of just its size, so that a sanitizer notices a read behind it.
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  std::fprintf(stderr, "%s, %zu bytes\n", path.c_str(), input.size());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int count, char** arguments) {
  std::size_t replayed = 0;
  for (int i = 1; i < count; ++i) {
    for (const std::filesystem::path& path : FilesOf(arguments[i])) {
      Replay(path);
      ++replayed;
    }
  }
  tavrel::fuzz::Require(replayed > 0, "There was nothing to replay");
  return 0;
}
