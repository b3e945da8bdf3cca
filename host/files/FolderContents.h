// What lies in one folder, read once.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavrel::host {

enum class EntryKind { File, Folder, Link, Other, Unknown };

struct FolderEntry {
  std::string name;
  EntryKind kind;
};

class FolderContents {
 public:
  // Lists the folder and closes it again; none where there is no folder. One that may not be listed is there,
  // and seems empty.
  [[nodiscard]] static std::optional<FolderContents> Read(const std::string& path);

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }  // ends in '/'
  [[nodiscard]] bool IsListed() const noexcept { return isListed_; }
  [[nodiscard]] const std::vector<FolderEntry>& Entries() const noexcept { return entries_; }

  // Null when there is none of exactly this name. Cost: a logarithm.
  [[nodiscard]] const FolderEntry* Find(std::string_view name) const noexcept;

  // The entries whose names differ from this one in case or in how accents are composed only: those of its
  // case first, and not more than a few. Cost: a logarithm; of the first call a look at every entry.
  [[nodiscard]] std::vector<const FolderEntry*> FindAlike(std::string_view name);

  // Links count as what they lead to. Only regular files are files: nothing else can be played or copied.
  [[nodiscard]] bool IsFile(const FolderEntry& entry) const;
  [[nodiscard]] bool IsFolder(const FolderEntry& entry) const;

 private:
  using Alike = std::pair<std::string, std::size_t>;  // how a name compares, and whose it is

  explicit FolderContents(std::string path) : path_(std::move(path)) {}

  std::string path_;
  bool isListed_ = false;
  std::vector<FolderEntry> entries_;  // in the byte order of their names
  std::vector<Alike> alike_;          // ascending; empty until it is asked for
};

// Whether a regular file is there, through links.
[[nodiscard]] bool IsFileAt(const std::string& path) noexcept;

}  // namespace tavrel::host
