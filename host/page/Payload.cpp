#include "host/page/Payload.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <future>
#include <memory>
#include <new>

#include "host/output/Json.h"

namespace tavrel::host {
namespace {

void AppendNumber(std::string& bytes, std::uint32_t number) {
  for (unsigned shift = 0; shift < 32; shift += 8) {
    bytes += static_cast<char>(number >> shift & 0xFF);
  }
}

// What the JSON text says, and the bytes behind it.
class Writer {
 public:
  void Columns(const std::vector<PageColumn>& columns) {
    json_ += ",\"columns\":[";
    bool isFirst = true;
    for (const PageColumn& column : columns) {
      if (!column.IsUsed()) continue;
      if (!isFirst) json_ += ",\n";
      isFirst = false;
      const bool isText = column.kind == ColumnKind::Text;
      json_ += "{\"field\":\"" + std::string(FactsOf(column.field).name) + "\",\"kind\":\"" +
               std::string(KindName(column.kind)) + '"';
      if (isText) Texts("texts", column.texts.Texts());
      Numbers(isText ? column.texts.Numbers() : column.numbers);
      json_ += '}';
    }
    json_ += ']';
  }

  void Albums(const PageContents& contents, const CoverPlaces& covers) {
    std::vector<std::string> titles;
    std::vector<std::string> artists;
    for (const PageAlbum& album : contents.albums) {
      titles.push_back(album.title);
      artists.push_back(album.artist);
    }
    json_ += ",\n\"albums\":{\"count\":" + std::to_string(titles.size());
    Texts("titles", titles);
    Texts("artists", artists);
    Numbers(contents.albumOf);
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

  [[nodiscard]] std::string Finish(std::size_t songs) const {
    const std::string head = "{\"songs\":" + std::to_string(songs) + json_ + "}";
    std::string all;
    all.reserve(4 + head.size() + bytes_.size());
    AppendNumber(all, static_cast<std::uint32_t>(head.size()));
    return all.append(head).append(bytes_);
  }

 private:
  void Texts(std::string_view name, const std::vector<std::string>& texts) {
    json_.append(",\"").append(name).append("\":[");
    for (std::size_t i = 0; i < texts.size(); ++i) {
      if (i > 0) json_ += ',';
      AppendJsonText(json_, texts[i]);
    }
    json_ += ']';
  }

  void Numbers(const std::vector<std::int64_t>& numbers) {
    const PackedNumbers packed = Pack(numbers);
    json_ += ",\"bytes\":" + std::to_string(packed.bytes.size()) +
             ",\"differences\":" + (packed.areDifferences ? "true" : "false");
    bytes_ += packed.bytes;
  }

  std::string json_;
  std::string bytes_;
};

// Method, no name, no time, a system that is not told.
constexpr std::string_view kGzipHead("\x1F\x8B\x08\0\0\0\0\0\0\xFF", 10);
constexpr std::size_t kPiece = std::size_t{1} << 30;  // zlib counts in 32 bits
constexpr std::size_t kWindow = 32768;

std::uint32_t ChecksumOf(std::string_view bytes) {
  const auto* data = reinterpret_cast<const Bytef*>(bytes.data());
  return static_cast<std::uint32_t>(crc32_z(crc32_z(0, nullptr, 0), data, bytes.size()));
}

// One part of the bytes, deflated so that what is made of the next part may follow. What stands before it
// helps, as it would if it were deflated, too.
std::string Deflated(std::string_view bytes, std::size_t from, std::size_t to) {
  z_stream stream{};
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY) !=
      Z_OK) {
    throw std::bad_alloc();
  }
  const std::unique_ptr<z_stream, decltype(&deflateEnd)> owner(&stream, &deflateEnd);
  auto* data = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  const std::size_t window = std::min(from, kWindow);
  if (window > 0) deflateSetDictionary(&stream, data + from - window, static_cast<uInt>(window));
  const bool isLast = to == bytes.size();
  std::string deflated;
  std::array<char, 65536> room;
  for (bool isDone = false; !isDone;) {
    const std::size_t size = std::min(to - from, kPiece);
    stream.next_in = data + from;
    stream.avail_in = static_cast<uInt>(size);
    from += size;
    isDone = from == to;
    const int flush = !isDone ? Z_NO_FLUSH : isLast ? Z_FINISH : Z_SYNC_FLUSH;
    do {
      stream.next_out = reinterpret_cast<Bytef*>(room.data());
      stream.avail_out = static_cast<uInt>(room.size());
      deflate(&stream, flush);
      deflated.append(room.data(), room.size() - stream.avail_out);
    } while (stream.avail_out == 0);
  }
  return deflated;
}

}  // namespace

std::string MakePayload(const PageContents& contents, const CoverPlaces& covers) {
  Writer writer;
  writer.Columns(contents.columns);
  writer.Albums(contents, covers);
  writer.Playlists(contents.playlists);
  return writer.Finish(contents.songs);
}

std::string Compressed(std::string_view bytes) {
  const std::size_t middle = bytes.size() / 2;
  auto first = std::async(std::launch::async, [=] { return Deflated(bytes, 0, middle); });
  const std::string second = Deflated(bytes, middle, bytes.size());
  const std::uint32_t sum = ChecksumOf(bytes);
  std::string file(kGzipHead);
  file.append(first.get()).append(second);
  AppendNumber(file, sum);
  AppendNumber(file, static_cast<std::uint32_t>(bytes.size()));
  return file;
}

}  // namespace tavrel::host
