// Folders of this machine, each of which is looked at once.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/FolderContents.h"
#include "host/library/TextHash.h"

namespace tavrel::host {

class Folders {
 public:
  // The folder at this path, exactly; null where there is none. It stays valid as long as this object.
  [[nodiscard]] FolderContents* At(const std::string& path);

  // The folders that `tail` leads to from `base`, where neither case nor form counts in the names of the
  // tail: the nearest first, and not more than a few. Nothing above the base is reached: a tail with ".." leads
  // nowhere.
  // Cost: a look into each folder on the way, as far as there is one.
  [[nodiscard]] std::vector<FolderContents*> Alike(std::string_view base, std::string_view tail);

  // The paths of those that are there and could not be listed, in their byte order.
  [[nodiscard]] std::vector<std::string> Unlisted() const;

  // How many were listed so far.
  [[nodiscard]] std::size_t Listings() const noexcept { return listings_; }

 private:
  [[nodiscard]] bool IsKnownAsMissing(const std::string& path) const noexcept;
  [[nodiscard]] std::vector<FolderContents*> Below(FolderContents& folder, std::string_view name);

  TextMap<std::unique_ptr<FolderContents>> known_;  // null for one that is not there
  std::vector<std::string> missing_;  // highest folders, the first few: below them there is nothing
  std::size_t listings_ = 0;
};

}  // namespace tavrel::host
