#include "host/checks/DictionaryChecks.h"

#include <algorithm>
#include <charconv>

namespace tavrel::host {
namespace {

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
                            std::string_view type) {
  if (number >= kFieldCount) {
    if (!id_ && std::string_view(key) == "Track ID") id_ = ParseId(text);
    return;
  }
  const auto field = static_cast<Field>(number);
  if (field == Field::Id && persistentId_.empty()) persistentId_ = text;
  if (!IsOfType(type, FactsOf(field).type)) oddities_.emplace_back(key, type);
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
  const bool isNew = persistentId_.empty() || persistentIds_.Of(persistentId_).isNew;
  if (!isNew) persistentTwice_.push_back(position);
  for (const auto& oddity : oddities_) {
    Positions& songs = odd_[oddity];
    if (songs.empty() || songs.back() != position) songs.push_back(position);
  }
  id_.reset();
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
  std::sort(ids_.begin(), ids_.end());
  Positions twice;
  for (std::size_t i = 1; i < ids_.size(); ++i) {
    if (ids_[i].first == ids_[i - 1].first) twice.push_back(ids_[i].second);
  }
  std::sort(twice.begin(), twice.end());
  return twice;
}

}  // namespace tavrel::host
