#include "bench/artwork/ArtworkHome.h"

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <fstream>

namespace tavrel::bench {
namespace {

constexpr const char* kLibraryId = "0A1B2C3D4E5F6071";

std::string Number(std::size_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

// A cache file of one image.
std::string CacheFile(std::size_t imageBytes) {
  std::string header = Number(284) + "itch";
  header.resize(284);
  std::string block = Number(208 + imageBytes) + "item" + Number(208);
  block.resize(208 + imageBytes, '\x5A');
  block.replace(48, 4, "PNGf");
  block.replace(204, 4, "data");
  return header + block;
}

void WriteLibrary(const std::string& path, int songs) {
  std::ofstream file(path, std::ios::binary);
  file << "<plist><dict><key>Library Persistent ID</key><string>" << kLibraryId
       << "</string><key>Tracks</key><dict>\n";
  for (int song = 0; song < songs; ++song) {
    file << fmt::format(
        "<key>{0}</key><dict><key>Track ID</key><integer>{0}</integer><key>Name</key>"
        "<string>x</string><key>Persistent ID</key><string>{1}</string></dict>\n",
        song + 1, TrackId(song));
  }
  file << "</dict></dict></plist>";
}

}  // namespace

std::string TrackId(int song) {
  return fmt::format("{:016X}", static_cast<std::uint64_t>(song) * 0x9E3779B97F4A7C15U);
}

ArtworkHome::ArtworkHome(int songs, std::size_t imageBytes) {
  const std::filesystem::path folder = std::filesystem::path(path()) / "Music" / "iTunes";
  std::filesystem::create_directories(folder);
  WriteLibrary((folder / "iTunes Music Library.xml").string(), songs);
  const std::string content = CacheFile(imageBytes);
  for (int song = 0; song < songs; ++song) {
    const auto sub = folder / "Album Artwork" / "Cache" / fmt::format("{:02}", song % 100);
    if (song < 100) std::filesystem::create_directories(sub);
    files_.push_back((sub / fmt::format("{}-{}.itc2", kLibraryId, TrackId(song))).string());
    std::ofstream(files_.back(), std::ios::binary) << content;
  }
}

}  // namespace tavrel::bench
