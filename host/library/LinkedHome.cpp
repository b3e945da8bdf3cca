#include "host/library/LinkedHome.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "host/output/Failure.h"
#include "system/BlockedSignals.h"

namespace tavrel::host {
namespace {

using system::BlockedSignals;
using system::kEndingSignals;

constexpr const char* kMusicFolder = "Music";
constexpr const char* kLibraryFolder = "Music/iTunes";
constexpr const char* kLibraryFile = "Music/iTunes/iTunes Music Library.xml";

struct Neighbour {
  const char* name;
  const char* link;
};
constexpr std::array<Neighbour, 2> kNeighbours{{
    {"Album Artwork", "Music/iTunes/Album Artwork"},
    {"iTunes Media", "Music/iTunes/iTunes Media"},
}};

// What the signal handler removes. Both change only while the ending signals are blocked.
const char* folderToRemove = nullptr;
int descriptorToRemove = -1;

// Only calls that a signal handler may make.
void RemoveFolder() noexcept {
  if (folderToRemove == nullptr) return;
  if (descriptorToRemove >= 0) {
    ::unlinkat(descriptorToRemove, kLibraryFile, 0);
    for (const Neighbour& neighbour : kNeighbours) {
      ::unlinkat(descriptorToRemove, neighbour.link, 0);
    }
    ::unlinkat(descriptorToRemove, kLibraryFolder, AT_REMOVEDIR);
    ::unlinkat(descriptorToRemove, kMusicFolder, AT_REMOVEDIR);
  }
  ::rmdir(folderToRemove);
}

extern "C" void EndBySignal(int number) {
  RemoveFolder();
  // The signal is blocked while its handler runs; its default action ends the program on return.
  ::signal(number, SIG_DFL);
  ::raise(number);
}

void SetHandlers(void (*handler)(int)) noexcept {
  for (const int number : kEndingSignals) {
    struct sigaction action {};
    ::sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action.sa_handler = handler;
    for (const int other : kEndingSignals) ::sigaddset(&action.sa_mask, other);
    ::sigaction(number, &action, nullptr);
  }
}

void Release() noexcept {
  SetHandlers(SIG_DFL);
  RemoveFolder();
  if (descriptorToRemove >= 0) ::close(descriptorToRemove);
  descriptorToRemove = -1;
  folderToRemove = nullptr;
}

// Where the links lead; the neighbours' texts are empty when there is nothing to lead to.
struct Targets {
  std::string libraryFile;
  std::array<std::string, kNeighbours.size()> neighbours;
};

Targets FindTargets(const std::string& libraryFile) {
  const std::filesystem::path path = std::filesystem::absolute(libraryFile);
  Targets targets{path, {}};
  for (std::size_t i = 0; i < kNeighbours.size(); ++i) {
    const std::filesystem::path neighbour = path.parent_path() / kNeighbours[i].name;
    struct stat status {};
    if (::stat(neighbour.c_str(), &status) == 0) targets.neighbours[i] = neighbour;
  }
  return targets;
}

// Result: whether all of it could be made; errno says why not.
bool MakeContents(const Targets& targets) noexcept {
  descriptorToRemove = ::open(folderToRemove, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptorToRemove < 0 || ::mkdirat(descriptorToRemove, kMusicFolder, 0700) != 0 ||
      ::mkdirat(descriptorToRemove, kLibraryFolder, 0700) != 0 ||
      ::symlinkat(targets.libraryFile.c_str(), descriptorToRemove, kLibraryFile) != 0) {
    return false;
  }
  for (std::size_t i = 0; i < kNeighbours.size(); ++i) {
    const std::string& target = targets.neighbours[i];
    if (!target.empty() &&
        ::symlinkat(target.c_str(), descriptorToRemove, kNeighbours[i].link) != 0) {
      return false;
    }
  }
  return true;
}

std::string FolderForTemporaryFiles() {
  const char* chosen = ::getenv("TMPDIR");
  return std::filesystem::absolute(chosen != nullptr && *chosen != '\0' ? chosen : P_tmpdir);
}

}  // namespace

LinkedHome::LinkedHome(const std::string& libraryFile) {
  const Targets targets = FindTargets(libraryFile);
  const std::string parent = FolderForTemporaryFiles();
  folder_ = parent + "/tavrel-XXXXXX";

  const auto blocked = BlockedSignals::Ending();
  if (::mkdtemp(folder_.data()) != nullptr) {
    folderToRemove = folder_.c_str();
    SetHandlers(&EndBySignal);
    if (MakeContents(targets)) return;
  }
  const int error = errno;
  Release();
  throw Failure(ExitCode::Failed,
                "cannot make a temporary folder below " + parent + ": " + std::strerror(error) +
                    "\n  --library needs one; set TMPDIR to a folder that can be written to.");
}

LinkedHome::~LinkedHome() {
  const auto blocked = BlockedSignals::Ending();
  Release();
}

}  // namespace tavrel::host
