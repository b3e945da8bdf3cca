#include "host/library/FileTally.h"

#include <algorithm>

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
  auto known = std::find_if(folders_.begin(), folders_.end(), [musicFolder](const FoundIn& one) {
    return one.folder == musicFolder;
  });
  if (known == folders_.end()) known = folders_.insert(known, {std::string(musicFolder), 0});
  ++known->songs;
}

std::set<std::string> FileTally::MusicFolders() const {
  std::set<std::string> folders;
  for (const FoundIn& one : folders_) folders.insert(one.folder);
  folders.erase("");
  return folders;
}

std::string FileTally::Line() const {
  const std::int64_t respelled = Count(FileStatus::Respelled);
  const std::int64_t found = Count(FileStatus::Found) + respelled;
  const std::int64_t all = found + Count(FileStatus::Missing);
  if (all == 0) return {};
  const std::string ofAll = " of " + Counted(all, "file") + " found";
  if (found == 0) return "none" + ofAll + "; --music DIR or --map OLD=NEW says where they are";
  std::string line = Grouped(found) + ofAll;
  const FoundIn* most = nullptr;
  for (const FoundIn& one : folders_) {
    if (one.folder.empty()) continue;
    const bool isMore = most == nullptr || one.songs > most->songs ||
                        (one.songs == most->songs && one.folder < most->folder);
    if (isMore) most = &one;
  }
  if (most != nullptr && most->songs >= found - most->songs) {
    line += " below " + most->folder;
    if (most->songs < found) line += ", " + Grouped(found - most->songs) + " of them elsewhere";
  } else if (most != nullptr) {
    line += ", " + Grouped(most->songs) + " of them below " + most->folder;
  }
  if (respelled > 0) line += ", " + Grouped(respelled) + " spelled otherwise";
  return line;
}

}  // namespace tavrel::host
