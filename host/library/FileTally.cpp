#include "host/library/FileTally.h"

#include "host/output/Format.h"

namespace tavrel::host {

void FileTally::Add(const SongRecord& song) {
  if (song.State()) Add(*song.State(), song.HasFile(), song.MusicFolder().value_or(""));
}

void FileTally::Add(const SongFile& file) {
  if (file.status) Add(*file.status, !file.path.empty(), file.musicFolder);
}

void FileTally::Add(FileStatus status, bool hasFile, std::string_view musicFolder) {
  ++counts_[static_cast<std::size_t>(status)];
  if (!hasFile) return;
  auto known = folders_.find(musicFolder);
  if (known == folders_.end()) known = folders_.emplace(musicFolder, 0).first;
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
