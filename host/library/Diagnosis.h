// Why the library could not be loaded, and what the user can do about it.
#pragma once

#include <string>

#include "host/output/Failure.h"

namespace tavrel::host {

// Looks at the library file at `path`, as the user named it, after the library has refused it.
// Cost: reads the whole file once in the worst case.
[[nodiscard]] Failure Diagnose(const std::string& path);

}  // namespace tavrel::host
