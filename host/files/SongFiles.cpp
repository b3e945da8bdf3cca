#include "host/files/SongFiles.h"

#include <limits.h>

#include <algorithm>

#include "host/files/NormalForms.h"
#include "host/files/WrittenPath.h"
#include "host/output/Failure.h"
#include "text/FileUrl.h"

namespace tavrel::host {
namespace {

constexpr auto kAllPlaces = static_cast<std::size_t>(-1);

bool LeadsUpwards(std::string_view path) noexcept {
  for (;;) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view name = path.substr(0, end);
    if (name == "." || name == "..") return true;
    if (end == path.size()) return false;
    path.remove_prefix(end + 1);
  }
}

// What no system can have a file of that name at.
bool IsNoName(std::string_view name) noexcept {
  return name.empty() || name.size() > kLongestName || name == "." || name == "..";
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
  if (path.size() < PATH_MAX && !IsNoName(name)) {
    if (KnownFolder* known = KnownOf(folder)) return FindIn(*known, name);
  }
  return {FileStatus::Missing, {}, path, {}};
}

std::optional<std::string> SongFiles::MusicFolder() {
  for (const FilePlace& place : places_.Of(places_.MusicFolder(), folders_)) {
    if (!place.musicFolder.empty() && folders_.At(std::string(place.musicFolder)) != nullptr) {
      return std::string(place.musicFolder);
    }
  }
  return std::nullopt;
}

SongFile SongFiles::WithoutLook(std::string_view folder, std::string_view name) {
  path_ = InForm(places_.WithoutLook(folder).Path() + "/" + std::string(name), form_);
  return {std::nullopt, path_, path_, {}};
}

SongFile SongFiles::FindIn(KnownFolder& known, std::string_view name) {
  if (TakeExact(known, name)) return {FileStatus::Found, path_, path_, musicFolder_};
  if (!known.second.alike) Extend(known);
  if (TakeAlike(known.second, name)) return {FileStatus::Respelled, path_, path_, musicFolder_};
  sought_ = known.second.sought;
  sought_ += name;
  return {FileStatus::Missing, {}, sought_, {}};
}

SongFiles::KnownFolder* SongFiles::KnownOf(std::string_view folder) {
  // The songs of an album lie in one folder.
  if (last_ != nullptr && last_->first == folder) return last_;
  if (LeadsUpwards(folder)) return nullptr;  // so that nothing need be remembered of it
  const auto remembered = known_.find(folder);
  if (remembered != known_.end()) return last_ = &*remembered;
  return last_ = &*known_.try_emplace(std::string(folder)).first;
}

void SongFiles::Extend(KnownFolder& known) {
  const std::vector<FilePlace> places = places_.Of(known.first, folders_);
  std::vector<Reached> alike;
  for (const FilePlace& place : places) {
    for (FolderContents* folder : folders_.Alike(place.base, place.tail)) {
      alike.push_back({folder, place.musicFolder});
    }
  }
  known.second.sought = places_.MostLikely(places).Path();
  if (!known.second.sought.ends_with('/')) known.second.sought += '/';
  known.second.alike = std::move(alike);
}

bool SongFiles::TakeExact(KnownFolder& known, std::string_view name) {
  auto& [written, places] = known;
  const auto isThere = [&](const Reached& reached) { return TakeFrom(reached, name); };
  if (std::any_of(places.exact.begin(), places.exact.end(), isThere)) return true;
  if (places.places == kAllPlaces) return false;
  const std::vector<FilePlace> all = places_.Of(written, folders_);
  while (places.places < all.size()) {
    const FilePlace& place = all[places.places++];
    FolderContents* folder = folders_.At(place.Path());
    if (folder == nullptr) continue;
    places.exact.push_back({folder, place.musicFolder});
    if (isThere(places.exact.back())) return true;
  }
  places.places = kAllPlaces;
  return false;
}

bool SongFiles::TakeFrom(const Reached& reached, std::string_view name) {
  FolderContents& folder = *reached.folder;
  FolderEntry* entry = folder.Find(name);
  const bool isThere = folder.IsListed() ? entry != nullptr && folder.IsFile(*entry)
                                         : IsFileAt(folder.Path() + std::string(name));
  if (!isThere) return false;
  if (entry != nullptr) entry->isOfSong = true;
  Take(reached, name);
  return true;
}

bool SongFiles::TakeAlike(const Known& known, std::string_view name) {
  for (const Reached& reached : *known.alike) {
    FolderContents& folder = *reached.folder;
    if (!folder.IsListed()) {
      const std::optional<std::string> form = LookFor(folder, name);
      if (!form) continue;
      Take(reached, *form);
      return true;
    }
    for (FolderEntry* entry : folder.FindAlike(name)) {
      if (!folder.IsFile(*entry)) continue;
      entry->isOfSong = true;
      Take(reached, entry->name);
      return true;
    }
  }
  return false;
}

void SongFiles::Take(const Reached& reached, std::string_view name) {
  path_ = reached.folder->Path();
  path_ += name;
  musicFolder_ = reached.musicFolder;
}

}  // namespace tavrel::host
