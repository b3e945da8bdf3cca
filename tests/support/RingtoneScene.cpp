#include "tests/support/RingtoneScene.h"

#include <algorithm>
#include <cstring>
#include <ostream>

#include "tavrel/tavrel.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/RecordSizes.h"

namespace tavrel::test {

RingtoneScene::RingtoneScene() : homeVariable_("HOME", home_.path().c_str()) {
  WriteLibrary(SmallLibraryText());
}

RingtoneScene::~RingtoneScene() {
  Unload();
}

std::string RingtoneScene::PathOf(std::string_view fileName) const {
  return home_.PathOf("Music/iTunes/iTunes Media/Ringtones/") + std::string(fileName);
}

void RingtoneScene::WriteLibrary(std::string_view text) const {
  home_.Write("Music/iTunes/iTunes Music Library.xml", text);
}

void RingtoneScene::Put(std::string_view fileName) const {
  home_.Write(std::string("Music/iTunes/iTunes Media/Ringtones/").append(fileName), "tone");
}

void RingtoneScene::MakeFolder() const {
  std::filesystem::create_directories(PathOf(""));
}

void RingtoneScene::Load() {
  EXPECT_EQ(AgentInitializer(), 0);
  loaded_ = true;
}

void RingtoneScene::Unload() {
  if (!loaded_) return;
  EXPECT_EQ(AgentFinalizer(), 0);
  loaded_ = false;
}

void PrintTo(const Ringtone& ringtone, std::ostream* stream) {
  *stream << "\"" << ringtone.name << "\" at \"" << ringtone.location << "\"";
}

PlaylistRecord* LastPlaylist() {
  return OpenPlaylist(0, GetPlaylistCount(0) - 1);
}

std::vector<Ringtone> Listed(PlaylistRecord* playlist) {
  std::vector<Ringtone> ringtones;
  for (std::int32_t index = 0; index < GetSongCount(playlist); ++index) {
    SongInfo info = {};
    const std::int32_t total = GetSongInfo(playlist, index, &info);
    EXPECT_EQ(total, tavrel::test::kSongInfoSize + info.nameSize + info.locationSize);
    std::string name(static_cast<std::size_t>(info.nameSize), '?');
    std::string location(static_cast<std::size_t>(info.locationSize), '?');
    info.name = name.data();
    info.location = location.data();
    EXPECT_EQ(GetSongInfo(playlist, index, &info), total);
    Ringtone ringtone{name.c_str(), location.c_str()};
    EXPECT_EQ(ringtone.name.size() + 1, name.size());
    EXPECT_EQ(ringtone.location.size() + 1, location.size());
    ringtones.push_back(std::move(ringtone));
  }
  return ringtones;
}

std::vector<std::string> ListedNames(PlaylistRecord* playlist) {
  std::vector<std::string> names;
  for (Ringtone& ringtone : Listed(playlist)) names.push_back(std::move(ringtone.name));
  return names;
}

bool HasOnlyNameAndLocation(const TrackRecord& record) {
  std::vector<char> bytes(sizeof record);
  std::memcpy(bytes.data(), &record, sizeof record);
  const std::size_t texts = offsetof(SongInfo, locationSize) + sizeof(record.info.locationSize);
  return std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(texts), bytes.end(),
                     [](char byte) { return byte == 0; });
}

}  // namespace tavrel::test
