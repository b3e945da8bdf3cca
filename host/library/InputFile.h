// Files that the user names.
#pragma once

#include <string>

namespace tavrel::host {

// A file that is not there, or that is a folder, is a Failure.
void RequireFile(const std::string& file);

}  // namespace tavrel::host
