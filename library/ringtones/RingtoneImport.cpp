#include "library/ringtones/RingtoneImport.h"

#include "library/TableAppender.h"
#include "library/ringtones/RingtoneCatalogue.h"
#include "system/Guard.h"
#include "system/ScriptRunner.h"
#include "system/SystemLog.h"
#include "text/PathNames.h"

namespace tavrel {
namespace {

constexpr std::string_view kNoPath = "Add ringtone to iTunes failed as pszPath == 0.\n";
constexpr std::string_view kNotRun = "Play ringtone script execute error.\n";
constexpr std::string_view kNotListed =
    "Add ringtone to iTunes success, but can't update ringtone list.\n";

enum Result : std::int32_t { kDone = 0, kAddedButNotListed = 1, kFailed = -1 };

std::int32_t Report(std::string_view message, Result result) noexcept {
  system::Log({message});
  return result;
}

// Lists the file by its path alone, once more if it is listed already. What a missing piece of
// memory answers differs from piece to piece. Kept.
std::int32_t List(const LibraryState* state, std::string_view path) noexcept {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return Report(kNotListed, kAddedButNotListed);

  RingtoneHolder ringtone = NewRingtone();
  if (ringtone == nullptr) return Report(kNotListed, kAddedButNotListed);
  SongInfo& info = ringtone->info;
  // The name ends at the last '.'; that of a ringtone listed at load ends at the first. Kept.
  const std::string_view name = text::SplitExtension(path.substr(slash + 1)).base;
  if (!StoreText(name, info.name, info.nameSize)) return kFailed;
  if (!StoreText(path, info.location, info.locationSize)) {
    return Report(kNotListed, kFailed);
  }
  PlaylistRecord* playlist = state == nullptr ? nullptr : RingtonePlaylist(*state);
  if (playlist == nullptr) return Report(kNotListed, kAddedButNotListed);
  TableAppender<TrackRecord> table(playlist->tracks, playlist->capacity, playlist->count);
  if (!table.Reserve()) return Report(kNotListed, kAddedButNotListed);
  table.Append(ringtone.release());
  return kDone;
}

}  // namespace

std::string RingtoneScript(std::string_view path) {
  std::string script = "set Ringtone to (POSIX file \"";
  script.append(path);
  script +=
      "\")\n"
      "tell application \"iTunes\"\n"
      "    activate\n"
      "    play Ringtone\n"
      "end tell\n"
      "tell application \"System Events\"\n"
      "    keystroke \"l\" using command down\n"
      "end tell\n";
  return script;
}

std::int32_t ImportRingtone(const LibraryState* state, const char* path) noexcept {
  if (path == nullptr) return Report(kNoPath, kFailed);
  const bool played =
      system::Guarded(false, [path] { return system::RunScript(RingtoneScript(path)); });
  return played ? List(state, path) : Report(kNotRun, kFailed);
}

}  // namespace tavrel
