#include "host/page/Payload.h"

#include <zlib.h>

#include <new>

#include "host/output/Json.h"

namespace tavrel::host {
namespace {

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
    for (unsigned shift = 0; shift < 32; shift += 8) {
      all += static_cast<char>(static_cast<std::uint32_t>(head.size()) >> shift & 0xFF);
    }
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

}  // namespace

std::string MakePayload(const PageContents& contents, const CoverPlaces& covers) {
  Writer writer;
  writer.Columns(contents.columns);
  writer.Albums(contents, covers);
  writer.Playlists(contents.playlists);
  return writer.Finish(contents.songs);
}

std::string Compressed(const std::string& bytes) {
  constexpr int kGzip = 16 + MAX_WBITS;
  z_stream stream{};
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzip, 9, Z_DEFAULT_STRATEGY) !=
      Z_OK) {
    throw std::bad_alloc();
  }
  std::string compressed(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(compressed.data());
  stream.avail_out = static_cast<uInt>(compressed.size());
  deflate(&stream, Z_FINISH);
  compressed.resize(stream.total_out);
  deflateEnd(&stream);
  return compressed;
}

}  // namespace tavrel::host
