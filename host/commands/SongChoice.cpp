#include "host/commands/SongChoice.h"

#include <charconv>
#include <optional>

#include "host/library/Invocation.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/Playlists.h"
#include "host/library/SongReader.h"
#include "host/library/SongRecord.h"
#include "host/output/Failure.h"
#include "host/output/Format.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kIdPrefix = "id:";
constexpr std::size_t kMostShown = 10;

std::optional<std::int32_t> Position(const std::string& text) {
  std::int32_t position = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), position);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(position) : std::nullopt;
}

std::int32_t FindInPlaylist(const Playlist& playlist, const std::vector<std::string>& names,
                            const Session& session) {
  const std::string& wanted = names[1];
  if (const auto position = Position(wanted)) {
    if (*position >= 0 && *position < playlist.songCount) return *position;
  }
  SongReader reader(session.library);
  const std::string folded = Fold(wanted);
  std::optional<std::int32_t> alike;
  for (std::int32_t position = 0; position < playlist.songCount; ++position) {
    const std::string name(reader.Read(playlist.handle, position).name.value_or(""));
    if (name == wanted) return position;
    if (!alike && Fold(name) == folded) alike = position;
  }
  if (alike) return *alike;
  throw Failure(ExitCode::Failed, "the playlist has no song \"" + wanted + "\"\n  " +
                                      Invocation(session.options, "songs " + Quoted(names[0])) +
                                      " shows positions and names.");
}

// The positions of the songs for which fits(song) holds.
template <typename Fits>
std::vector<std::int32_t> Positions(const Session& session, Fits fits) {
  std::vector<std::int32_t> positions;
  ForEachRecord(session.library, session.library.openAllSongs(), SetOf({Field::Id, Field::Name}),
                [&](std::int32_t position, const SongRecord& song) {
                  if (fits(song)) positions.push_back(position);
                });
  return positions;
}

std::vector<std::int32_t> PositionsOf(const std::string& wanted, const Session& session) {
  if (wanted.starts_with(kIdPrefix)) {
    const std::string id = Fold(wanted.substr(kIdPrefix.size()));
    return Positions(session, [&](const SongRecord& song) {
      return !id.empty() && Fold(song.Text(Field::Id).value_or("")) == id;
    });
  }
  const auto same =
      Positions(session, [&](const SongRecord& song) { return song.Text(Field::Name) == wanted; });
  if (!same.empty()) return same;
  const std::string folded = Fold(wanted);
  return Positions(session, [&](const SongRecord& song) {
    return Fold(song.Text(Field::Name).value_or("")) == folded;
  });
}

Failure NoSong(const std::string& wanted, const Session& session) {
  return {ExitCode::Failed,
          "there is no song \"" + Clean(wanted) + "\", and no file of that name\n  " +
              Invocation(session.options, "search " + Quoted(wanted)) + " finds songs by words."};
}

Failure SeveralSongs(const std::string& wanted, const std::vector<std::int32_t>& positions,
                     const Session& session) {
  const auto count = static_cast<std::int64_t>(positions.size());
  std::string message =
      Counted(count, "song") + " are named \"" + Clean(wanted) + "\"; choose one of:";
  SongRecordReader reader(session.library,
                          SetOf({Field::Id, Field::Artist, Field::Album, Field::Name}));
  for (std::size_t i = 0; i < positions.size() && i < kMostShown; ++i) {
    const SongRecord& song = reader.Read(session.library.openAllSongs(), positions[i]);
    message += "\n  id:" + Clean(song.Text(Field::Id).value_or("")) + "  " +
               Clean(song.Text(Field::Artist).value_or("")) + " - " +
               Clean(song.Text(Field::Album).value_or(""));
  }
  if (positions.size() > kMostShown) message += "\n  ...";
  return {ExitCode::Failed, message};
}

}  // namespace

ChosenSong ChooseSong(const std::vector<std::string>& names, const Session& session) {
  if (names.size() > 1) {
    const std::vector<Playlist> playlists = ReadPlaylists(session.library);
    const Playlist& playlist = FindPlaylist(playlists, names[0], session.options);
    return {playlist.handle, FindInPlaylist(playlist, names, session)};
  }
  const std::vector<std::int32_t> positions = PositionsOf(names[0], session);
  if (positions.empty()) throw NoSong(names[0], session);
  if (positions.size() > 1) throw SeveralSongs(names[0], positions, session);
  return {session.library.openAllSongs(), positions[0]};
}

}  // namespace tavrel::host
