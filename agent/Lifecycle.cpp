// Load and unload.
#include <cstring>
#include <memory>

#include "agent/Implementations.h"
#include "system/Guard.h"
#include "system/HomeFolder.h"
#include "system/Memory.h"
#include "xml/TBXML.h"

using tavrel::Private;
using tavrel::PrivateState;
using namespace tavrel;

constinit GlobalState* g_pGlobal = nullptr;

constinit PrivateState* tavrel::loadedState = nullptr;

namespace {

char* OwnedHomeFolder() noexcept {
  return system::Guarded<char*>(nullptr, [] {
    const auto home = system::HomeFolder();
    char* copy = home ? static_cast<char*>(system::Allocate(home->size() + 1)) : nullptr;
    if (copy != nullptr) std::memcpy(copy, home->c_str(), home->size() + 1);
    return copy;
  });
}

}  // namespace

std::int32_t AgentInitializerImp() noexcept {
  auto* state = static_cast<PrivateState*>(system::AllocateZeroed(sizeof(PrivateState)));
  tavrel::loadedState = state;
  g_pGlobal = state == nullptr ? nullptr : &state->shared;
  if (state == nullptr) return -1;
  g_pGlobal->pool = &state->pool;
  state->home = OwnedHomeFolder();
  g_pGlobal->document = OpenXML();
  if (g_pGlobal->document == nullptr) return -1;
  // In this order: playlists look their tracks up in the finished track table, and the ringtone
  // playlist is the last of its group.
  CreateTrackArray();
  CreatePlaylistArray();
  CreateRingtoneArray();
  return 0;
}

std::int32_t AgentFinalizerImp() noexcept {
  if (tavrel::loadedState == nullptr) return 0;
  tavrel::loadedState = nullptr;
  PrivateState& state = Private();
  tavrel::ReleaseSearchIndex();
  DestroyArtworkArray();
  DestroyRingtoneArray();
  DestroyTrackArray();
  DestroyPlaylistArray();
  delete state.shared.document;
  state.pool.Drain();
  system::Release(state.home);
  system::Release(&state);
  return 0;
}
