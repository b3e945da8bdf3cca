#include "host/files/FilePlaces.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "host/files/WrittenPath.h"
#include "host/output/Failure.h"
#include "text/FileUrl.h"

namespace tavrel::host {
namespace {

namespace fs = std::filesystem;

// What iTunes and Music call the folder, old and new.
constexpr const char* kMediaNames[] = {"iTunes Media", "iTunes Music", "Music"};

std::string Absolute(const std::string& path) {
  return WithoutSlashAtEnd(fs::absolute(path).lexically_normal());
}

std::string_view LastName(std::string_view path) noexcept {
  return path.substr(path.rfind('/') + 1);
}

// The last two folders, those of an artist's album; empty when there are fewer.
std::string_view LastTwo(std::string_view folder) noexcept {
  const std::size_t last = folder.rfind('/');
  if (last == std::string_view::npos || last == 0) return {};
  const std::size_t before = folder.rfind('/', last - 1);
  return before == std::string_view::npos ? std::string_view() : folder.substr(before + 1);
}

[[noreturn]] void FailForMapping(const std::string& text, const std::string& what) {
  throw Failure(ExitCode::Usage, "--map " + text + ": " + what);
}

}  // namespace

void CheckMappings(const PathOptions& options) {
  const FilePlaces checked(options, "", std::nullopt);
}

std::string FilePlace::Path() const {
  std::string path(base);
  if (tail.empty()) return path;
  if (!path.ends_with('/')) path += '/';
  return path.append(tail);
}

FilePlaces::FilePlaces(const PathOptions& options, std::string_view musicFolder,
                       const std::optional<std::string>& libraryFolder) {
  if (text::IsFileUrl(musicFolder)) musicFolder_ = FullPath(musicFolder).value_or("");
  comparableMusicFolder_ = ComparablePath(musicFolder_);
  const std::size_t above = musicFolder_.rfind('/');
  if (above != std::string::npos) comparableAbove_ = ComparablePath(musicFolder_.substr(0, above));
  const bool isLookedAt = options.form == PathForm::Auto;
  for (const std::string& text : options.maps) AddMapping(text, isLookedAt);
  std::stable_sort(mappings_.begin(), mappings_.end(),
                   [](const Mapping& a, const Mapping& b) { return a.old.size() > b.old.size(); });
  if (options.music) {
    music_ = isLookedAt ? Absolute(*options.music) : *options.music;
    belowMusic_ = MediaFoldersIn(*music_);
  }
  if (libraryFolder) {
    libraryFolder_ = Absolute(*libraryFolder);
    beside_ = MediaFoldersIn(*libraryFolder_);
  }
}

void FilePlaces::AddMapping(const std::string& text, bool isLookedAt) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0 || equals + 1 == text.size()) {
    FailForMapping(text, "it takes OLD=NEW, two folders");
  }
  const std::optional<std::string> old = FullPath(std::string_view(text).substr(0, equals));
  if (!old) {
    FailForMapping(
        text, "OLD is a full path as the library has it, such as /Users/me/Music or C:\\Music");
  }
  Mapping mapping{ComparablePath(*old), text.substr(equals + 1), ""};
  mapping.now = isLookedAt ? Absolute(mapping.now) : WithoutSlashAtEnd(mapping.now);
  const auto music = RestBelow(mapping.old, comparableMusicFolder_, musicFolder_);
  mapping.musicFolder = FilePlace{mapping.now, music.value_or(""), ""}.Path();
  mappings_.push_back(std::move(mapping));
}

FilePlaces::Sought FilePlaces::Seek(std::string_view folder) const {
  Sought sought{folder, ComparablePath(folder), std::nullopt};
  if (musicFolder_.empty()) return sought;
  sought.tail = RestBelow(comparableMusicFolder_, sought.comparable, folder);
  return sought;
}

std::optional<FilePlace> FilePlaces::Mapped(const Sought& sought) const {
  for (const Mapping& mapping : mappings_) {
    const auto rest = RestBelow(mapping.old, sought.comparable, sought.folder);
    if (!rest) continue;
    FilePlace place{mapping.now, *rest, ""};
    if (sought.tail) place.musicFolder = mapping.musicFolder;
    return place;
  }
  return std::nullopt;
}

std::vector<std::string> FilePlaces::MediaFoldersIn(const std::string& folder) const {
  std::vector<std::string_view> names(std::begin(kMediaNames), std::end(kMediaNames));
  const std::string_view own = LastName(musicFolder_);
  if (!own.empty() && std::find(names.begin(), names.end(), own) == names.end()) {
    names.insert(names.begin(), own);
  }
  std::vector<std::string> folders;
  for (const std::string_view name : names) folders.push_back(FilePlace{folder, name, ""}.Path());
  return folders;
}

void FilePlaces::AddBeside(const Sought& sought, std::vector<FilePlace>& places,
                           Folders& folders) const {
  if (!libraryFolder_) return;
  if (sought.tail) {
    for (const std::string& base : beside_) {
      if (folders.At(base) != nullptr) places.push_back({base, *sought.tail, base});
    }
    return;
  }
  // The folder that the Music Folder lies in holds the library file as well, and more.
  if (comparableAbove_.empty()) return;
  if (const auto tail = RestBelow(comparableAbove_, sought.comparable, sought.folder)) {
    places.push_back({*libraryFolder_, *tail, ""});
  }
}

void FilePlaces::AddBelowMusic(const Sought& sought, std::vector<FilePlace>& places,
                               Folders& folders) const {
  if (!music_) return;
  if (!sought.tail) {
    const std::string_view last = LastTwo(sought.folder);
    if (!last.empty()) places.push_back({*music_, last, *music_});
    return;
  }
  places.push_back({*music_, *sought.tail, *music_});
  for (const std::string& base : belowMusic_) {
    if (folders.At(base) != nullptr) places.push_back({base, *sought.tail, *music_});
  }
  // The folder "Music" within that of all media.
  const std::size_t end = sought.tail->find('/');
  if (end != std::string_view::npos) {
    places.push_back({*music_, sought.tail->substr(end + 1), *music_});
  }
}

std::vector<FilePlace> FilePlaces::Of(std::string_view folder, Folders& folders) const {
  const Sought sought = Seek(folder);
  if (const auto mapped = Mapped(sought)) return {*mapped};
  const std::string_view tail =
      folder.substr(std::min(folder.find_first_not_of('/'), folder.size()));
  std::vector<FilePlace> places{{"/", tail, ""}};
  if (sought.tail) places[0].musicFolder = musicFolder_;
  AddBeside(sought, places, folders);
  AddBelowMusic(sought, places, folders);
  return places;
}

const FilePlace& FilePlaces::MostLikely(const std::vector<FilePlace>& places) const {
  for (const FilePlace& place : places) {
    if (music_ && place.base == *music_) return place;
  }
  return places.size() > 1 ? places[1] : places[0];
}

FilePlace FilePlaces::WithoutLook(std::string_view folder) const {
  const Sought sought = Seek(folder);
  if (const auto mapped = Mapped(sought)) return *mapped;
  if (music_ && sought.tail) return {*music_, *sought.tail, *music_};
  return {folder, "", ""};
}

}  // namespace tavrel::host
