// Adding a ringtone to iTunes: a script makes iTunes play the file and then sends it Command-L.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "library/State.h"

namespace tavrel {

// The script for a file. The path stands in it as given: a double quote, a backslash or a line
// break in it changes the script. May throw std::bad_alloc.
[[nodiscard]] std::string RingtoneScript(std::string_view path);

// As AppendRingtone(); a null path gives -1 here, after a message of its own.
// state: whose ringtone playlist the file joins; may be none.
std::int32_t ImportRingtone(const LibraryState* state, const char* path) noexcept;

}  // namespace tavrel
