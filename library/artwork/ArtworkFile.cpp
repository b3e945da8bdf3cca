// The layout of a cache file. Numbers are unsigned, 32 bits wide, most significant byte first.
//
//   file    0        4        8                28             H
//           | H      | "itch" | 20 bytes, kept | not read ... | block | block | ... up to the end
//
//   block   0        4        8        48       56      60       204      208             B
//           | B      | "item" | 208    | code   | width | height | "data" | the image ... | next
//
// This is the usual layout; OpenArtwork takes the image to begin at 208 whatever stands at 8 (kept).
// Real caches hold three more, told apart by that number:
//
//   at 8    image at   code at   width   height   "data" at
//   196     196        48        56      60       192
//   208     208        48        56      60       204
//   212     212        48        56      60       204         four more bytes before the image
//   216     216        52        60      64       208         the same
#include "library/artwork/ArtworkFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "agent/Implementations.h"
#include "library/TableAppender.h"
#include "system/Files.h"
#include "system/Memory.h"

using namespace tavrel;

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

// False when memory is exhausted.
bool Record(const Block& block, const Found& found,
            tavrel::TableAppender<ArtworkImage>& images) noexcept {
  if (!images.Reserve()) return false;
  auto* image = static_cast<ArtworkImage*>(system::AllocateZeroed(sizeof(ArtworkImage)));
  if (image == nullptr) return false;
  image->info.format = found.format;
  image->info.width = static_cast<std::int32_t>(block.Number(found.layout->width));
  image->info.height = static_cast<std::int32_t>(block.Number(found.layout->height));
  image->info.dataSize = block.ImageSize(*found.layout);
  image->fileOffset = static_cast<std::uint32_t>(block.position + found.layout->image);
  images.Append(image);
  return true;
}

// Each block begins behind the one before it and within the reach of 32 bits, so the walk ends. A
// length is taken with its sign, and so leads back when it is 2^31 or more.
void ListImages(ArtworkHandle& handle, std::int64_t position, tavrel::ArtworkLayouts layouts) {
  tavrel::TableAppender<ArtworkImage> images(handle.images, handle.capacity, handle.count);
  const int file = tavrel::ArtworkDescriptor(handle);
  const bool every = layouts == tavrel::ArtworkLayouts::Every;
  while (position >= 0 && position <= kLastPosition) {
    Block block{{}, position};
    const std::size_t wanted = every ? block.bytes.size() : kBlockHeader;
    const auto at = static_cast<std::uint64_t>(position);
    if (system::ReadAt(file, at, block.bytes.data(), wanted) < kBlockHeader) return;
    const auto found = every ? RecogniseEvery(block) : RecogniseUsual(block);
    const bool inReach = found && position + found->layout->image <= kLastPosition;
    if (inReach && !Record(block, *found, images)) return;
    const std::int64_t next = position + kBlockHeader + block.ImageSize(kUsual);
    if (block.Length() < kSmallestBlock || next <= position) return;
    position = next;
  }
}

// Result: where the first block begins, before the file's start for some lengths; none when the
// file does not begin with a header.
std::optional<std::int64_t> ReadHeader(ArtworkHandle& handle) noexcept {
  ArtworkHeader& header = handle.header;
  const int file = tavrel::ArtworkDescriptor(handle);
  if (system::ReadAt(file, 0, &header, sizeof(header)) < sizeof(header)) return std::nullopt;
  char length[4];
  std::memcpy(length, &header.length, sizeof(length));
  header.length = ReadNumber(length);
  if (std::string_view(header.tag, 4) != "itch") return std::nullopt;
  constexpr std::uint32_t kRead = sizeof(header);
  return std::int64_t{kRead} + static_cast<std::int32_t>(header.length - kRead);
}

}  // namespace

ArtworkHandle* tavrel::OpenArtworkHandle(const char* path, ArtworkLayouts layouts) noexcept {
  auto* handle = static_cast<ArtworkHandle*>(system::AllocateZeroed(sizeof(ArtworkHandle)));
  if (handle == nullptr) return nullptr;
  handle->file = system::OpenRegularFile(path).Release() + 1;
  const auto firstBlock = handle->file == 0 ? std::nullopt : ReadHeader(*handle);
  if (!firstBlock) {
    CloseArtworkImp(handle);
    return nullptr;
  }
  ListImages(*handle, *firstBlock, layouts);
  return handle;
}
