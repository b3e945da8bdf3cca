// What stands in folders. A folder is read whole and closed before anything in it is looked at, so
// that one descriptor is open at a time, however deep a walk goes, and none afterwards.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrel::system {

// The path of `name` in `folder`, with one '/' between them where `folder` does not end in one.
// May throw std::bad_alloc.
[[nodiscard]] std::string PathIn(std::string_view folder, std::string_view name);

// The names of the entries directly in `folder`, in the byte order of the names; "." and ".." are
// no entries. None when the folder is missing, no folder, or cannot be read to its end. `folder`
// itself may be a link. May throw std::bad_alloc.
[[nodiscard]] std::vector<std::string> NamesIn(const std::string& folder);

enum class EntryKind {
  Unreadable,  // nothing is there, or its state cannot be read; a broken link
  Folder,
  Other,
};

// What stands at `path`; a link counts as what it leads to. Opens nothing.
[[nodiscard]] EntryKind KindOfEntry(const std::string& path) noexcept;

}  // namespace tavrel::system
