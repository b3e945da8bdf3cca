// Load and unload, and which library is the loaded one.
#pragma once

#include <cstdint>

#include "library/State.h"
#include "tavrel/tavrel.h"

// The loaded library. Null before the first load; keeps its value after unload, when it must not be
// followed.
extern "C" TAVREL_API GlobalState* g_pGlobal;

namespace tavrel {

// What the last load made; none before it and after its unload. `g_pGlobal` cannot tell: it keeps
// its value, and callers can set it.
extern constinit LibraryState* loadedState;

// The library that calls work on, the one behind `g_pGlobal`; none when none is loaded, and none for a
// record of the host's own, behind whose fields nothing stands.
[[nodiscard]] LibraryState* CurrentLibrary() noexcept;

// A fresh state, which `g_pGlobal` leads to from here on; none when memory is exhausted.
LibraryState* MakeLibrary() noexcept;

// As AgentInitializer() and AgentFinalizer().
std::int32_t Load() noexcept;
std::int32_t Unload() noexcept;

}  // namespace tavrel
