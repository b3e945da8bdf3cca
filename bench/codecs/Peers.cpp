#include "bench/codecs/Peers.h"

#include <zlib.h>

#include <algorithm>
#include <stdexcept>

#include "bench/support/Require.h"

#if defined(TAVREL_HAS_OPENSSL)
#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <memory>
#endif

namespace tavrel::bench {
namespace {

// Inflates into `output`, which `grow` enlarges whenever it is full.
template <typename Grow>
std::size_t Inflate(std::string_view stream, std::string_view output, Grow&& grow) {
  z_stream state{};
  state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stream.data()));
  state.avail_in = static_cast<uInt>(stream.size());
  Require(inflateInit2(&state, 15 + 32) == Z_OK, "zlib cannot be set up");
  int result = Z_OK;
  while (result == Z_OK) {
    if (state.total_out == output.size()) output = grow();
    state.next_out = reinterpret_cast<Bytef*>(const_cast<char*>(output.data())) + state.total_out;
    state.avail_out = static_cast<uInt>(output.size() - state.total_out);
    result = inflate(&state, Z_SYNC_FLUSH);
  }
  const std::size_t made = state.total_out;
  inflateEnd(&state);
  Require(result == Z_STREAM_END, "zlib cannot read the stream");
  return made;
}

}  // namespace

std::size_t InflateWithZlib(std::string_view stream, char* bytes, std::size_t room) {
  const auto refuse = []() -> std::string_view {
    throw std::runtime_error("the buffer for zlib is too small");
  };
  return Inflate(stream, {bytes, room}, refuse);
}

std::string InflateGrowing(std::string_view stream) {
  const std::size_t half = stream.size() / 2;
  std::string output(stream.size() + half, '\0');
  const std::size_t made = Inflate(stream, output, [&]() -> std::string_view {
    std::string grown(output.size() + half, '\0');
    std::copy(output.begin(), output.end(), grown.begin());
    output = std::move(grown);
    return output;
  });
  return output.substr(0, made);
}

#if defined(TAVREL_HAS_OPENSSL)

namespace {

const unsigned char* Unsigned(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* Unsigned(char* bytes) {
  return reinterpret_cast<unsigned char*>(bytes);
}

}  // namespace

bool HasOpenSsl() noexcept {
  return true;
}

std::string OpenSslVersion() {
  return OpenSSL_version(OPENSSL_VERSION);
}

void EncodeWithOpenSsl(std::string_view bytes, char* text) {
  Require(EVP_EncodeBlock(Unsigned(text), Unsigned(bytes), static_cast<int>(bytes.size())) > 0,
          "OpenSSL cannot encode");
}

void DecodeWithOpenSsl(std::string_view text, char* bytes) {
  Require(EVP_DecodeBlock(Unsigned(bytes), Unsigned(text), static_cast<int>(text.size())) > 0,
          "OpenSSL cannot decode");
}

void DecodeLinesWithOpenSsl(std::string_view text, char* bytes) {
  const std::unique_ptr<EVP_ENCODE_CTX, void (*)(EVP_ENCODE_CTX*)> state(EVP_ENCODE_CTX_new(),
                                                                         EVP_ENCODE_CTX_free);
  Require(state != nullptr, "OpenSSL has no memory");
  EVP_DecodeInit(state.get());
  int made = 0;
  int last = 0;
  Require(EVP_DecodeUpdate(state.get(), Unsigned(bytes), &made, Unsigned(text),
                           static_cast<int>(text.size())) >= 0 &&
              EVP_DecodeFinal(state.get(), Unsigned(bytes) + made, &last) > 0,
          "OpenSSL cannot decode lines");
}

#else

bool HasOpenSsl() noexcept {
  return false;
}

std::string OpenSslVersion() {
  return "no OpenSSL";
}

void EncodeWithOpenSsl(std::string_view, char*) {
  Require(HasOpenSsl(), "built without OpenSSL");
}

void DecodeWithOpenSsl(std::string_view, char*) {
  Require(HasOpenSsl(), "built without OpenSSL");
}

void DecodeLinesWithOpenSsl(std::string_view, char*) {
  Require(HasOpenSsl(), "built without OpenSSL");
}

#endif

}  // namespace tavrel::bench
