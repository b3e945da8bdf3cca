#include "host/files/SongFiles.h"

#include <limits.h>

#include <algorithm>

#include "host/files/NormalForms.h"
#include "host/files/WrittenPath.h"
#include "host/output/Failure.h"
#include "text/FileUrl.h"

namespace tavrel::host {
namespace {

bool LeadsUpwards(std::string_view path) noexcept {
  for (;;) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view name = path.substr(0, end);
    if (name == "." || name == "..") return true;
    if (end == path.size()) return false;
    path.remove_prefix(end + 1);
  }
}

// What no system can have a file at, so that nothing need be remembered of it.
bool IsBeyondAllFiles(std::string_view path, std::string_view name) noexcept {
  return name.empty() || name.size() > kLongestName || path.size() >= PATH_MAX ||
         LeadsUpwards(path);
}

std::string InForm(std::string path, PathForm form) {
  switch (form) {
    case PathForm::Composed:
      return ComposedPath(path);
    case PathForm::Decomposed:
      return DecomposedPath(path);
    case PathForm::Auto:
    case PathForm::AsWritten:
      break;
  }
  return path;
}

// In a folder that may be entered but not listed.
std::optional<std::string> LookFor(const FolderContents& folder, std::string_view name) {
  for (std::string form : {ComposedPath(name), DecomposedPath(name)}) {
    if (IsFileAt(folder.Path() + form)) return form;
  }
  return std::nullopt;
}

}  // namespace

SongFiles::SongFiles(const PathOptions& options, std::string_view musicFolder,
                     const std::optional<std::string>& libraryFolder)
    : form_(options.form), places_(options, musicFolder, libraryFolder) {
  if (form_ != PathForm::Auto || !options.music) return;
  if (!FolderContents::Read(*options.music)) {
    throw Failure(ExitCode::Usage, "--music " + *options.music + ": there is no such folder");
  }
}

SongFile SongFiles::Find(std::optional<std::string_view> location, std::string_view type) {
  if (!location) {
    const bool isRemote = type == "Remote" || type == "URL";
    return {isRemote ? FileStatus::Remote : FileStatus::None, {}, {}, {}};
  }
  if (!text::IsFileUrl(*location)) return {FileStatus::Remote, {}, {}, {}};
  std::optional<std::string> path = WrittenPath(*location);
  if (!path) return {FileStatus::Missing, {}, {}, {}};
  written_ = std::move(*path);
  return FindPath(written_);
}

SongFile SongFiles::FindPath(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {FileStatus::Missing, {}, path, {}};
  const std::string_view folder = path.substr(0, slash);
  const std::string_view name = path.substr(slash + 1);
  if (form_ != PathForm::Auto) return WithoutLook(folder, name);
  if (IsBeyondAllFiles(path, name)) return {FileStatus::Missing, {}, path, {}};
  return FindAt(folder, name);
}

std::optional<std::string> SongFiles::MusicFolder() {
  for (const FilePlace& place : places_.Of(places_.MusicFolder(), folders_)) {
    if (!place.musicFolder.empty() && folders_.At(place.musicFolder) != nullptr) {
      return place.musicFolder;
    }
  }
  return std::nullopt;
}

SongFile SongFiles::WithoutLook(std::string_view folder, std::string_view name) {
  path_ = InForm(places_.WithoutLook(folder).Path() + "/" + std::string(name), form_);
  return {std::nullopt, path_, path_, {}};
}

SongFile SongFiles::FindAt(std::string_view folder, std::string_view name) {
  Known& known = KnownOf(folder);
  if (TakeExact(known, name)) return {FileStatus::Found, path_, path_, musicFolder_};
  if (TakeAlike(known, name)) return {FileStatus::Respelled, path_, path_, musicFolder_};
  sought_ = known.sought;
  sought_ += name;
  return {FileStatus::Missing, {}, sought_, {}};
}

SongFiles::Known& SongFiles::KnownOf(std::string_view folder) {
  // The songs of an album lie in one folder.
  if (last_ != nullptr && last_->first == folder) return last_->second;
  const auto remembered = known_.find(folder);
  if (remembered != known_.end()) {
    last_ = &*remembered;
    return last_->second;
  }
  Known known;
  known.places = places_.Of(folder, folders_);
  for (std::size_t place = 0; place < known.places.size(); ++place) {
    FolderContents* found = folders_.At(known.places[place].Path());
    if (found != nullptr) known.exact.push_back({found, place});
  }
  known.sought = places_.MostLikely(known.places).Path();
  if (!known.sought.ends_with('/')) known.sought += '/';
  last_ = &*known_.emplace(folder, std::move(known)).first;
  return last_->second;
}

const std::vector<SongFiles::Reached>& SongFiles::AlikeOf(Known& known) {
  if (known.alike) return *known.alike;
  known.alike.emplace();
  for (std::size_t place = 0; place < known.places.size(); ++place) {
    const FilePlace& wanted = known.places[place];
    for (FolderContents* folder : folders_.Alike(wanted.base, wanted.tail)) {
      known.alike->push_back({folder, place});
    }
  }
  return *known.alike;
}

bool SongFiles::TakeExact(const Known& known, std::string_view name) {
  for (const Reached& reached : known.exact) {
    const FolderContents& folder = *reached.folder;
    const FolderEntry* entry = folder.Find(name);
    const bool isThere = folder.IsListed() ? entry != nullptr && folder.IsFile(*entry)
                                           : IsFileAt(folder.Path() + std::string(name));
    if (!isThere) continue;
    Take(known, reached, name);
    return true;
  }
  return false;
}

bool SongFiles::TakeAlike(Known& known, std::string_view name) {
  for (const Reached& reached : AlikeOf(known)) {
    FolderContents& folder = *reached.folder;
    if (!folder.IsListed()) {
      const std::optional<std::string> form = LookFor(folder, name);
      if (!form) continue;
      Take(known, reached, *form);
      return true;
    }
    for (const FolderEntry* entry : folder.FindAlike(name)) {
      if (!folder.IsFile(*entry)) continue;
      Take(known, reached, entry->name);
      return true;
    }
  }
  return false;
}

void SongFiles::Take(const Known& known, const Reached& reached, std::string_view name) {
  path_ = reached.folder->Path();
  path_ += name;
  musicFolder_ = known.places[reached.place].musicFolder;
}

}  // namespace tavrel::host
