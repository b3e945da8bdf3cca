// Opening the library file.
#include <memory>
#include <string>

#include "agent/Implementations.h"
#include "system/Guard.h"
#include "system/SystemLog.h"
#include "text/FileUrl.h"
#include "xml/TBXML.h"

namespace {

constexpr std::string_view kLibraryFile = "Music/iTunes/iTunes Music Library.xml";

// plist, dict, the dictionary "Tracks", those of the tracks, which all readers of tracks will visit.
constexpr std::size_t kLevelOfTracks = 4;

std::string LibraryPath(std::string home) {
  if (!home.ends_with('/')) home += '/';
  return home.append(kLibraryFile);
}

}  // namespace

TBXML* OpenXML() noexcept {
  auto document = tavrel::system::Guarded<std::unique_ptr<TBXML>>(nullptr, [] {
    const char* home = g_pGlobal == nullptr ? nullptr : tavrel::Private().home;
    if (home == nullptr) return std::unique_ptr<TBXML>();
    auto made = TBXML::alloc();
    if (made == nullptr) return made;
    made->listElementsOfLevel(kLevelOfTracks);
    made->initWithURL(tavrel::text::FileUrlOfPath(LibraryPath(home)));
    return made;
  });
  if (document == nullptr || document->rootXMLElement() == nullptr) {
    tavrel::system::Log({"Open iTunes Library file error!"});
    return nullptr;
  }
  return document.release();
}
