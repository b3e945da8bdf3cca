// Everything that a host can ask of a loaded library, as one text: the same library gives the same text,
// whatever the process, the thread or the moment.
#pragma once

#include <functional>
#include <string>

#include "tests/support/LoadedLibrary.h"

namespace tavrel::test {

// The address of an exported function.
using FindFunction = std::function<void*(const char* name)>;

[[nodiscard]] FindFunction FunctionsOf(const LoadedLibrary& library);
[[nodiscard]] FindFunction FunctionsOf(void* handle);  // of dlopen

// All lists, every song twice, every property, searches, the artwork of the first songs with its images. Little of the
// stack is needed for it. Ringtones of before the load are in it, none that was imported.
[[nodiscard]] std::string UseEverything(const FindFunction& find);

// The cache file of the first song that has one; null when there is none.
[[nodiscard]] ArtworkHandle* OpenFirstArtwork(const FindFunction& find);

// Every image of the handle, which stays open.
[[nodiscard]] std::string ReadImages(const FindFunction& find, ArtworkHandle* handle);

// Imports a ringtone with whatever script runner there is; the library's answer.
std::int32_t Import(const FindFunction& find);

}  // namespace tavrel::test
