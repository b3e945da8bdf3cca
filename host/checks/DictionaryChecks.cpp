#include "host/checks/DictionaryChecks.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tavrel::host {
namespace {

bool IsOfType(const char* type, FieldType wanted) noexcept {
  const auto is = [type](const char* name) { return std::strcmp(type, name) == 0; };
  switch (wanted) {
    case FieldType::Text:
      return is("string");
    case FieldType::Number:
    case FieldType::Seconds:
      return is("integer");
    case FieldType::Date:
      return is("date");
    case FieldType::Flag:
      return is("true") || is("false");
  }
  return true;
}

std::optional<std::int64_t> ParseId(std::string_view text) noexcept {
  std::int64_t id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(id) : std::nullopt;
}

}  // namespace

void AddFinding(std::vector<FileFinding>& findings, std::string_view name, std::string what,
                Positions songs) {
  if (songs.empty()) return;
  const auto count = static_cast<std::int64_t>(songs.size());
  findings.push_back({name, std::move(what), count, std::move(songs)});
}

void DictionaryChecks::WatchReader(SongRecordReader& reader) {
  reader.ShowPairs([this](std::size_t number, const char* key, const char* text, const char* type) {
    Take(number, key, text == nullptr ? "" : text, type);
  });
}

void DictionaryChecks::Take(std::size_t number, const char* key, const char* text,
                            const char* type) {
  if (number >= kFieldCount) {
    if (std::strcmp(key, kTrackIdKey) == 0) TakeId(text);
    return;
  }
  const auto field = static_cast<Field>(number);
  if (field == Field::Id && persistentId_.empty()) persistentId_ = text;
  if (!IsOfType(type, FactsOf(field).type)) oddities_.emplace_back(key, type);
}

void DictionaryChecks::TakeId(std::string_view text) {
  if (!trackId_) trackId_ = TrackIdOf(text);
  if (!id_) id_ = ParseId(text);
}

void DictionaryChecks::End(std::int32_t position) {
  // Reading says nothing on the log but of texts that are broken.
  const std::int64_t logged = LoggedBytes();
  if (logged != logged_) broken_.push_back(position);
  logged_ = logged;
  if (!id_) {
    withoutId_.push_back(position);
  } else {
    if (!ids_.empty() && *id_ < ids_.back().first) outOfOrder_.push_back(position);
    ids_.emplace_back(*id_, position);
  }
  if (trackId_ && *trackId_) trackIds_.emplace_back(**trackId_, position);
  const bool isNew = persistentId_.empty() || persistentIds_.Of(persistentId_).isNew;
  if (!isNew) persistentTwice_.push_back(position);
  for (const auto& oddity : oddities_) {
    Positions& songs = odd_[oddity];
    if (songs.empty() || songs.back() != position) songs.push_back(position);
  }
  id_.reset();
  trackId_.reset();
  persistentId_.clear();
  oddities_.clear();
}

void DictionaryChecks::Report(std::vector<FileFinding>& findings) {
  AddFinding(findings, "noId", "songs without an ID, which no playlist can hold",
             std::move(withoutId_));
  AddFinding(findings, "idTwice", "songs that have the ID of an earlier one", Twice());
  AddFinding(findings, "idOutOfOrder",
             "songs whose ID is below that of the one before: lists may lose them",
             std::move(outOfOrder_));
  AddFinding(findings, "persistentIdTwice", "songs that have the persistent ID of an earlier one",
             std::move(persistentTwice_));
  AddFinding(findings, "brokenText", "songs with a text that ends early at a broken reference",
             std::move(broken_));
  for (auto& [odd, songs] : odd_) {
    AddFinding(findings, "oddType", odd.first + " is written as " + odd.second, std::move(songs));
  }
}

Positions DictionaryChecks::Twice() {
  // As they nearly always stand.
  if (!std::is_sorted(ids_.begin(), ids_.end())) std::sort(ids_.begin(), ids_.end());
  Positions twice;
  for (std::size_t i = 1; i < ids_.size(); ++i) {
    if (ids_[i].first == ids_[i - 1].first) twice.push_back(ids_[i].second);
  }
  std::sort(twice.begin(), twice.end());
  return twice;
}

}  // namespace tavrel::host
