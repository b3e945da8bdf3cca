#include "codecs/Base64Coding.h"

#include <algorithm>
#include <array>
#include <limits>

#include "system/HugePages.h"
#include "text/Ascii.h"

namespace tavrel {
namespace {

using system::ByteBuffer;
using system::ZeroedBlock;

// The characters on a line are counted in fours by a signed 16-bit number, which goes on from
// 32,764 to -32,768 and so never reaches a larger line length. Kept: such a length gives no line
// breaks.
constexpr std::uint32_t kLongestLine = std::numeric_limits<std::int16_t>::max() / 4 * 4;

// Text is made in pieces of about this size, so that the zeroes of a growing string are written
// over while they are still in the nearest cache.
constexpr std::size_t kPieceGroups = 4096;

// `groups` groups make a line; `lineEnd` characters stand behind it.
struct Lines {
  std::size_t groups;
  std::size_t lineEnd;
};

constexpr Lines LinesOf(std::uint32_t lineLength) noexcept {
  if (lineLength == 0 || lineLength > kLongestLine) return {kPieceGroups, 0};
  return {(std::size_t{lineLength} + 3) / 4, 1};
}

// A last group of one or two bytes is padded to a whole one.
constexpr std::size_t GroupCount(std::size_t size) noexcept {
  return size / 3 + (size % 3 != 0);
}

constexpr std::size_t EncodedLength(std::size_t size, Lines lines) noexcept {
  const std::size_t groups = GroupCount(size);
  return groups * 4 + groups / lines.groups * lines.lineEnd;
}

// Encodes all of `size` bytes without a line break. Result: the end of the text.
char* EncodeLine(const std::uint8_t* bytes, std::size_t size, char* text,
                 EncodeBlocks encode) noexcept {
  std::size_t at = encode(bytes, size, text);
  text += at / 3 * 4;
  for (; at < size; at += 3, text += 4) {
    const std::size_t left = size - at;
    const unsigned first = bytes[at];
    const unsigned second = left > 1 ? bytes[at + 1] : 0U;
    const unsigned third = left > 2 ? bytes[at + 2] : 0U;
    text[0] = encodingTable[first >> 2];
    text[1] = encodingTable[(first & 0x03U) << 4 | second >> 4];
    text[2] = left > 1 ? encodingTable[(second & 0x0FU) << 2 | third >> 6] : '=';
    text[3] = left > 2 ? encodingTable[third & 0x3FU] : '=';
  }
  return text;
}

void EncodeLines(const std::uint8_t* bytes, std::size_t size, Lines lines, char* text,
                 EncodeBlocks encode) noexcept {
  while (size > 0) {
    const std::size_t lineBytes = std::min(size, lines.groups * 3);
    text = EncodeLine(bytes, lineBytes, text, encode);
    // A full line ends with a line feed, also when nothing follows.
    if (GroupCount(lineBytes) == lines.groups && lines.lineEnd > 0) *text++ = '\n';
    bytes += lineBytes;
    size -= lineBytes;
  }
}

bool IsAlphabet(char character) noexcept {
  return decodingTable[static_cast<unsigned char>(character)] >= 0;
}

// Decodes a character at a time, by the rules.
class Decoder {
 public:
  explicit Decoder(std::uint8_t* bytes) noexcept : start(bytes), end(bytes) {}

  // Takes characters from the front of a text that is not empty, up to where whole groups may begin
  // again. False when the decoding is over: then '=' or a character outside ASCII stands at the
  // front.
  bool TakeUpToGroup(std::string_view& text) noexcept {
    do {
      if (!Take(static_cast<unsigned char>(text.front()))) return false;
      text.remove_prefix(1);
    } while (!text.empty() && (filled > 0 || !IsAlphabet(text.front())));
    return true;
  }

  [[nodiscard]] std::uint8_t* End() const noexcept { return end; }
  [[nodiscard]] std::size_t Length() const noexcept {
    return static_cast<std::size_t>(end - start);
  }
  // Of groups that were decoded in bulk.
  void Skip(std::size_t bytes) noexcept { end += bytes; }

