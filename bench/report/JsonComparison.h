// One JSON text beside another.
#pragma once

#include <string>

namespace tavrel::bench {

// Whether everything in `part` is in `whole`, which may have more members in its objects. Throws what the
// parser throws at what is no JSON.
[[nodiscard]] bool JsonHolds(const std::string& whole, const std::string& part);

}  // namespace tavrel::bench
