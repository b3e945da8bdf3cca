#include "fuzz/InputFile.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/mman.h>
#endif

#include <filesystem>
#include <fstream>

#include "fuzz/FuzzTarget.h"
#include "tests/support/CacheFiles.h"

namespace tavrel::fuzz {
namespace {

constexpr const char* kLibraryFile = "/Music/iTunes/iTunes Music Library.xml";
constexpr const char* kCacheFolder = "/Music/iTunes/Album Artwork/Cache/";
constexpr const char* kRingtones = "/Music/iTunes/iTunes Media/Ringtones/";

int NewFile(std::string& path) {
#if defined(__linux__)
  const int file = memfd_create("input", MFD_CLOEXEC);
  path = "/proc/self/fd/" + std::to_string(file);
#else
  path = std::filesystem::temp_directory_path() / "tavrel-input-XXXXXX";
  const int file = mkstemp(path.data());
#endif
  Require(file >= 0, "There is no file for the inputs");
  return file;
}

void WriteNew(const std::string& path, std::string_view bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string CacheFile() {
  return test::CacheHeader() + test::Bytes({.image = test::LikePng(64)}) +
         test::Bytes({.image = test::Filler(64), .code = "ARGb", .width = 4, .height = 4});
}

}  // namespace

InputFile::InputFile() : descriptor_(NewFile(path_)) {}

InputFile::~InputFile() {
  close(descriptor_);
#if !defined(__linux__)
  unlink(path_.c_str());
#endif
}

void InputFile::Write(std::string_view bytes) const {
  const bool written =
      pwrite(descriptor_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()) &&
      ftruncate(descriptor_, static_cast<off_t>(bytes.size())) == 0;
  Require(written, "The input cannot be written");
}

InputHome::InputHome() : folder_(std::filesystem::temp_directory_path() / "tavrel-fuzz-XXXXXX") {
  Require(mkdtemp(folder_.data()) != nullptr, "There is no temporary folder");
  for (const std::string_view track : kTrackIds) {
    const std::string name = std::string(kLibraryId).append("-").append(track);
    WriteNew(folder_ + kCacheFolder + name + ".itc2", CacheFile());
  }
  WriteNew(folder_ + kRingtones + "Canon.in.D.m4r", "");
  WriteNew(folder_ + kRingtones + "Bell.m4r", "");
  std::filesystem::create_symlink(library_.path(), LibraryFile());
  setenv("HOME", folder_.c_str(), 1);
}

InputHome::~InputHome() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string InputHome::LibraryFile() const {
  return folder_ + kLibraryFile;
}

}  // namespace tavrel::fuzz
