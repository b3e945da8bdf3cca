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
  if (tail.empty()) return base;
  return base.ends_with('/') ? base + tail : base + "/" + tail;
}

FilePlaces::FilePlaces(const PathOptions& options, std::string_view musicFolder,
                       const std::optional<std::string>& libraryFolder) {
  const bool isLookedAt = options.form == PathForm::Auto;
  for (const std::string& text : options.maps) AddMapping(text, isLookedAt);
  std::stable_sort(mappings_.begin(), mappings_.end(),
                   [](const Mapping& a, const Mapping& b) { return a.old.size() > b.old.size(); });
  if (text::IsFileUrl(musicFolder)) musicFolder_ = FullPath(musicFolder).value_or("");
  comparableMusicFolder_ = ComparablePath(musicFolder_);
  if (options.music) music_ = isLookedAt ? Absolute(*options.music) : *options.music;
  if (libraryFolder) libraryFolder_ = Absolute(*libraryFolder);
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
  const std::string now = text.substr(equals + 1);
  mappings_.push_back({ComparablePath(*old), isLookedAt ? Absolute(now) : WithoutSlashAtEnd(now)});
}

std::optional<std::string_view> FilePlaces::TailOf(std::string_view folder) const {
  if (musicFolder_.empty()) return std::nullopt;
  return RestBelow(comparableMusicFolder_, ComparablePath(folder), folder);
}

std::optional<FilePlace> FilePlaces::Mapped(std::string_view folder) const {
  if (mappings_.empty()) return std::nullopt;
  const std::string comparable = ComparablePath(folder);
  for (const Mapping& mapping : mappings_) {
    const auto rest = RestBelow(mapping.old, comparable, folder);
    if (!rest) continue;
    FilePlace place{mapping.now, std::string(*rest), ""};
    if (TailOf(folder)) {
      const auto music = RestBelow(mapping.old, comparableMusicFolder_, musicFolder_);
      place.musicFolder = FilePlace{mapping.now, std::string(music.value_or("")), ""}.Path();
    }
    return place;
  }
  return std::nullopt;
}

std::vector<std::string> FilePlaces::MediaNames() const {
  std::vector<std::string> names(std::begin(kMediaNames), std::end(kMediaNames));
  const std::string own(LastName(musicFolder_));
  if (!own.empty() && std::find(names.begin(), names.end(), own) == names.end()) {
    names.insert(names.begin(), own);
  }
  return names;
}

void FilePlaces::AddBeside(std::string_view folder, std::vector<FilePlace>& places,
                           Folders& folders) const {
  if (!libraryFolder_) return;
  if (const auto tail = TailOf(folder)) {
    for (const std::string& name : MediaNames()) {
      const std::string base = FilePlace{*libraryFolder_, name, ""}.Path();
      if (folders.At(base) != nullptr) places.push_back({base, std::string(*tail), base});
    }
    return;
  }
  // The folder that the Music Folder lies in holds the library file as well, and more.
  const std::size_t end = musicFolder_.rfind('/');
  if (end == std::string::npos || end == 0) return;
  const std::string above = musicFolder_.substr(0, end);
  if (const auto tail = RestBelow(ComparablePath(above), ComparablePath(folder), folder)) {
    places.push_back({*libraryFolder_, std::string(*tail), ""});
  }
}

void FilePlaces::AddBelowMusic(std::string_view folder, std::vector<FilePlace>& places,
                               Folders& folders) const {
  if (!music_) return;
  const auto tail = TailOf(folder);
  if (!tail) {
    const std::string_view last = LastTwo(folder);
    if (!last.empty()) places.push_back({*music_, std::string(last), *music_});
    return;
  }
  places.push_back({*music_, std::string(*tail), *music_});
  for (const std::string& name : MediaNames()) {
    const std::string base = FilePlace{*music_, name, ""}.Path();
    if (folders.At(base) != nullptr) places.push_back({base, std::string(*tail), *music_});
  }
  // The folder "Music" within that of all media.
  const std::size_t end = tail->find('/');
  if (end != std::string_view::npos) {
    places.push_back({*music_, std::string(tail->substr(end + 1)), *music_});
  }
}

std::vector<FilePlace> FilePlaces::Of(std::string_view folder, Folders& folders) const {
  if (auto mapped = Mapped(folder)) return {std::move(*mapped)};
  const std::string_view tail =
      folder.substr(std::min(folder.find_first_not_of('/'), folder.size()));
  std::vector<FilePlace> places{{"/", std::string(tail), TailOf(folder) ? musicFolder_ : ""}};
  AddBeside(folder, places, folders);
  AddBelowMusic(folder, places, folders);
  return places;
}

const FilePlace& FilePlaces::MostLikely(const std::vector<FilePlace>& places) const {
  for (const FilePlace& place : places) {
    if (music_ && place.base == *music_) return place;
  }
  return places.size() > 1 ? places[1] : places[0];
}

FilePlace FilePlaces::WithoutLook(std::string_view folder) const {
  if (auto mapped = Mapped(folder)) return std::move(*mapped);
  const auto tail = TailOf(folder);
  if (music_ && tail) return {*music_, std::string(*tail), *music_};
  return {std::string(folder), "", ""};
}

}  // namespace tavrel::host
