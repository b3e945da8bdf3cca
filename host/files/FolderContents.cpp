#include "host/files/FolderContents.h"

#include <dirent.h>
#include <errno.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "host/files/NormalForms.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kMostAlike = 8;  // by hand nobody makes more; and each costs a look

struct CloseFolder {
  void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

// "/dev/fd" and the like say nothing of what they list.
EntryKind KindOf(unsigned char type) noexcept {
  switch (type) {
    case DT_REG:
      return EntryKind::File;
    case DT_DIR:
      return EntryKind::Folder;
    case DT_LNK:
      return EntryKind::Link;
    case DT_UNKNOWN:
      return EntryKind::Unknown;
    default:
      return EntryKind::Other;
  }
}

bool IsMissing(int error) noexcept {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == ELOOP;
}

bool ByName(const FolderEntry& left, const FolderEntry& right) noexcept {
  return left.name < right.name;
}

mode_t TypeAt(const std::string& path) noexcept {
  struct stat state {};
  return ::stat(path.c_str(), &state) == 0 ? state.st_mode & S_IFMT : 0;
}

}  // namespace

std::optional<FolderContents> FolderContents::Read(const std::string& path) {
  FolderContents folder(path.ends_with('/') ? path : path + '/');
  const std::unique_ptr<DIR, CloseFolder> open(::opendir(path.c_str()));
  if (open == nullptr) return IsMissing(errno) ? std::nullopt : std::optional(std::move(folder));
  std::vector<Listed> listed;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(open.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    folder.names_.insert(folder.names_.end(), name.begin(), name.end());
    listed.emplace_back(name.size(), KindOf(entry->d_type));
  }
  folder.isListed_ = errno == 0;
  if (folder.isListed_) folder.SetEntries(listed);
  return folder;
}

void FolderContents::SetEntries(const std::vector<Listed>& listed) {
  entries_.reserve(listed.size());
  const char* name = names_.data();  // which moves no more
  for (const auto& [length, kind] : listed) {
    entries_.push_back({{name, length}, kind});
    name += length;
  }
  std::sort(entries_.begin(), entries_.end(), ByName);
}

FolderEntry* FolderContents::Find(std::string_view name) noexcept {
  const auto place = std::lower_bound(
      entries_.begin(), entries_.end(), name,
      [](const FolderEntry& entry, std::string_view wanted) { return entry.name < wanted; });
  return place != entries_.end() && place->name == name ? &*place : nullptr;
}

std::vector<FolderEntry*> FolderContents::FindAlike(std::string_view name) {
  if (alike_.empty()) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      alike_.emplace_back(AlikeName(entries_[i].name), i);
    }
    std::sort(alike_.begin(), alike_.end());
  }
  const std::string wanted = AlikeName(name);
  std::vector<FolderEntry*> found;
  auto place = std::lower_bound(alike_.begin(), alike_.end(), Alike(wanted, 0));
  for (; place != alike_.end() && place->first == wanted && found.size() < kMostAlike; ++place) {
    found.push_back(&entries_[place->second]);
  }
  const std::string composed = ComposedPath(name);
  std::stable_partition(found.begin(), found.end(), [&](const FolderEntry* entry) {
    return ComposedPath(entry->name) == composed;
  });
  return found;
}

bool FolderContents::IsFile(const FolderEntry& entry) const {
  if (entry.kind == EntryKind::File) return true;
  const bool mayBe = entry.kind == EntryKind::Link || entry.kind == EntryKind::Unknown;
  return mayBe && IsFileAt(path_ + std::string(entry.name));
}

bool FolderContents::IsFolder(const FolderEntry& entry) const {
  if (entry.kind == EntryKind::Folder) return true;
  const bool mayBe = entry.kind == EntryKind::Link || entry.kind == EntryKind::Unknown;
  return mayBe && TypeAt(path_ + std::string(entry.name)) == S_IFDIR;
}

std::string HighestMissing(std::string path) {
  std::string above = path;
  for (;;) {
    const std::size_t end = above.rfind('/');
    if (end == std::string::npos || end == 0) return path;
    above.resize(end);
    struct stat state {};
    if (::stat(above.c_str(), &state) == 0 || !IsMissing(errno)) return path;
    path.resize(end);
  }
}

bool IsFileAt(const std::string& path) noexcept {
  return TypeAt(path) == S_IFREG;
}

}  // namespace tavrel::host
