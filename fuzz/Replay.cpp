// Runs one target on every file of the given folders, or on the given files: NAME FOLDER...
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/FuzzTarget.h"

using tavrel::fuzz::Require;
using tavrel::fuzz::Target;

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

const Target& TargetNamed(std::string_view name) {
  const Target* target = Target::First();
  while (target != nullptr && target->name() != name) target = target->next();
  Require(target != nullptr, "There is no such target");
  return *target;
}

void Replay(const Target& target, const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  Require(file.is_open(), "A file cannot be read");
  // In a block of just its size, so that a sanitizer notices a read behind it.
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
  const std::vector<char> input(bytes.begin(), bytes.end());
  std::fprintf(stderr, "%s, %zu bytes\n", path.c_str(), input.size());
  target.Run({input.data(), input.size()});
}

}  // namespace

int main(int count, char** arguments) {
  Require(count > 2, "Replay a target's name and its inputs");
  const Target& target = TargetNamed(arguments[1]);
  std::size_t replayed = 0;
  for (int i = 2; i < count; ++i) {
    for (const std::filesystem::path& path : FilesOf(arguments[i])) {
      Replay(target, path);
      ++replayed;
    }
  }
  Require(replayed > 0, "There was nothing to replay");
  return 0;
}
