// The system log: standard error, one line per message, as "time program[pid] text".
#pragma once

#include <initializer_list>
#include <string_view>

namespace tavrel::system {

// Writes the pieces, one behind the other, as one message. Pieces are texts, never formats; a line
// feed is added unless the message ends with one. Allocates nothing.
void Log(std::initializer_list<std::string_view> pieces) noexcept;

}  // namespace tavrel::system
