#include "host/library/LinkedHome.h"

#include <sys/stat.h>

#include <filesystem>

namespace tavrel::host {
namespace {

constexpr const char* kNeighbours[] = {"Album Artwork", "iTunes Media"};

}  // namespace

LinkedHome::LinkedHome(const std::string& libraryFile) {
  const std::filesystem::path file = std::filesystem::absolute(libraryFile);
  folder_.MakeFolder("Music");
  folder_.MakeFolder("Music/iTunes");
  folder_.MakeLink("Music/iTunes/iTunes Music Library.xml", file);
  for (const char* name : kNeighbours) {
    const std::filesystem::path neighbour = file.parent_path() / name;
    struct stat status {};
    const bool isThere = ::stat(neighbour.c_str(), &status) == 0;
    if (isThere) folder_.MakeLink(std::string("Music/iTunes/") + name, neighbour);
  }
}

}  // namespace tavrel::host
