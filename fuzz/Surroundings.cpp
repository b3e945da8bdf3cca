#include "fuzz/Surroundings.h"

#include <stdlib.h>

#include <filesystem>
#include <string_view>

#include "agent/Exports.h"
#include "tests/support/LibraryTexts.h"

namespace tavrel::fuzz {
namespace {

std::string SmallLibrary() {
  using namespace test;
  const auto id = [](std::size_t i) { return TextPair("Persistent ID", kTrackIds[i]); };
  // Ringtones have the ID 0 as well.
  const std::string tracks = Track(0, TextPair("Name", "aB")) +
                             Track(1, id(0) + TextPair("Name", "B&#38;C")) +
                             Track(2, id(1) + TextPair("Artist", "caf\u00E9")) +
                             Track(7, TextPair("Location", "file:///a%20b"));
  const std::string playlists =
      Playlist(TextPair("Name", "x") + IntegerPair("Distinguished Kind", 4), {1, 7}) +
      Playlist(IntegerPair("Distinguished Kind", 26), {2}) + Playlist("", {});
  return LibraryText({tracks, playlists, TextPair("Library Persistent ID", kLibraryId)});
}

}  // namespace

Surroundings::Surroundings() : small_(SmallLibrary()) {
  for (const char* runner : {"true", "false"}) {
    const std::string folder = home_.folder() + "/" + runner;
    std::filesystem::create_directory(folder);
    std::filesystem::create_symlink(std::string("/bin/") + runner, folder + "/osascript");
  }
}

void Surroundings::Load(std::size_t which) const {
  constexpr std::string_view kOthers[] = {"", "<plist/>", "\xFF"};
  home_.WriteLibrary(which < 5 ? std::string_view(small_) : kOthers[which - 5]);
  AgentInitializer();
}

void Surroundings::Import(std::size_t which, const char* path) const {
  constexpr const char* kRunners[] = {"/true", "/false", "/none"};
  setenv("PATH", (home_.folder() + kRunners[which]).c_str(), 1);
  AppendRingtone(path);
}

}  // namespace tavrel::fuzz
