#include "tests/reference/LiteralProperties.h"

#include <cstdlib>
#include <utility>

namespace tavrel::reference {
namespace {

using Log = std::vector<std::string>;

// The bytes of the number behind the "#", without those that are zero.
std::string BytesOf(const std::string& digits) {
  const bool isHexadecimal = digits[0] == 'x' || digits[0] == 'X';
  const unsigned long long value = isHexadecimal ? std::strtoull(digits.c_str() + 1, nullptr, 16)
                                                 : std::strtoull(digits.c_str(), nullptr, 10);
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) {
    const auto byte = static_cast<unsigned char>(value >> shift);
    if (byte != 0) bytes += static_cast<char>(byte);
  }
  return bytes;
}

// What a reference, from the '&' to the ';', stands for; none when it is none.
std::optional<std::string> Replacement(const std::string& reference) {
  const std::pair<const char*, const char*> kNamed[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}, {"&apos;", "'"}, {"&quot;", "\""}};
  for (const auto& [name, replacement] : kNamed) {
    if (reference == name) return replacement;
  }
  if (reference.size() < 4 || reference[1] != '#') return std::nullopt;
  return BytesOf(reference.substr(2));
}

// As the file has it; none for an element without a text, and for the kinds that are none.
std::optional<std::string> SourceOf(const TBXMLElement* value) {
  const std::string type = value->name == nullptr ? "" : value->name;
  if (type == "true" || type == "false") return type;
  if (type == "data" || type == "array" || type == "dict") return std::nullopt;
  if (value->text == nullptr) return std::nullopt;
  return value->text;
}

std::string KeyOf(const TBXMLElement* key, Log& log) {
  return DecodeLiterally(key->text == nullptr ? "" : key->text, log);
}

}  // namespace

std::string DecodeLiterally(const std::string& source, Log& log) {
  std::string decoded;
  for (std::size_t at = 0; at < source.size();) {
    if (source[at] != '&') {
      decoded += source[at++];
      continue;
    }
    const std::size_t end = source.find(';', at);
    if (end == std::string::npos) {
      log.push_back("XML text \"" + source + "\" Escaping has no ending");
      return decoded;
    }
    const auto replacement = Replacement(source.substr(at, end + 1 - at));
    if (!replacement) {
      log.push_back("XML text \"" + source.substr(at) + "\" Escaping has no numeric");
      return decoded;
    }
    decoded += *replacement;
    at = end + 1;
  }
  return decoded;
}

std::vector<LiteralPair> ReadPairsLiterally(const TBXMLElement* dict, Log& log) {
  std::vector<LiteralPair> pairs;
  const TBXMLElement* key = dict == nullptr ? nullptr : dict->firstChild;
  while (key != nullptr && key->nextSibling != nullptr) {
    const TBXMLElement* value = key->nextSibling;
    LiteralPair pair{KeyOf(key, log), SourceOf(value), value->name == nullptr ? "" : value->name};
    if (pair.text) pair.text = DecodeLiterally(*pair.text, log);
    pairs.push_back(pair);
    key = value->nextSibling;
  }
  return pairs;
}

std::optional<std::string> ReadTextLiterally(const TBXMLElement* dict, const std::string& wanted,
                                             Log& log) {
  Log unheard;
  const TBXMLElement* key = dict == nullptr ? nullptr : dict->firstChild;
  while (key != nullptr && key->nextSibling != nullptr) {
    const TBXMLElement* value = key->nextSibling;
    if (KeyOf(key, unheard) == wanted) {
      const auto source = SourceOf(value);
      return source ? std::optional(DecodeLiterally(*source, log)) : std::nullopt;
    }
    key = value->nextSibling;
  }
  return std::nullopt;
}

}  // namespace tavrel::reference
