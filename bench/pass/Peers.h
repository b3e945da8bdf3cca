// The parsers that the pass is measured beside, each with its cheapest settings. Both take their
// memory from a region that stays resident.
#pragma once

#include <cstddef>
#include <string>

namespace tavrel::bench {

// A program to measure. It builds a tree of the zero-terminated text, inside of it, and gives the
// tree back. Result: the seconds that building took. Failures are exceptions.
using TimedPass = double (*)(char* text, std::size_t length);

struct Peer {
  std::string name;
  std::string version;
  TimedPass run;  // null: it was not there when this was built
};

// Reserves the region; pages become resident when they are first written.
void ReservePeerMemory(std::size_t bytes);

[[nodiscard]] Peer Rapidxml();
[[nodiscard]] Peer Pugixml();

}  // namespace tavrel::bench
