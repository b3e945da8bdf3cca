// Adding a ringtone to iTunes: a script makes iTunes play the file and then sends it Command-L.
#pragma once

#include <string>
#include <string_view>

namespace tavrel {

// The script for a file. The path stands in it as given: a double quote, a backslash or a line
// break in it changes the script. May throw std::bad_alloc.
[[nodiscard]] std::string RingtoneScript(std::string_view path);

}  // namespace tavrel
