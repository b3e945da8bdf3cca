// Showing a file to the user with the program that the desktop has for it.
#pragma once

#include <string>

namespace tavrel::host {

// Hands the file over and does not wait until it is closed. False when there is no desktop, or none that
// takes it.
[[nodiscard]] bool OpenForUser(const std::string& path);

}  // namespace tavrel::host
