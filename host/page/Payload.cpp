#include "host/page/Payload.h"

#include <libdeflate.h>

#include <algorithm>
#include <future>
#include <memory>
#include <new>
#include <utility>

#include "host/output/Json.h"
#include "host/page/Html.h"
#include "host/page/InBackground.h"
#include "host/page/PayloadJson.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kLengthSize = 4;

// Lowest byte first.
std::string BytesOf(std::uint32_t number) {
  std::string bytes;
  for (unsigned shift = 0; shift < 8 * kLengthSize; shift += 8) {
    bytes += static_cast<char>(number >> shift & 0xFF);
  }
  return bytes;
}

class Writer {
 public:
  explicit Writer(std::size_t songs) : json_("{\"songs\":" + std::to_string(songs)) {}

  void Columns(const std::vector<PageColumn>& columns) {
    json_ += ",\"columns\":[";
    bool isFirst = true;
    for (const PageColumn& column : columns) {
      if (column.json.empty()) continue;
      if (!isFirst) json_ += ",\n";
      isFirst = false;
      EndText();
      texts_.push_back(column.json);
      bytes_.push_back(column.packed.bytes);
    }
    json_ += ']';
  }

  void Albums(const PageContents& contents, const CoverPlaces& covers) {
    const std::vector<PageAlbum>& albums = contents.albums;
    json_ += ",\n\"albums\":{\"count\":" + std::to_string(albums.size());
    AppendTexts(json_, "titles", albums.size(),
                [&albums](std::size_t i) -> std::string_view { return albums[i].title; });
    AppendTexts(json_, "artists", albums.size(),
                [&albums](std::size_t i) -> std::string_view { return albums[i].artist; });
    Numbers(contents.packedAlbums);
    json_ += "},\n\"covers\":{\"side\":" + std::to_string(covers.side) +
             ",\"columns\":" + std::to_string(covers.columns) +
             ",\"perPicture\":" + std::to_string(covers.perPicture);
    Numbers(covers.numbers);
    json_ += '}';
  }

  void Playlists(const std::vector<PagePlaylist>& playlists) {
    json_ += ",\n\"playlists\":[";
    for (const PagePlaylist& playlist : playlists) {
      if (json_.back() != '[') json_ += ",\n";
      json_ += "{\"name\":";
      AppendJsonText(json_, playlist.name);
      json_ += ",\"id\":";
      AppendJsonText(json_, playlist.id);
      json_ += ",\"type\":\"" + std::string(playlist.type) +
               "\",\"depth\":" + std::to_string(playlist.depth) +
               ",\"songs\":" + std::to_string(playlist.songs.size());
      Numbers(playlist.songs);
      json_ += '}';
    }
    json_ += ']';
  }

  [[nodiscard]] Payload Finish() {
    json_ += '}';
    EndText();
    std::size_t length = 0;
    for (const std::string_view text : texts_) length += text.size();
    payload_.Append(payload_.Keep(BytesOf(static_cast<std::uint32_t>(length))));
    for (const std::string_view text : texts_) payload_.Append(text);
    for (const std::string_view bytes : bytes_) payload_.Append(bytes);
    return std::move(payload_);
  }

 private:
  void EndText() { texts_.push_back(payload_.Keep(std::exchange(json_, {}))); }

  // packed: borrowed.
  void Numbers(const PackedNumbers& packed) {
    AppendNumbers(json_, packed);
    bytes_.push_back(packed.bytes);
  }
  // What is packed here is kept.
  void Numbers(const std::vector<std::int64_t>& numbers) {
    PackedNumbers packed = Pack(numbers);
    AppendNumbers(json_, packed);
    bytes_.push_back(payload_.Keep(std::move(packed.bytes)));
  }

  Payload payload_;
  std::string json_;                     // behind the texts
  std::vector<std::string_view> texts_;  // of the JSON text
  std::vector<std::string_view> bytes_;  // that stand behind it
};

// More than processors, so that none waits long for another at the end: texts take twice as long as numbers.
constexpr std::size_t kParts = 8;

// Level 6 takes more than twice as long for a twenty-fifth less.
constexpr int kLevel = 1;

std::string CompressedText(std::string_view bytes) {
  const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
      libdeflate_alloc_compressor(kLevel), &libdeflate_free_compressor);
  if (!compressor) throw std::bad_alloc();
  const std::size_t room = libdeflate_gzip_compress_bound(compressor.get(), bytes.size());
  const auto file = std::make_unique_for_overwrite<char[]>(room);
  const std::size_t size =
      libdeflate_gzip_compress(compressor.get(), bytes.data(), bytes.size(), file.get(), room);
  return Base64Text({file.get(), size});
}

}  // namespace

std::string Payload::Part(std::size_t from, std::size_t size) const {
  std::string part;
  part.reserve(std::min(size, size_ - std::min(from, size_)));
  for (std::string_view piece : pieces_) {
    const std::size_t before = std::min(from, piece.size());
    from -= before;
    piece.remove_prefix(before);
    part += piece.substr(0, size - part.size());
  }
  return part;
}

Payload MakePayload(const PageContents& contents, const CoverPlaces& covers) {
  Writer writer(contents.songs);
  writer.Columns(contents.columns);
  writer.Albums(contents, covers);
  writer.Playlists(contents.playlists);
  return writer.Finish();
}

void AppendCompressed(std::string& text, const Payload& payload) {
  const std::size_t size = payload.Size() / kParts + 1;
  std::vector<std::future<std::string>> parts;
  for (std::size_t from = 0; from < payload.Size(); from += size) {
    parts.push_back(
        InBackground([&payload, from, size] { return CompressedText(payload.Part(from, size)); }));
  }
  for (std::future<std::string>& part : parts) {
    text += part.get();
    text += ' ';
  }
  if (!parts.empty()) text.pop_back();
}

}  // namespace tavrel::host
