// Decoding of XML character references: every text of the library file passes through here before
// it reaches a host or a comparison.
#pragma once

#include <cstdint>
#include <string_view>

#include "tavrel/tavrel.h"

struct XMLEntity {
  const char* entity;
  const char* replacement;
};

// The named references, searched in this order.
extern "C" TAVREL_API const XMLEntity XMLEntities[5];

namespace tavrel {

// Decodes `source` into `destination`.
// destination: room for `destinationSize` bytes; nothing is written at or behind that size. The
//              text is complete and terminated only if the result is below destinationSize;
//              otherwise the pieces that fitted stand there, unterminated.
// source:      NUL-terminated, borrowed.
// Result: the decoded length in bytes without the terminator. 0, after a line in the system log,
//         for a '&' without a later ';' or one that begins no reference; what was decoded before it
//         stands in `destination`, unterminated. Null arguments give 0. Decoding never makes a text
//         longer.
//
// Kept: a numeric reference is written as the bare non-zero bytes of its value, most significant
// first, and not as UTF-8. Library files use references for ASCII only, which this decodes
// correctly.
std::int32_t DecodeXmlText(char* destination, const char* source,
                           std::int32_t destinationSize) noexcept;

enum class DecodingError { kNone, kNoEnding, kNoNumeric };

struct Decoding {
  std::int32_t length;  // of what was decoded, in bytes, without a terminator
  DecodingError error;
  const char* errorAt;  // the '&' that stopped the decoding
};

// As DecodeXmlText(), without the log line: what was decoded before an error counts as well.
// The arguments must not be null.
[[nodiscard]] Decoding DecodeReferences(char* destination, const char* source,
                                        std::int32_t destinationSize) noexcept;

// Writes the line in the system log that the decoding of `source` calls for; none for one without error.
void LogDecodingError(const Decoding& decoding, const char* source) noexcept;

// Whether `source`, as far as it can be decoded, decodes to `text`. Logs nothing and takes no memory.
[[nodiscard]] bool DecodesTo(const char* source, std::string_view text) noexcept;

// Most texts hold none, and are decoded as they stand.
[[nodiscard]] inline bool HoldsReference(std::string_view source) noexcept {
  return source.find('&') != std::string_view::npos;
}

}  // namespace tavrel
