#include "host/export/ExportReport.h"

#include <algorithm>
#include <numeric>

#include "host/library/Invocation.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/MessageGuard.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kMostNotes = 20;

JsonValue TextOrNull(const std::string& text) {
  return text.empty() ? JsonValue(kJsonNull) : JsonValue(text);
}

std::string_view NameOf(ExportReport::Outcome outcome) {
  constexpr std::array<std::string_view, 3> kNames{"written", "kept", "failed"};
  return kNames.at(static_cast<std::size_t>(outcome));
}

void AppendObject(std::string& list, const JsonObject& object) {
  if (!list.empty()) list += ",\n    ";
  list += object.Text();
}

// "Nimrod" by Edward Elgar, or the place where it should be.
std::string Describe(const SongRecord& song) {
  std::string text = '"' + std::string(song.Text(Field::Name).value_or("")) + '"';
  if (const auto artist = song.Text(Field::Artist)) text.append(" by ").append(*artist);
  return text;
}

std::string_view Explain(std::string_view lack) {
  return lack == "none" ? "the library names no place" : lack;
}

}  // namespace

ExportReport::ExportReport(const Session& session)
    : session_(session),
      numbers_(session.library),
      isCounted_(
          static_cast<std::size_t>(session.library.getSongCount(session.library.openAllSongs()))) {}

void ExportReport::AddFile(const Playlist& playlist, std::int32_t position,
                           const SongRecord& song) {
  const std::int32_t number = numbers_.Of(playlist.handle, position);
  if (number < 0 || isCounted_[static_cast<std::size_t>(number)]) return;
  isCounted_[static_cast<std::size_t>(number)] = true;
  tally_.Add(song);
}

void ExportReport::AddLeftOut(const Playlist& playlist, const SongRecord& song,
                              std::string_view lack) {
  const auto kind = std::find(kLacks.begin(), kLacks.end(), lack) - kLacks.begin();
  ++leftOut_.at(static_cast<std::size_t>(kind));
  ++leftOutOfList_;
  const std::string name = playlist.name.value_or("");
  const auto location = song.Text(Field::Location);
  if (session_.options.json) {
    AppendObject(leftOutJson_, {{"list", name},
                                {"name", song.Text(Field::Name)},
                                {"artist", song.Text(Field::Artist)},
                                {"location", location},
                                {"status", lack}});
    return;
  }
  if (session_.options.quiet) return;
  if (notes_.size() >= kMostNotes && !session_.options.verbose) return;
  std::string note = name + ": left out " + Describe(song) + ": " + std::string(Explain(lack));
  const std::string_view place = song.SoughtPath().value_or(location.value_or(""));
  if (!place.empty()) note.append(": ").append(place);
  notes_.push_back(Clean(note));
}

void ExportReport::AddList(const PlannedList& list, std::int64_t songs, Outcome outcome) {
  if (outcome == Outcome::Written) {
    ++written_;
    songs_ += songs;
  }
  if (outcome == Outcome::Kept) ++kept_;
  const std::int64_t leftOut = leftOutOfList_;
  leftOutOfList_ = 0;
  if (!session_.options.json) return;
  AppendObject(listsJson_, {{"id", TextOrNull(list.playlist->id)},
                            {"name", list.playlist->name},
                            {"file", list.path},
                            {"songs", songs},
                            {"leftOut", leftOut},
                            {"result", NameOf(outcome)}});
}

std::int64_t ExportReport::LeftOut() const noexcept {
  return std::accumulate(leftOut_.begin(), leftOut_.end(), std::int64_t{0});
}

// "missing" where that is all, else "5 missing, 2 remote".
std::string ExportReport::Reasons() const {
  const auto kinds =
      std::count_if(leftOut_.begin(), leftOut_.end(), [](std::int64_t count) { return count > 0; });
  std::string reasons;
  for (std::size_t i = 0; i < kLacks.size(); ++i) {
    if (leftOut_[i] == 0) continue;
    if (!reasons.empty()) reasons += ", ";
    if (kinds > 1) reasons += Grouped(leftOut_[i]) + ' ';
    reasons += kLacks[i] == "none" ? "without a place" : kLacks[i];
  }
  return reasons;
}

void ExportReport::PrintSummary(const std::string& folder, bool isDryRun, Session& session) const {
  const std::int64_t leftOut = LeftOut();
  std::string summary = Counted(written_, "playlist") + ", " + Counted(songs_, "song") +
                        (isDryRun ? " would be written to " : " written to ") + Clean(folder);
  if (leftOut > 0) summary += "; " + Counted(leftOut, "song") + " left out (" + Reasons() + ")";
  session.output.WriteLine(summary);
  if (otherEncoding_ > 0) {
    session.output.WriteLine(Counted(otherEncoding_, "playlist") +
                             " in UTF-8, for characters that Latin-1 has not");
  }
  if (kept_ > 0) {
    session.output.WriteLine(Counted(kept_, "file") + " kept that had the name; --force replaces");
  }
}

void ExportReport::Print(const std::string& folder, std::string_view format, bool isDryRun,
                         Session& session) const {
  TellWhatWasFound(tally_, session);
  if (session.options.json) {
    JsonArray failed;
    for (const std::string& message : failed_) failed.Add(message);
    std::string json = JsonObject{
        {"folder", folder},
        {"format", format},
        {"dryRun", isDryRun},
        {"written", written_},
        {"kept", kept_},
        {"songs", songs_},
        {"beyondLatin1", otherEncoding_},
        {"failed", failed}}.Text();
    json.pop_back();
    json += ",\n  \"lists\":[" + listsJson_ + "],\n  \"leftOut\":[" + leftOutJson_ + "]}";
    session.output.WriteLine(json);
    return;
  }
  for (const std::string& note : notes_) Complain(note);
  const std::int64_t more = LeftOut() - static_cast<std::int64_t>(notes_.size());
  if (!notes_.empty() && more > 0) {
    Complain("and " + Grouped(more) + " more; -v shows them all, and so does " +
             Invocation(session.options, "check --only missing"));
  }
  for (const std::string& message : failed_) Complain(message);
  if (!session.options.quiet) PrintSummary(folder, isDryRun, session);
}

}  // namespace tavrel::host
