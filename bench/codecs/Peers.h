// What the codecs are measured beside. Failures are exceptions.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrel::bench {

// Whether OpenSSL was there when this was built; without it the functions below must not be called.
bool HasOpenSsl() noexcept;
std::string OpenSslVersion();

// EVP_EncodeBlock. `text` has room for four characters for every three bytes, and a zero byte.
void EncodeWithOpenSsl(std::string_view bytes, char* text);
// EVP_DecodeBlock, which reads text without line breaks only. Both have room for three bytes for
// every four characters.
void DecodeWithOpenSsl(std::string_view text, char* bytes);
// EVP_DecodeUpdate, which also reads lines.
void DecodeLinesWithOpenSsl(std::string_view text, char* bytes);

// One call of zlib's inflate() into a buffer that is known to be large enough.
// Result: how many bytes there are.
std::size_t InflateWithZlib(std::string_view stream, char* bytes, std::size_t room);
// zlib into a zero-filled output that grows by half of the input, and is copied in the end.
std::string InflateGrowing(std::string_view stream);

}  // namespace tavrel::bench
