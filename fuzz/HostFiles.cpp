// Files that the host has to do with: library files, for the IDs that the library tells of them and for why it
// refused them, and pictures out of cache files.
#include <string>

#include "agent/Exports.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputFile.h"
#include "host/artwork/CacheFolder.h"
#include "host/artwork/PersistentIds.h"
#include "host/artwork/PictureFiles.h"
#include "host/library/Diagnosis.h"

using namespace tavrel::host;
using tavrel::fuzz::Require;

namespace {

LibraryFunctions LinkedFunctions() {
  LibraryFunctions functions{};
  functions.openAllSongs = OpenAllSongs;
  functions.getSongCount = GetSongCount;
  functions.getSongProperty = GetSongProperty;
  functions.getLibraryProperty = GetLibraryProperty;
  return functions;
}

void ReadIds(const LibraryFunctions& functions) {
  const PersistentIds ids = ReadPersistentIds(functions);
  Require(ids.library.size() == kNoId.size(), "An ID has another length");
  for (const std::string& id : ids.tracks) {
    Require(id.size() == kNoId.size(), "An ID has another length");
  }
}

void ReadFolder(std::string_view input) {
  static const tavrel::fuzz::InputHome home;
  home.WriteLibrary(input);
  AgentInitializer();
  const LibraryFunctions functions = LinkedFunctions();
  ReadIds(functions);
  const CacheFolder folder(functions, home.LibraryFile());
  const auto songs = static_cast<std::size_t>(GetSongCount(OpenAllSongs()));
  std::size_t claimed = 0;
  for (std::size_t song = 0; song < songs; ++song) claimed += folder.FileOf(song).empty() ? 0u : 1u;
  const std::size_t unclaimed = folder.Unclaimed().size();
  Require(unclaimed <= std::size(tavrel::fuzz::kTrackIds), "A file is there twice");
  Require(claimed > 0 || unclaimed == std::size(tavrel::fuzz::kTrackIds), "A file is missing");
  AgentFinalizer();
  (void)Diagnose(home.LibraryFile());
}

// The first two bytes are a width and a height.
void ReadPicture(std::string_view input) {
  Require(!IsWholePng(input) || !IsWholeJpeg(input), "A file is of both kinds");
  if (input.size() < 2) return;
  const auto width = static_cast<signed char>(input[0]);
  const auto height = static_cast<signed char>(input[1]);
  for (const PixelOrder order : {PixelOrder::Argb, PixelOrder::Bgra}) {
    const auto png = PngOfPixels(input.substr(2), width, height, order);
    Require(!png || IsWholePng(*png), "A picture that was made is not whole");
  }
}

void ReadHostFiles(std::string_view input) {
  ReadPicture(input);
  ReadFolder(input);
}

const tavrel::fuzz::Target hostFilesTarget("host_files", ReadHostFiles);

}  // namespace
