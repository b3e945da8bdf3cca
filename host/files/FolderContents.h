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
  std::string_view name;  // as long as the contents that it comes from
  EntryKind kind;
  bool isOfSong = false;  // whether it was found to be the file of one
};

class FolderContents {
 public:
  FolderContents(const FolderContents&) = delete;
  FolderContents& operator=(const FolderContents&) = delete;
  FolderContents(FolderContents&&) = default;
  FolderContents& operator=(FolderContents&&) = default;
  ~FolderContents() = default;

  // Lists the folder and closes it again; none where there is no folder. One that may not be listed is there,
  // and seems empty.
  [[nodiscard]] static std::optional<FolderContents> Read(const std::string& path);

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }  // ends in '/'
  [[nodiscard]] bool IsListed() const noexcept { return isListed_; }
  [[nodiscard]] const std::vector<FolderEntry>& Entries() const noexcept { return entries_; }

  // Null when there is none of exactly this name. Cost: a logarithm.
  [[nodiscard]] FolderEntry* Find(std::string_view name) noexcept;

  // The entries whose names differ from this one in case or in how accents are composed only: those of its
  // case first, and not more than a few. Cost: a logarithm; of the first call a look at every entry.
  [[nodiscard]] std::vector<FolderEntry*> FindAlike(std::string_view name);

  // Links count as what they lead to. Only regular files are files: nothing else can be played or copied.
  [[nodiscard]] bool IsFile(const FolderEntry& entry) const;
  [[nodiscard]] bool IsFolder(const FolderEntry& entry) const;

 private:
  using Listed = std::pair<std::size_t, EntryKind>;   // how long the name is, behind those before
  using Alike = std::pair<std::string, std::size_t>;  // how a name compares, and whose it is

  explicit FolderContents(std::string path) : path_(std::move(path)) {}

  void SetEntries(const std::vector<Listed>& listed);

  std::string path_;
  bool isListed_ = false;
  std::vector<char> names_;
  std::vector<FolderEntry> entries_;  // in the byte order of their names
  std::vector<Alike> alike_;          // ascending; empty until it is asked for
};

// The highest folder on the way to that path, which is missing, that is missing itself. The path has no '/' at its
// end. Cost: a look at each folder that is missing, and one more.
[[nodiscard]] std::string HighestMissing(std::string path);

// Whether a regular file is there, through links.
[[nodiscard]] bool IsFileAt(const std::string& path) noexcept;

}  // namespace tavrel::host
