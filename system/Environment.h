// Variables of the environment that the library follows.
#pragma once

namespace tavrel::system {

// The variable's value, borrowed from the environment; null when it is not set, and in a program that runs
// with other rights than those of its caller (setuid, setgid, or whatever else has
// the system start it as such): what that one has set must not lead it.
[[nodiscard]] const char* TrustedVariable(const char* name) noexcept;

}  // namespace tavrel::system
