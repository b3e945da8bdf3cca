// The layout of a cache file. Numbers are unsigned, 32 bits wide, most significant byte first.
//
//   file    0        4        8                28             H
//           | H      | "itch" | 20 bytes, kept | not read ... | block | block | ... up to the end
//
//   block   0        4        8        48       56      60       204      208             B
//           | B      | "item" | 208    | code   | width | height | "data" | the image ... | next
//
// This is the usual layout, in which the core interface takes the image to begin at 208 whatever
// stands at 8. Real caches hold three more, told apart by that number:
//
//   at 8    image at   code at   width   height   "data" at
//   196     196        48        56      60       192
//   208     208        48        56      60       204
//   212     212        48        56      60       204         four more bytes before the image
//   216     216        52        60      64       208         the same
#include "library/artwork/ArtworkReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "system/Files.h"

namespace tavrel {
namespace {

using namespace std::string_view_literals;

// Positions in a block, in bytes.
struct BlockLayout {
  std::uint32_t image;
  std::uint32_t code;
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t dataTag;
};
constexpr BlockLayout kUsual{208, 48, 56, 60, 204};
constexpr BlockLayout kLayouts[] = {
    {196, 48, 56, 60, 192}, kUsual, {212, 48, 56, 60, 204}, {216, 52, 60, 64, 208}};

enum Format : std::int32_t { Png = 0, Jpeg = 1, Argb = 2, Bgra = 3 };
struct Code {
  std::string_view bytes;
  Format format;
};
// The second is 13 with its least significant byte first, unlike every number of the file. Kept.
constexpr Code kUsualCodes[] = {{"PNGf"sv, Png}, {"\x0D\0\0\0"sv, Jpeg}};
constexpr Code kCodes[] = {{"PNGf"sv, Png},       {"\x0D\0\0\0"sv, Jpeg}, {"\0\0\0\x0D"sv, Jpeg},
                           {"\0\0\0\x0E"sv, Png}, {"ARGb"sv, Argb},       {"bGRA"sv, Bgra}};

constexpr std::uint32_t kBlockHeader = 208;
constexpr std::uint32_t kSmallestBlock = 8;  // a length and a tag
constexpr std::size_t kMagic = 4;            // what tells a picture's type
constexpr std::int64_t kLastPosition = std::numeric_limits<std::uint32_t>::max();

std::uint32_t ReadNumber(const char* bytes) noexcept {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) number = number << 8 | static_cast<std::uint8_t>(bytes[i]);
  return number;
}

// The first bytes of a block, as many as any layout needs with the first ones of its image.
struct Block {
  std::array<char, 216 + kMagic> bytes;
  std::int64_t position;

