#include "host/checks/DuplicateSearch.h"

#include <algorithm>
#include <cstdlib>

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::int64_t kSameLength = 2000;  // in milliseconds
constexpr auto kNoFile = static_cast<std::size_t>(-1);

// The number of a text, counted in the order in which they come.
template <typename List>
std::size_t NumberOf(TextMap<std::size_t>& numbers, const std::string& key, List& lists) {
  const auto [entry, isNew] = numbers.try_emplace(key, lists.size());
  if (isNew) lists.emplace_back();
  return entry->second;
}

}  // namespace

FieldSet DuplicateSearch::Fields() {
  return SetOf(
      {Field::Name, Field::Artist, Field::Album, Field::Seconds, Field::Path, Field::Status});
}

void DuplicateSearch::Add(std::int32_t position, const SongRecord& song) {
  fileOf_.resize(static_cast<std::size_t>(position) + 1, kNoFile);
  const auto file = song.HasFile() ? song.Text(Field::Path) : song.Text(Field::Location);
  if (file) {
    fileOf_.back() = NumberOf(files_, std::string(*file), byFile_);
    byFile_[fileOf_.back()].push_back(position);
  }
  const auto name = song.Text(Field::Name);
  if (!name || name->empty()) return;
  std::string title = Fold(song.Text(Field::Artist).value_or(""));
  title.append(1, '\0').append(Fold(song.Text(Field::Album).value_or("")));
  title.append(1, '\0').append(Fold(*name));
  byTitle_[NumberOf(titles_, title, byTitle_)].emplace_back(song.Milliseconds(), position);
}

// Lengths that follow each other closely belong together.
void DuplicateSearch::AddGroups(std::vector<Timed> alike, std::vector<Duplicates>& groups) const {
  std::sort(alike.begin(), alike.end());
  for (std::size_t first = 0; first < alike.size();) {
    std::size_t end = first + 1;
    while (end < alike.size() && alike[end].first - alike[end - 1].first <= kSameLength) ++end;
    Duplicates group;
    bool isOneFile = true;  // which is told as such
    for (std::size_t i = first; i < end; ++i) {
      group.songs.push_back(alike[i].second);
      const std::size_t file = fileOf_[static_cast<std::size_t>(alike[i].second)];
      if (file == kNoFile || file != fileOf_[static_cast<std::size_t>(alike[first].second)]) {
        isOneFile = false;
      }
    }
    std::sort(group.songs.begin(), group.songs.end());
    if (group.songs.size() > 1 && !isOneFile) groups.push_back(std::move(group));
    first = end;
  }
}

std::vector<Duplicates> DuplicateSearch::Take() {
  std::vector<Duplicates> groups;
  for (Positions& songs : byFile_) {
    if (songs.size() > 1) groups.push_back({true, std::move(songs)});
  }
  for (std::vector<Timed>& alike : byTitle_) {
    if (alike.size() > 1) AddGroups(std::move(alike), groups);
  }
  std::stable_sort(groups.begin(), groups.end(), [](const Duplicates& a, const Duplicates& b) {
    return a.songs.front() < b.songs.front();
  });
  return groups;
}

}  // namespace tavrel::host
