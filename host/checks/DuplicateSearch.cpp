#include "host/checks/DuplicateSearch.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::uint64_t kSameLength = 2000;  // in milliseconds
constexpr auto kNoFile = static_cast<std::size_t>(-1);

}  // namespace

FieldSet DuplicateSearch::Fields() {
  return SetOf(
      {Field::Name, Field::Artist, Field::Album, Field::Seconds, Field::Path, Field::Status});
}

void DuplicateSearch::Add(std::int32_t position, const SongRecord& song) {
  fileOf_.resize(static_cast<std::size_t>(position) + 1, kNoFile);
  const bool isHere = song.HasFile();
  const auto file = isHere ? song.Text(Field::Path) : song.Text(Field::Location);
  if (file) fileOf_.back() = files_.Add(*file, isHere);
  const auto name = song.Text(Field::Name);
  if (!name || name->empty()) return;
  title_ = FoldedAlbum(song);
  title_ += Fold(*name);
  titled_.push_back({titles_.Of(title_).number, song.Milliseconds(), position});
}

// The songs of an album follow each other.
const std::string& DuplicateSearch::FoldedAlbum(const SongRecord& song) {
  const std::string_view artist = song.Text(Field::Artist).value_or("");
  const std::string_view album = song.Text(Field::Album).value_or("");
  if (foldedAlbum_.empty() || artist != artist_ || album != album_) {
    artist_ = artist;
    album_ = album;
    foldedAlbum_ = Fold(artist) + '\0' + Fold(album) + '\0';
  }
  return foldedAlbum_;
}

void DuplicateSearch::AddFiles(std::vector<Duplicates>& groups) const {
  std::vector<std::int32_t> first(files_.Size(), -1);      // song of a file
  std::vector<std::size_t> group(files_.Size(), kNoFile);  // of those that a file has
  for (std::size_t i = 0; i < fileOf_.size(); ++i) {
    const std::size_t file = fileOf_[i];
    const auto song = static_cast<std::int32_t>(i);
    if (file == kNoFile) continue;
    if (first[file] < 0) {
      first[file] = song;
    } else if (group[file] == kNoFile) {
      group[file] = groups.size();
      groups.push_back({true, {first[file], song}});
    } else {
      groups[group[file]].songs.push_back(song);
    }
  }
}

bool DuplicateSearch::ShareOneFile(const Positions& songs) const {
  const std::size_t file = fileOf_[static_cast<std::size_t>(songs.front())];
  return file != kNoFile && std::all_of(songs.begin(), songs.end(), [&](std::int32_t song) {
           return fileOf_[static_cast<std::size_t>(song)] == file;
         });
}

void DuplicateSearch::KeepTitlesOfSeveral() {
  std::vector<std::int32_t> songs(titles_.Size(), 0);
  for (const Titled& song : titled_) ++songs[song.title];
  const auto isAlone = [&songs](const Titled& song) { return songs[song.title] == 1; };
  titled_.erase(std::remove_if(titled_.begin(), titled_.end(), isAlone), titled_.end());
}

// Lengths that follow each other closely belong together.
void DuplicateSearch::AddTitles(std::vector<Duplicates>& groups) {
  KeepTitlesOfSeveral();
  std::sort(titled_.begin(), titled_.end());
  const auto belongTogether = [](const Titled& one, const Titled& next) {
    // Without a sign, since they may lie further apart than a number with one says.
    const auto apart = static_cast<std::uint64_t>(next.milliseconds) -
                       static_cast<std::uint64_t>(one.milliseconds);
    return one.title == next.title && apart <= kSameLength;
  };
  for (std::size_t first = 0; first < titled_.size();) {
    std::size_t end = first + 1;
    while (end < titled_.size() && belongTogether(titled_[end - 1], titled_[end])) ++end;
    if (end - first > 1) {
      Duplicates group;
      for (std::size_t i = first; i < end; ++i) group.songs.push_back(titled_[i].position);
      std::sort(group.songs.begin(), group.songs.end());
      if (!ShareOneFile(group.songs)) groups.push_back(std::move(group));  // told as such already
    }
    first = end;
  }
}

std::vector<Duplicates> DuplicateSearch::Take() {
  std::vector<Duplicates> groups;
  AddFiles(groups);
  AddTitles(groups);
  std::stable_sort(groups.begin(), groups.end(), [](const Duplicates& a, const Duplicates& b) {
    return a.songs.front() < b.songs.front();
  });
  return groups;
}

}  // namespace tavrel::host
