#include "host/checks/FileChecks.h"

#include <algorithm>
#include <utility>

#include "host/library/FileFormat.h"
#include "host/library/Playlists.h"
#include "host/library/SongPlaces.h"
#include "host/library/SongRecord.h"
#include "host/output/MessageGuard.h"

namespace tavrel::host {
namespace {

std::int32_t GoOn(const char*, const char*, const char*, void*) {
  return 1;
}

// Of playlists and of the library.
std::int64_t CountBrokenElsewhere(const LibraryFunctions& library,
                                  const std::vector<Playlist>& playlists) {
  std::int64_t broken = 0;
  const auto count = [&broken](const auto& visit) {
    const std::int64_t logged = LoggedBytes();
    visit();
    if (LoggedBytes() != logged) ++broken;
  };
  count([&] { library.visitLibraryProperties(GoOn, nullptr); });
  for (const Playlist& playlist : playlists) {
    count([&] { library.visitPlaylistProperties(playlist.handle, GoOn, nullptr); });
  }
  return broken;
}

Positions InNoList(const LibraryFunctions& library, const std::vector<Playlist>& playlists,
                   std::vector<NumberedId> ids) {
  Positions alone;
  const bool hasLists = std::any_of(playlists.begin(), playlists.end(),
                                    [](const Playlist& list) { return list.isInFile; });
  if (!hasLists) return alone;
  const std::int32_t songs = library.getSongCount(library.openAllSongs());
  const SongNumbers numbers(library, std::move(ids));
  std::vector<bool> isHeld(static_cast<std::size_t>(songs), false);
  for (const Playlist& playlist : playlists) {
    for (std::int32_t i = 0; i < playlist.songCount; ++i) {
      const std::int32_t song = numbers.Of(playlist.handle, i);
      if (song >= 0) isHeld[static_cast<std::size_t>(song)] = true;
    }
  }
  for (std::int32_t song = 0; song < songs; ++song) {
    if (!isHeld[static_cast<std::size_t>(song)]) alone.push_back(song);
  }
  return alone;
}

void ReadDictionaries(const LibraryFunctions& library, const std::function<void()>& step,
                      DictionaryChecks& dictionaries) {
  SongRecordReader reader(library, {});
  dictionaries.WatchReader(reader);
  PlaylistRecord* songs = library.openAllSongs();
  const std::int32_t count = library.getSongCount(songs);
  for (std::int32_t song = 0; song < count; ++song) {
    (void)reader.Read(songs, song);
    dictionaries.End(song);
    step();
  }
}

}  // namespace

FileChecks CheckFile(const Session& session, const std::function<void()>& step,
                     DictionaryChecks* read) {
  const LibraryFunctions& library = session.library;
  FileChecks checks;
  checks.isWhole = EndsLikePropertyList(session.place.File());
  DictionaryChecks own;
  if (read == nullptr) ReadDictionaries(library, step, own);
  DictionaryChecks& dictionaries = read != nullptr ? *read : own;
  dictionaries.Report(checks.findings);
  const std::vector<Playlist> playlists = ReadPlaylists(library);
  const std::int64_t broken = CountBrokenElsewhere(library, playlists);
  if (broken > 0) {
    checks.findings.push_back({"brokenTextOfList",
                               "playlists with a text that ends early at a broken reference",
                               broken,
                               {}});
  }
  AddFinding(checks.findings, "inNoList", "songs that no playlist holds which is shown",
             InNoList(library, playlists, dictionaries.TakeTrackIds()));
  return checks;
}

}  // namespace tavrel::host