 private:
  bool Take(unsigned char character) noexcept {
    const std::int8_t value = decodingTable[character];
    if (value < 0) {
      if (character == '=') Finish();
      return character != '=' && character < 0x80;
    }
    group[filled++] = static_cast<unsigned char>(value);
    if (filled == group.size()) Emit(3);
    return true;
  }

  // Kept: a single character before the '=' still gives a byte. Its two lower bits come from the
  // group's second position, where the group before left the bits 0 and 1 of its first byte; zero
  // when there was no group before.
  void Finish() noexcept {
    if (filled == 1) group[1] = Length() < 3 ? 0U : (end[-3] & 0x03U) << 4;
    if (filled > 0) Emit(filled == 3 ? 2 : 1);
  }

  void Emit(std::size_t count) noexcept {
    const unsigned joined = group[0] << 18 | group[1] << 12 | group[2] << 6 | group[3];
    for (unsigned shift = 16; count > 0; --count, shift -= 8) {
      *end++ = static_cast<std::uint8_t>(joined >> shift);
    }
    filled = 0;
  }

  std::uint8_t* start;
  std::uint8_t* end;
  std::array<unsigned, 4> group{};
  std::size_t filled = 0;
};

// Of "\n" or "\r\n" at the front of `text`; 0 for anything else.
std::size_t LineBreakLength(std::string_view text) noexcept {
  if (text.starts_with('\n')) return 1;
  return text.starts_with("\r\n") ? 2 : 0;
}

}  // namespace

std::string EncodeBase64(std::string_view bytes, std::uint32_t lineLength,
                         system::InstructionSet set) {
  const Lines lines = LinesOf(lineLength);
  const std::size_t pieceBytes =
      std::max<std::size_t>(1, kPieceGroups / lines.groups) * lines.groups * 3;
  const EncodeBlocks encode = BlocksFor(set).encode;
  std::string text;
  text.reserve(EncodedLength(bytes.size(), lines));
  system::PreferHugePages(text.data(), text.capacity());
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, pieceBytes);
    const std::size_t before = text.size();
    text.resize(before + EncodedLength(piece.size(), lines));
    EncodeLines(reinterpret_cast<const std::uint8_t*>(piece.data()), piece.size(), lines,
                text.data() + before, encode);
    bytes.remove_prefix(piece.size());
  }
  return text;
}

std::optional<std::size_t> DecodeBase64Into(std::uint8_t* bytes, std::string_view text,
                                            system::InstructionSet set) noexcept {
  const DecodeBlocks decode = BlocksFor(set).decode;
  Decoder decoder(bytes);
  std::size_t line = text.size();
  while (!text.empty()) {
    // Lines are mostly as long as the line before. Told so, the blocks do not run into the line
    // break, and going on by what was expected, the processor need not wait for what was found.
    const std::size_t expected = std::min(line, text.size());
    const std::size_t taken = decode(text.data(), expected, text.size(), decoder.End());
    decoder.Skip(taken / 4 * 3);
    const std::size_t lineBreak = taken == expected ? LineBreakLength(text.substr(expected)) : 0;
    if (lineBreak > 0) {
      text.remove_prefix(expected + lineBreak);
      continue;
    }
    text.remove_prefix(taken);
    line = taken < expected ? taken : text.size();
    // What follows the end of the decoding has no influence, except that a character outside ASCII
    // anywhere makes the whole text count as empty.
    if (!text.empty() && !decoder.TakeUpToGroup(text)) {
      return text::IsAscii(text) ? std::optional(decoder.Length()) : std::nullopt;
    }
  }
  return decoder.Length();
}

ByteBuffer DecodeBase64(std::string_view text, system::InstructionSet set) noexcept {
  ZeroedBlock block = system::AllocateBlock(DecodingRoom(text.size()));
  if (block.address == nullptr) return {};
  auto* bytes = reinterpret_cast<std::uint8_t*>(block.address);
  const std::size_t length = DecodeBase64Into(bytes, text, set).value_or(0);
  system::TrimBlock(block, length);
  return ByteBuffer::Adopt(block, length);
}

}  // namespace tavrel
