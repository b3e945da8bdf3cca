// A track's properties: read in one walk, one by one and literally, they are the same. An input is what
// stands in the track's dictionary.
#include "library/tracks/TrackProperties.h"

#include <stdlib.h>

#include <cstring>
#include <string>

#include "agent/Lifecycle.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputFile.h"
#include "library/tracks/TrackTable.h"
#include "tests/reference/LiteralTrackProperties.h"

using tavrel::fuzz::Require;

namespace {

bool SameText(const char* a, const char* b) {
  if (a == nullptr || b == nullptr) return a == b;
  return std::strcmp(a, b) == 0;
}

bool Same(const TrackRecord& a, const TrackRecord& b) {
  const SongInfo& x = a.info;
  const SongInfo& y = b.info;
  return SameText(x.name, y.name) && SameText(x.location, y.location) &&
         SameText(x.artist, y.artist) && SameText(x.album, y.album) && SameText(x.genre, y.genre) &&
         x.nameSize == y.nameSize && x.locationSize == y.locationSize &&
         x.artistSize == y.artistSize && x.albumSize == y.albumSize && x.genreSize == y.genreSize &&
         x.totalTime == y.totalTime && x.playCount == y.playCount &&
         x.trackNumber == y.trackNumber && x.movie == y.movie &&
         std::memcmp(a.persistentId, b.persistentId, sizeof a.persistentId) == 0 &&
         a.pendingDict == nullptr && b.pendingDict == nullptr;
}

void ReleaseTexts(const SongInfo& info) {
  for (char* text : {info.name, info.location, info.artist, info.album, info.genre}) free(text);
}

void Compare(TrackRecord& track) {
  TrackRecord literal = track;
  TrackRecord plain = track;
  tavrel::reference::LoadTrackPropertiesLiterally(literal);
  tavrel::LoadTrackPropertiesPlainly(plain);
  tavrel::LoadTrackProperties(track, tavrel::loadedState);
  Require(Same(plain, literal), "Properties that are read one by one are others");
  Require(Same(track, literal), "Properties that are read in one walk are others");
  ReleaseTexts(literal.info);
  ReleaseTexts(plain.info);
}

void ReadTrack(std::string_view input) {
  static const tavrel::fuzz::InputHome home;
  home.WriteLibrary(std::string("<plist><dict><key>Tracks</key><dict><key>1</key><dict>")
                        .append(input)
                        .append("</dict></dict></dict></plist>"));
  AgentInitializer();
  for (std::int32_t i = 0; i < g_pGlobal->trackCount; ++i) Compare(*g_pGlobal->tracks[i]);
  AgentFinalizer();
}

const tavrel::fuzz::Target propertiesTarget("properties", ReadTrack);

}  // namespace
