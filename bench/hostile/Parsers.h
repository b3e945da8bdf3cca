// What hostile texts are given to. Each reads the whole text, which it leaves as it is, and makes of
// it what it makes of any other; only that is timed, not the giving back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrel::bench {

struct Parsed {
  double seconds;  // of the processor, the system's work for us included
  bool accepted;
};

struct Parser {
  std::string name;
  Parsed (*parse)(std::string_view text);
};

// Our document, from text to tree. It accepts everything.
[[nodiscard]] Parser OurDocument();

// Those of the peers that were there when this was built: pugixml, which keeps the contents of
// CDATA sections as we do, and expat with handlers that do nothing.
[[nodiscard]] std::vector<Parser> Peers();

}  // namespace tavrel::bench