  [[nodiscard]] std::uint32_t Number(std::uint32_t at) const noexcept {
    return ReadNumber(bytes.data() + at);
  }
  [[nodiscard]] std::string_view Tag(std::uint32_t at) const noexcept {
    return {bytes.data() + at, 4};
  }
  [[nodiscard]] std::uint32_t Length() const noexcept { return Number(0); }
  // The same 32 bits with a sign: negative where the block is too short for its header.
  [[nodiscard]] std::int32_t ImageSize(const BlockLayout& layout) const noexcept {
    return static_cast<std::int32_t>(Length() - layout.image);
  }
};

template <std::size_t Count>
std::optional<Format> FormatOfCode(std::string_view code, const Code (&codes)[Count]) noexcept {
  for (const Code& known : codes) {
    if (known.bytes == code) return known.format;
  }
  return std::nullopt;
}

std::optional<Format> FormatOfPicture(std::string_view image) noexcept {
  if (image.starts_with("\x89PNG"sv)) return Png;
  if (image.starts_with("\xFF\xD8\xFF"sv)) return Jpeg;
  return std::nullopt;
}

// Whether the image is as large as raw pixels of its width and height.
bool HasSizeOfPixels(const Block& block, const BlockLayout& layout) noexcept {
  const std::uint64_t pixels =
      std::uint64_t{block.Number(layout.width)} * block.Number(layout.height);
  const std::int32_t size = block.ImageSize(layout);
  return size > 0 && size % 4 == 0 && pixels == static_cast<std::uint64_t>(size) / 4;
}

// The picture's own first bytes decide over the code, which is wrong in real files. Pixels can be
// any bytes, also those that a picture begins with, and are known by their size.
std::optional<Format> FormatOf(const Block& block, const BlockLayout& layout) noexcept {
  const auto byCode = FormatOfCode(block.Tag(layout.code), kCodes);
  const bool isRaw = byCode && (*byCode == Argb || *byCode == Bgra);
  if (isRaw && HasSizeOfPixels(block, layout)) return byCode;
  const std::int32_t size = block.ImageSize(layout);
  const std::size_t known = std::min(kMagic, static_cast<std::size_t>(std::max(size, 0)));
  const auto byPicture = FormatOfPicture({block.bytes.data() + layout.image, known});
  return byPicture ? byPicture : byCode;
}

bool HasTags(const Block& block, const BlockLayout& layout) noexcept {
  return block.Tag(4) == "item" && block.Tag(layout.dataTag) == "data";
}

struct Found {
  const BlockLayout* layout;
  Format format;
};

std::optional<Found> RecogniseUsual(const Block& block) noexcept {
  const auto format = FormatOfCode(block.Tag(kUsual.code), kUsualCodes);
  if (!HasTags(block, kUsual) || !format) return std::nullopt;
  return Found{&kUsual, *format};
}

std::optional<Found> RecogniseEvery(const Block& block) noexcept {
  for (const BlockLayout& layout : kLayouts) {
    if (block.Number(8) != layout.image || !HasTags(block, layout)) continue;
    if (const auto format = FormatOf(block, layout)) return Found{&layout, *format};
  }
  return RecogniseUsual(block);
}

// What a block holds; none when its image is not known, or lies out of reach.
std::optional<FoundImage> ImageIn(const Block& block, ArtworkLayouts layouts) noexcept {
  const auto found =
      layouts == ArtworkLayouts::Every ? RecogniseEvery(block) : RecogniseUsual(block);
  if (!found || block.position + found->layout->image > kLastPosition) return std::nullopt;
  const BlockLayout& layout = *found->layout;
  return FoundImage{found->format, static_cast<std::int32_t>(block.Number(layout.width)),
                    static_cast<std::int32_t>(block.Number(layout.height)), block.ImageSize(layout),
                    static_cast<std::uint32_t>(block.position + layout.image)};
}

// Where the block behind begins; negative when there is none. Each begins behind the one before it
// and within the reach of 32 bits, so that the walk ends. A length is taken with its sign, and so leads
// back when it is 2^31 or more.
std::int64_t NextPosition(const Block& block) noexcept {
  const std::int64_t next = block.position + kBlockHeader + block.ImageSize(kUsual);
  const bool goesOn = block.Length() >= kSmallestBlock && next > block.position;
  return goesOn && next <= kLastPosition ? next : -1;
}

}  // namespace

std::optional<std::int64_t> ReadArtworkHeader(int file, ArtworkHeader& header) noexcept {
  if (system::ReadAt(file, 0, &header, sizeof(header)) < sizeof(header)) return std::nullopt;
  char length[4];
  std::memcpy(length, &header.length, sizeof(length));
  header.length = ReadNumber(length);
  if (std::string_view(header.tag, 4) != "itch") return std::nullopt;
  constexpr std::uint32_t kRead = sizeof(header);
  return std::int64_t{kRead} + static_cast<std::int32_t>(header.length - kRead);
}

std::optional<FoundImage> ArtworkReader::Next() noexcept {
  while (position_ >= 0) {
    Block block{{}, position_};
    const bool every = layouts_ == ArtworkLayouts::Every;
    const std::size_t wanted = every ? block.bytes.size() : kBlockHeader;
    const auto at = static_cast<std::uint64_t>(position_);
    const bool isWhole = system::ReadAt(file_, at, block.bytes.data(), wanted) >= kBlockHeader;
    position_ = isWhole ? NextPosition(block) : -1;
    if (!isWhole) break;
    if (const auto image = ImageIn(block, layouts_)) return image;
  }
  return std::nullopt;
}

}  // namespace tavrel
