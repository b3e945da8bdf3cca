#include "host/page/Payload.h"

#include <libdeflate.h>

#include <algorithm>
#include <deque>
#include <future>
#include <memory>
#include <new>

#include "host/output/Json.h"
#include "host/page/Html.h"
#include "host/page/InBackground.h"
#include "host/page/PayloadJson.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kLengthSize = 4;

void AppendNumber(std::string& bytes, std::uint32_t number) {
  for (unsigned shift = 0; shift < 32; shift += 8) {
    bytes += static_cast<char>(number >> shift & 0xFF);
  }
}

// Room for the length of what the JSON text says, that text, and the bytes behind it.
class Writer {
 public:
  Writer(std::size_t songs, std::size_t room) {
    json_.reserve(room);
    json_.append(kLengthSize, '\0').append("{\"songs\":").append(std::to_string(songs));
  }

  void Columns(const std::vector<PageColumn>& columns) {
    json_ += ",\"columns\":[";
    bool isFirst = true;
    for (const PageColumn& column : columns) {
      if (column.json.empty()) continue;
      if (!isFirst) json_ += ",\n";
      isFirst = false;
      json_ += column.json;
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

  [[nodiscard]] std::string Finish() {
    json_ += '}';
    std::string length;
    AppendNumber(length, static_cast<std::uint32_t>(json_.size() - kLengthSize));
    json_.replace(0, kLengthSize, length);
    for (const std::string_view bytes : bytes_) json_ += bytes;
    return std::move(json_);
  }

 private:
  // packed: borrowed.
  void Numbers(const PackedNumbers& packed) {
    AppendNumbers(json_, packed);
    bytes_.push_back(packed.bytes);
  }
  // What is packed here is kept.
  void Numbers(const std::vector<std::int64_t>& numbers) {
    packed_.push_back(Pack(numbers));
    Numbers(packed_.back());
  }

  std::string json_;
  std::vector<std::string_view> bytes_;
  std::deque<PackedNumbers> packed_;
};

// More than processors, so that none waits long for another: texts take twice as long as numbers.
constexpr std::size_t kParts = 4;

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

std::string MakePayload(const PageContents& contents, const CoverPlaces& covers) {
  std::size_t room = contents.packedAlbums.bytes.size();
  for (const PageColumn& column : contents.columns) {
    room += column.json.size() + column.packed.bytes.size();
  }
  Writer writer(contents.songs, room + room / 8);
  writer.Columns(contents.columns);
  writer.Albums(contents, covers);
  writer.Playlists(contents.playlists);
  return writer.Finish();
}

void AppendCompressed(std::string& text, std::string_view bytes) {
  const std::size_t part = bytes.size() / kParts + 1;
  std::vector<std::future<std::string>> made;
  for (; !bytes.empty(); bytes.remove_prefix(std::min(part, bytes.size()))) {
    made.push_back(InBackground([piece = bytes.substr(0, part)] { return CompressedText(piece); }));
  }
  for (std::future<std::string>& one : made) {
    text += one.get();
    text += ' ';
  }
  if (!made.empty()) text.pop_back();
}

}  // namespace tavrel::host
