// The pairs of a property list as the rules state them, step by step and with a new string for everything.
// What visits, and questions for single keys, are compared with.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "xml/Records.h"

namespace tavrel::reference {

struct LiteralPair {
  std::string key;
  std::optional<std::string> text;  // none where there is nothing to show
  std::string type;
};

// A text with its references decoded, up to the first error, which adds its message to `log`.
[[nodiscard]] std::string DecodeLiterally(const std::string& source, std::vector<std::string>& log);

// The pairs of a dictionary, which may be none, in the file's order.
[[nodiscard]] std::vector<LiteralPair> ReadPairsLiterally(const TBXMLElement* dict,
                                                          std::vector<std::string>& log);

// The text of the first pair with that key, of which alone errors are told.
[[nodiscard]] std::optional<std::string> ReadTextLiterally(const TBXMLElement* dict,
                                                           const std::string& key,
                                                           std::vector<std::string>& log);

}  // namespace tavrel::reference
