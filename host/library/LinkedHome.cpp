#include "host/library/LinkedHome.h"

#include <sys/stat.h>

#include <filesystem>

namespace tavrel::host {
namespace {

constexpr const char* kLibraryFile = "Music/iTunes/iTunes Music Library.xml";
constexpr const char* kNeighbours[] = {"Album Artwork", "iTunes Media"};

}  // namespace

LinkedHome::LinkedHome() {
  folder_.MakeFolder("Music");
  folder_.MakeFolder("Music/iTunes");
}

void LinkedHome::LinkLibrary(const std::string& file) {
  folder_.MakeLink(kLibraryFile, std::filesystem::absolute(file));
}

system::FileDescriptor LinkedHome::MakeLibrary() {
  return folder_.MakeFile(kLibraryFile);
}

void LinkedHome::LinkNeighbours(const std::string& libraryFile) {
  const std::filesystem::path folder = std::filesystem::absolute(libraryFile).parent_path();
  for (const char* name : kNeighbours) {
    const std::filesystem::path neighbour = folder / name;
    struct stat status {};
    const bool isThere = ::stat(neighbour.c_str(), &status) == 0;
    if (isThere) folder_.MakeLink(std::string("Music/iTunes/") + name, neighbour);
  }
}

std::string LinkedHome::LibraryFile() const {
  return Folder() + "/" + kLibraryFile;
}

}  // namespace tavrel::host
