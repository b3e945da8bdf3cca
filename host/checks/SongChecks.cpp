#include "host/checks/SongChecks.h"

#include "host/library/SongRecord.h"

namespace tavrel::host {

SongChecks CheckSongs(const LibraryFunctions& library, const std::function<void()>& step,
                      DictionaryChecks* dictionaries) {
  SongChecks checks;
  DuplicateSearch duplicates;
  const auto take = [&](std::int32_t position, const SongRecord& song) {
    step();
    duplicates.Add(position, song);
    checks.tally.Add(song);
    if (song.State() == FileStatus::Missing) checks.missing.push_back(position);
    if (song.State() == FileStatus::Respelled) checks.respelled.push_back(position);
  };
  SongRecordReader reader(library, DuplicateSearch::Fields());
  if (dictionaries != nullptr) dictionaries->WatchReader(reader);
  PlaylistRecord* songs = library.openAllSongs();
  const std::int32_t count = library.getSongCount(songs);
  for (std::int32_t song = 0; song < count; ++song) {
    take(song, reader.Read(songs, song));
    if (dictionaries != nullptr) dictionaries->End(song);
  }
  checks.duplicates = duplicates.Take();
  checks.files = duplicates.TakeFiles();
  checks.musicFolders = checks.tally.MusicFolders();
  return checks;
}

}  // namespace tavrel::host
