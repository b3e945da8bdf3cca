#include "host/library/FileTally.h"

#include "host/output/Format.h"

namespace tavrel::host {

void FileTally::Add(const SongRecord& song) {
  if (!song.State()) return;
  ++counts_[static_cast<std::size_t>(*song.State())];
  if (!song.HasFile()) return;
  const std::string_view folder = song.MusicFolder().value_or("");
  auto known = folders_.find(folder);
  if (known == folders_.end()) known = folders_.emplace(folder, 0).first;
  ++known->second;
}

std::string FileTally::Line() const {
  const std::int64_t respelled = Count(FileStatus::Respelled);
  const std::int64_t found = Count(FileStatus::Found) + respelled;
  const std::int64_t all = found + Count(FileStatus::Missing);
  if (all == 0) return {};
  const std::string ofAll = " of " + Counted(all, "file") + " found";
  if (found == 0) return "none" + ofAll + "; --music DIR or --map OLD=NEW says where they are";
  std::string line = Grouped(found) + ofAll;
  const std::pair<const std::string, std::int64_t>* most = nullptr;
  for (const auto& folder : folders_) {
    if (folder.first.empty()) continue;  // in no folder of music
    const bool isMore = most == nullptr || folder.second > most->second ||
                        (folder.second == most->second && folder.first < most->first);
    if (isMore) most = &folder;
  }
  if (most != nullptr && most->second >= found - most->second) {
    line += " below " + most->first;
    if (most->second < found) line += ", " + Grouped(found - most->second) + " of them elsewhere";
  } else if (most != nullptr) {
    line += ", " + Grouped(most->second) + " of them below " + most->first;
  }
  if (respelled > 0) line += ", " + Grouped(respelled) + " spelled otherwise";
  return line;
}

}  // namespace tavrel::host
