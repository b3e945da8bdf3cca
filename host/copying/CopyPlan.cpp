#include "host/copying/CopyPlan.h"

#include <algorithm>

#include "host/library/SongRecord.h"
#include "host/library/TextHash.h"
#include "host/naming/FolderTree.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kListExtension = ".m3u8";

std::string Described(const SongRecord& song) {
  const std::string artist(song.Text(Field::Artist).value_or(""));
  const std::string name(song.Text(Field::Name).value_or(kUntitled));
  return artist.empty() ? name : artist + " - " + name;
}

class Planner {
 public:
  Planner(const LibraryFunctions& library, const NamePattern& pattern)
      : library_(library), pattern_(pattern) {}

  // The names of lists come first, so that they do not depend on the songs.
  CopyPlan Plan(const std::vector<const Playlist*>& lists) {
    for (const Playlist* list : lists) {
      const bool isKnown =
          std::any_of(plan_.lists.begin(), plan_.lists.end(),
                      [list](const auto& other) { return other.playlist == list; });
      if (isKnown) continue;
      plan_.lists.push_back({list, tree_.NewFile("", list->name.value_or(""), kListExtension), {}});
    }
    for (ListToCopy& list : plan_.lists) AddSongs(list);
    return std::move(plan_);
  }

 private:
  void AddSongs(ListToCopy& list) {
    const FieldSet fields = pattern_.Fields() | SetOf({Field::Id, Field::Name, Field::Location,
                                                       Field::Path, Field::Status});
    ForEachRecord(
        library_, list.playlist->handle, fields,
        [&](std::int32_t, const SongRecord& song) { list.files.push_back(FileOf(song)); });
  }

  std::optional<std::size_t> FileOf(const SongRecord& song) {
    const auto path = song.Text(Field::Path);
    if (!path) {
      AddWithoutFile(song);
      return std::nullopt;
    }
    const auto [known, isNew] = files_.try_emplace(std::string(*path), plan_.files.size());
    if (isNew) {
      plan_.files.push_back({std::string(*path), TargetOf(song, *path)});
      plan_.tally.Add(song);
    }
    return known->second;
  }

  std::string TargetOf(const SongRecord& song, std::string_view path) {
    const std::vector<std::string> names = pattern_.NamesFor(song, path);
    std::string folder;
    for (std::size_t i = 0; i + 1 < names.size(); ++i) folder = tree_.Folder(folder, names[i]);
    return tree_.NewFile(folder, names.back(), SafeExtension(path));
  }

  void AddWithoutFile(const SongRecord& song) {
    std::string place(song.SoughtPath().value_or(song.Text(Field::Location).value_or("")));
    std::string name = Described(song);
    std::string key(song.Text(Field::Id).value_or(""));
    key += '\n' + place + '\n' + name;
    if (!withoutFile_.insert(std::move(key)).second) return;
    plan_.tally.Add(song);
    plan_.withoutFile.push_back(
        {std::move(name), std::move(place), std::string(song.Text(Field::Status).value_or(""))});
  }

  const LibraryFunctions& library_;
  const NamePattern& pattern_;
  CopyPlan plan_;
  FolderTree tree_;
  TextMap<std::size_t> files_;  // by their sources
  TextSet withoutFile_;
};

}  // namespace

CopyPlan PlanCopies(const LibraryFunctions& library, const std::vector<const Playlist*>& lists,
                    const NamePattern& pattern) {
  return Planner(library, pattern).Plan(lists);
}

}  // namespace tavrel::host
