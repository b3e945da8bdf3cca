#include "host/checks/FileChecks.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <utility>

#include "host/library/Fields.h"
#include "host/library/FileFormat.h"
#include "host/library/KeptFailure.h"
#include "host/library/Playlists.h"
#include "host/library/SongPlaces.h"
#include "host/library/TextHash.h"
#include "host/output/MessageGuard.h"

namespace tavrel::host {
namespace {

using Id = std::int64_t;

bool IsOfType(std::string_view type, FieldType wanted) noexcept {
  switch (wanted) {
    case FieldType::Text:
      return type == "string";
    case FieldType::Number:
    case FieldType::Seconds:
      return type == "integer";
    case FieldType::Date:
      return type == "date";
    case FieldType::Flag:
      return type == "true" || type == "false";
  }
  return true;
}

std::optional<Id> ParseId(std::string_view text) noexcept {
  Id id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(id) : std::nullopt;
}

// Looks at the dictionaries of songs one after the other.
class Dictionaries {
 public:
  explicit Dictionaries(const LibraryFunctions& library) : library_(library) {}

  void Look(PlaylistRecord* songs, std::int32_t position) {
    position_ = position;
    id_.reset();
    persistentId_.clear();
    const std::int64_t logged = LoggedBytes();
    library_.visitSongProperties(songs, position, Visit, this);
    failure_.Throw();
    if (LoggedBytes() != logged) broken_.push_back(position);
    if (!id_) {
      withoutId_.push_back(position);
    } else {
      if (!ids_.empty() && *id_ < ids_.back().first) outOfOrder_.push_back(position);
      ids_.emplace_back(*id_, position);
    }
    const bool isNew = persistentId_.empty() || persistentIds_.insert(persistentId_).second;
    if (!isNew) persistentTwice_.push_back(position);
  }

  void Report(std::vector<FileFinding>& findings) {
    Add(findings, "noId", "songs without an ID, which no playlist can hold", withoutId_);
    Add(findings, "idTwice", "songs that have the ID of an earlier one", Twice());
    Add(findings, "idOutOfOrder",
        "songs whose ID is below that of the one before: lists may lose them", outOfOrder_);
    Add(findings, "persistentIdTwice", "songs that have the persistent ID of an earlier one",
        persistentTwice_);
    Add(findings, "brokenText", "songs with a text that ends early at a broken reference", broken_);
    for (auto& [odd, songs] : odd_) {
      Add(findings, "oddType", odd.first + " is written as " + odd.second, songs);
    }
  }

  static void Add(std::vector<FileFinding>& findings, std::string_view name, std::string what,
                  Positions songs) {
    if (songs.empty()) return;
    const auto count = static_cast<std::int64_t>(songs.size());
    findings.push_back({name, std::move(what), count, std::move(songs)});
  }

 private:
  static std::int32_t Visit(const char* key, const char* text, const char* type, void* context) {
    auto& all = *static_cast<Dictionaries*>(context);
    return all.failure_.Keep([&] {
      all.Take(key, text == nullptr ? "" : text, type);
      return 1;
    });
  }

  void Take(std::string_view key, std::string_view text, std::string_view type) {
    if (key == "Track ID" && !id_) id_ = ParseId(text);
    if (key == "Persistent ID" && persistentId_.empty()) persistentId_ = text;
    const std::optional<Field> field = fields_.Find(key);
    if (!field || IsOfType(type, FactsOf(*field).type)) return;
    Positions& songs = odd_[{std::string(key), std::string(type)}];
    if (songs.empty() || songs.back() != position_) songs.push_back(position_);
  }

  Positions Twice() {
    std::sort(ids_.begin(), ids_.end());
    Positions twice;
    for (std::size_t i = 1; i < ids_.size(); ++i) {
      if (ids_[i].first == ids_[i - 1].first) twice.push_back(ids_[i].second);
    }
    std::sort(twice.begin(), twice.end());
    return twice;
  }

  const LibraryFunctions& library_;
  KeptFailure failure_;
  FieldKeys fields_;
  std::int32_t position_ = 0;
  std::optional<Id> id_;
  std::string persistentId_;
  std::vector<std::pair<Id, std::int32_t>> ids_;
  TextSet persistentIds_;
  Positions withoutId_;
  Positions outOfOrder_;
  Positions persistentTwice_;
  Positions broken_;
  std::map<std::pair<std::string, std::string>, Positions> odd_;
};

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
                   std::int32_t songs) {
  Positions alone;
  const bool hasLists = std::any_of(playlists.begin(), playlists.end(),
                                    [](const Playlist& list) { return list.isInFile; });
  if (!hasLists) return alone;
  const SongPlaces places(library, playlists);
  for (std::int32_t song = 0; song < songs; ++song) {
    if (places.Of(song).empty()) alone.push_back(song);
  }
  return alone;
}

}  // namespace

FileChecks CheckFile(const Session& session, const std::function<void()>& step) {
  const LibraryFunctions& library = session.library;
  FileChecks checks;
  checks.isWhole = EndsLikePropertyList(session.place.File());
  PlaylistRecord* songs = library.openAllSongs();
  const std::int32_t count = library.getSongCount(songs);
  Dictionaries dictionaries(library);
  for (std::int32_t song = 0; song < count; ++song) {
    dictionaries.Look(songs, song);
    step();
  }
  dictionaries.Report(checks.findings);
  const std::vector<Playlist> playlists = ReadPlaylists(library);
  const std::int64_t broken = CountBrokenElsewhere(library, playlists);
  if (broken > 0) {
    checks.findings.push_back({"brokenTextOfList",
                               "playlists with a text that ends early at a broken reference",
                               broken,
                               {}});
  }
  Dictionaries::Add(checks.findings, "inNoList", "songs that no playlist holds which is shown",
                    InNoList(library, playlists, count));
  return checks;
}

}  // namespace tavrel::host
