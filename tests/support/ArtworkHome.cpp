#include "tests/support/ArtworkHome.h"

#include <stdio.h>
#include <stdlib.h>

#include <filesystem>
#include <iterator>

#include "agent/Exports.h"
#include "library/artwork/ArtworkCatalogue.h"

namespace tavrel::test {
namespace {

constexpr std::string_view kArtworkFolder = "Music/iTunes/Album Artwork";

std::string TrackText(std::size_t id, const std::string& persistentId) {
  std::string text = "<key>" + std::to_string(id) + "</key><dict><key>Track ID</key><integer>" +
                     std::to_string(id) + "</integer><key>Name</key><string>Song</string>";
  if (!persistentId.empty()) {
    text += "<key>Persistent ID</key><string>" + persistentId + "</string>";
  }
  return text + "</dict>\n";
}

}  // namespace

ArtworkHome::~ArtworkHome() {
  Unload();
}

void ArtworkHome::WriteLibrary(const std::vector<std::string>& trackIds,
                               std::string_view libraryId) const {
  std::string text = "<plist version=\"1.0\"><dict>";
  if (!libraryId.empty()) {
    text.append("<key>Library Persistent ID</key><string>").append(libraryId).append("</string>");
  }
  text += "<key>Tracks</key><dict>\n";
  for (std::size_t i = 0; i < trackIds.size(); ++i) text += TrackText(100 + i, trackIds[i]);
  text += "</dict><key>Playlists</key><array></array></dict></plist>";
  folder_.Write("Music/iTunes/iTunes Music Library.xml", text);
}

std::string ArtworkHome::WriteCache(std::string_view name, std::string_view contents) const {
  return folder_.Write(std::string(kArtworkFolder).append("/").append(name), contents);
}

std::string ArtworkHome::Artwork() const {
  return folder_.PathOf(kArtworkFolder);
}

void ArtworkHome::Load() {
  Unload();
  ASSERT_EQ(setenv("HOME", folder_.path().c_str(), 1), 0);
  AgentInitializer();
  loaded_ = true;
}

void ArtworkHome::Unload() {
  if (loaded_) AgentFinalizer();
  loaded_ = false;
}

std::vector<std::string> ArtworkHome::Catalogue() const {
  std::vector<std::string> paths;
  for (int i = 0; i < g_pGlobal->artworkFileCount; ++i) {
    const ArtworkFileEntry& entry = *g_pGlobal->artworkFiles[i];
    const std::string path = entry.path;
    EXPECT_EQ(static_cast<std::size_t>(entry.pathSize), path.size() + 1);
    EXPECT_TRUE(path.starts_with(Artwork() + "/")) << path;
    paths.push_back(path.substr(Artwork().size() + 1));
  }
  return paths;
}

std::string TrackId(unsigned long long number) {
  char digits[17];
  snprintf(digits, sizeof(digits), "%016llX", number);
  return digits;
}

std::size_t OpenDescriptors() {
  const auto listed = std::distance(std::filesystem::directory_iterator("/dev/fd"), {});
  return static_cast<std::size_t>(listed) - 1;  // but for that of the listing
}

}  // namespace tavrel::test
