// The library file of a home folder.
#pragma once

class TBXML;

namespace tavrel {

// The parsed library file below `home`, owned by the caller; one line goes to the system log and the
// result is none when it cannot be used, or `home` is none.
[[nodiscard]] TBXML* OpenLibraryFile(const char* home) noexcept;

}  // namespace tavrel
