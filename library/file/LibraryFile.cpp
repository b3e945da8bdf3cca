#include "library/file/LibraryFile.h"

#include <memory>
#include <string_view>

#include "system/FolderListing.h"
#include "system/Guard.h"
#include "system/SystemLog.h"
#include "text/FileUrl.h"
#include "xml/TBXML.h"

namespace tavrel {
namespace {

constexpr std::string_view kLibraryFile = "Music/iTunes/iTunes Music Library.xml";

// plist, dict, the dictionary "Tracks", those of the tracks, which all readers of tracks will visit.
constexpr std::size_t kLevelOfTracks = 4;

std::unique_ptr<TBXML> ParseLibraryFile(const char* home) {
  auto document = TBXML::alloc();
  if (document == nullptr) return nullptr;
  document->listElementsOfLevel(kLevelOfTracks);
  document->initWithURL(text::FileUrlOfPath(system::PathIn(home, kLibraryFile)));
  return document;
}

}  // namespace

TBXML* OpenLibraryFile(const char* home) noexcept {
  std::unique_ptr<TBXML> document;
  if (home != nullptr) {
    document =
        system::Guarded<std::unique_ptr<TBXML>>(nullptr, [&] { return ParseLibraryFile(home); });
  }
  if (document == nullptr || document->rootXMLElement() == nullptr) {
    system::Log({"Open iTunes Library file error!"});
    return nullptr;
  }
  return document.release();
}

}  // namespace tavrel
