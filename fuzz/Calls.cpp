#include "fuzz/FuzzTarget.h"
#include "fuzz/Life.h"
#include "library/file/PropertyList.h"

namespace tavrel::fuzz {

Life::Life(const Surroundings& surroundings, std::string_view input, std::size_t number)
    : surroundings_(surroundings), choices_(input), number_(number) {
  surroundings_.Load(0);
}

Life::~Life() {
  CloseAll();
  AgentFinalizer();
}

void Life::Run() {
  while (!choices_.IsEmpty()) Call();
}

void Life::Call() {
  constexpr void (Life::*kCalls[])() = {
      &Life::ListPlaylist, &Life::ReadSong,       &Life::OpenOrCloseArtwork,
      &Life::ReadArtwork,  &Life::Search,         &Life::Import,
      &Life::Read,         &Life::ReadDictionary, &Life::Rebuild,
      &Life::FillPlaylist, &Life::LoadAnew,       &Life::ReadProperty};
  (this->*kCalls[choices_.Below(std::size(kCalls))])();
}

PlaylistRecord* Life::AnyPlaylist() {
  if (choices_.Below(4) == 0) return OpenAllSongs();
  const std::int32_t group = choices_.Position(kGroups);
  return OpenPlaylist(group, choices_.Position(GetPlaylistCount(group)));
}

const TBXMLElement* Life::AnyElement() {
  const TBXMLElement* element = TopLevelDictionary(g_pGlobal->document);
  for (std::size_t steps = choices_.Below(8); steps > 0 && element != nullptr; --steps) {
    element = choices_.Below(2) == 0 ? element->firstChild : element->nextSibling;
  }
  return element;
}

void Life::LoadAnew() {
  if (depth_ > 0 || choices_.Below(4) != 1) return;
  CloseAll();
  AgentFinalizer();
  if (choices_.Below(2) == 1) AgentFinalizer();
  surroundings_.Load(choices_.Below(8));
}

namespace {

void LiveOnCalls(std::string_view input) {
  static const Surroundings surroundings;
  static std::size_t lives = 0;
  Life(surroundings, input, lives++).Run();
}

const Target callsTarget("calls", LiveOnCalls);

}  // namespace

}  // namespace tavrel::fuzz
