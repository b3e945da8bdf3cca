#include "host/library/LibraryFolder.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "host/library/Invocation.h"
#include "host/output/Format.h"
#include "host/output/Nearest.h"

namespace tavrel::host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFileNames[] = {"iTunes Music Library.xml", "iTunes Library.xml",
                                           "Library.xml"};

// Below the folder that the user names: that of iTunes or Music itself, the folder "Music", a home folder,
// and a home folder of an old Windows.
constexpr std::string_view kPlaces[] = {
    "", "iTunes", "Music", "Music/iTunes", "Music/Music", "My Music/iTunes"};

constexpr std::size_t kMostFilesShown = 3;
constexpr int kHighest = 2;  // "iTunes Media/Music" has the library file above it
constexpr int kDeepest = 3;  // "Users/me" of a copied disk
constexpr std::size_t kMostLookedInto = 300;

std::string Join(const std::string& folder, std::string_view name) {
  if (name.empty()) return folder;
  std::string path = folder;
  if (!path.ends_with('/')) path += '/';
  return path.append(name);
}

struct FoundFile {
  std::string path;
  struct stat status;
};

bool IsNewer(const FoundFile& left, const FoundFile& right) {
  const auto time = [](const FoundFile& file) {
#if defined(__APPLE__)
    const timespec& changed = file.status.st_mtimespec;
#else
    const timespec& changed = file.status.st_mtim;
#endif
    return std::pair(changed.tv_sec, changed.tv_nsec);
  };
  return time(left) > time(right);
}

void AddNewFile(std::string path, std::vector<FoundFile>& files) {
  FoundFile file{std::move(path), {}};
  if (::stat(file.path.c_str(), &file.status) != 0 || !S_ISREG(file.status.st_mode)) return;
  const bool isKnown = std::any_of(files.begin(), files.end(), [&](const FoundFile& other) {
    return other.status.st_dev == file.status.st_dev && other.status.st_ino == file.status.st_ino;
  });
  if (!isKnown) files.push_back(std::move(file));
}

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    names.push_back(entry->path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool IsDatabase(std::string_view name) {
  return name.ends_with(".itl") || name.ends_with(".musicdb") || name.ends_with(".musiclibrary");
}

bool MayBeExport(std::string_view name) {
  return name.ends_with(".xml") || name.ends_with(".xml.gz");
}

// The folders in a folder, none of them through a link.
std::vector<std::string> FoldersIn(const std::string& folder) {
  std::vector<std::string> folders;
  for (const std::string& name : NamesIn(folder)) {
    struct stat status {};
    const std::string path = Join(folder, name);
    const bool isFolder = ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    if (isFolder && !name.starts_with('.')) folders.push_back(path);
  }
  return folders;
}

void AddLibraryAbove(const std::string& folder, std::vector<std::string>& found) {
  std::error_code error;
  fs::path above = fs::weakly_canonical(folder, error);
  for (int i = 0; i < kHighest && !error && above.has_relative_path(); ++i) {
    above = above.parent_path();
    if (FindLibraryFiles(above).empty()) continue;
    found.push_back(above);
    return;
  }
}

// Those that lie less deep come first.
void AddLibrariesBelow(const std::string& folder, std::vector<std::string>& found) {
  std::vector<std::string> level{folder};
  std::size_t lookedInto = 0;
  for (int depth = 1; depth <= kDeepest; ++depth) {
    std::vector<std::string> next;
    for (const std::string& at : level) {
      for (std::string& below : FoldersIn(at)) {
        if (found.size() == kMostFilesShown || ++lookedInto > kMostLookedInto) return;
        const bool isOne = !FindLibraryFiles(below).empty();
        (isOne ? found : next).push_back(std::move(below));
      }
    }
    level = std::move(next);
  }
}

// Databases and files that may be exports, in any of the places.
struct OtherFiles {
  std::vector<std::string> databases;
  std::vector<std::string> exports;
};

OtherFiles LookForOtherFiles(const std::string& folder) {
  OtherFiles files;
  for (const std::string_view place : kPlaces) {
    const std::string in = Join(folder, place);
    for (const std::string& name : NamesIn(in)) {
      if (IsDatabase(name)) files.databases.push_back(Join(in, name));
      if (MayBeExport(name)) files.exports.push_back(Join(in, name));
    }
  }
  return files;
}

}  // namespace

std::string DescribeEntries(const std::string& folder) {
  const std::vector<std::string> names = NamesIn(folder);
  if (names.empty()) return "\n  It is empty, or cannot be read.";
  std::string line = fmt::format(
      "\n  It holds {}", names.size() == 1 ? "1 entry" : Grouped(std::ssize(names)) + " entries");
  for (std::size_t i = 0; i < std::min(names.size(), kMostFilesShown); ++i) {
    line += (i == 0 ? ": " : ", ") + names[i];
  }
  return line + (names.size() > kMostFilesShown ? ", …" : ".");
}

std::vector<std::string> FindLibraryFiles(const std::string& folder) {
  std::vector<FoundFile> files;
  for (const std::string_view place : kPlaces) {
    for (const std::string_view name : kFileNames) {
      AddNewFile(Join(Join(folder, place), name), files);
    }
  }
  std::stable_sort(files.begin(), files.end(), IsNewer);
  std::vector<std::string> paths;
  for (FoundFile& file : files) paths.push_back(std::move(file.path));
  return paths;
}

std::string DescribeOtherFiles(const std::string& folder) {
  const OtherFiles files = LookForOtherFiles(folder);
  std::string lines;
  if (!files.databases.empty()) {
    lines +=
        fmt::format("\n  There is {}, a database that only iTunes or Music reads: let it export.",
                    files.databases.front());
  }
  if (!files.exports.empty()) lines += "\n  There are other files. Is this the library?";
  for (std::size_t i = 0; i < std::min(files.exports.size(), kMostFilesShown); ++i) {
    lines += "\n    tavrel -l " + Quoted(files.exports[i]);
  }
  return lines;
}

std::vector<std::string> NearLibraries(const std::string& folder) {
  std::vector<std::string> found;
  AddLibraryAbove(folder, found);
  AddLibrariesBelow(folder, found);
  return found;
}

std::vector<std::string> NearFiles(const std::string& path) {
  const std::size_t start = path.rfind('/') + 1;  // 0 without a folder
  const std::string folder = path.substr(0, start);
  const std::vector<std::string> names = NamesIn(folder);
  std::vector<std::string> near;
  for (const std::size_t number : Nearest(path.substr(start), names)) {
    near.push_back(folder + names[number]);
  }
  return near;
}

}  // namespace tavrel::host
