#include "host/page/Payload.h"

#include <libdeflate.h>

#include <algorithm>
#include <future>
#include <memory>
#include <new>

#include "host/output/Json.h"
#include "host/page/Html.h"

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
      if (isText) {
        Texts("texts", column.texts.TextCount(),
              [&column](std::size_t number) { return column.texts.Text(number); });
      }
      Numbers(isText ? column.texts.Numbers() : column.numbers);
      json_ += '}';
    }
    json_ += ']';
  }

  void Albums(const PageContents& contents, const CoverPlaces& covers) {
    const std::vector<PageAlbum>& albums = contents.albums;
    json_ += ",\n\"albums\":{\"count\":" + std::to_string(albums.size());
    Texts("titles", albums.size(),
          [&albums](std::size_t i) -> std::string_view { return albums[i].title; });
    Texts("artists", albums.size(),
          [&albums](std::size_t i) -> std::string_view { return albums[i].artist; });
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
  // textAt(number): one of so many texts.
  template <typename TextAt>
  void Texts(std::string_view name, std::size_t count, TextAt textAt) {
    json_.append(",\"").append(name).append("\":[");
    for (std::size_t i = 0; i < count; ++i) {
      if (i > 0) json_ += ',';
      AppendJsonText(json_, textAt(i));
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

// More than processors, so that none waits long for another: texts take twice as long as numbers.
constexpr std::size_t kParts = 4;

// Level 6 takes twice as long for a fortieth less.
constexpr int kLevel = 3;

std::string Deflated(std::string_view bytes) {
  const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
      libdeflate_alloc_compressor(kLevel), &libdeflate_free_compressor);
  if (!compressor) throw std::bad_alloc();
  std::string file(libdeflate_gzip_compress_bound(compressor.get(), bytes.size()), '\0');
  file.resize(libdeflate_gzip_compress(compressor.get(), bytes.data(), bytes.size(), file.data(),
                                       file.size()));
  return file;
}

}  // namespace

std::string MakePayload(const PageContents& contents, const CoverPlaces& covers) {
  Writer writer;
  writer.Columns(contents.columns);
  writer.Albums(contents, covers);
  writer.Playlists(contents.playlists);
  return writer.Finish(contents.songs);
}

std::string CompressedText(std::string_view bytes) {
  const std::size_t part = bytes.size() / kParts + 1;
  std::vector<std::future<std::string>> made;
  for (; !bytes.empty(); bytes.remove_prefix(std::min(part, bytes.size()))) {
    made.push_back(std::async(std::launch::async, [piece = bytes.substr(0, part)] {
      return Base64Text(Deflated(piece));
    }));
  }
  std::string text;
  for (std::future<std::string>& one : made) {
    if (!text.empty()) text += ' ';
    text += one.get();
  }
  return text;
}

}  // namespace tavrel::host
