#include "host/page/PageFile.h"

#include <tavrel/tavrel.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string_view>
#include <utility>

#include "host/page/FirstScreen.h"
#include "host/page/Html.h"
#include "host/page/InBackground.h"
#include "host/page/PageSources.h"
#include "host/page/Words.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kOpening = "<!doctype html>\n<!-- a page of tavrel's -->\n";

using Parts = std::map<std::string_view, std::string>;

// The markup with each "{{name}}" replaced by the part of that name, or by the word of the interface. The data, which
// are nearly all of it, are a piece of their own.
std::vector<std::string> Fill(std::string_view markup, Parts parts, const Words& words) {
  std::vector<std::string> pieces(1);
  while (true) {
    const std::size_t open = markup.find("{{");
    const std::size_t close = markup.find("}}", open);
    if (open == std::string_view::npos || close == std::string_view::npos) break;
    pieces.back() += markup.substr(0, open);
    const std::string_view name = markup.substr(open + 2, close - open - 2);
    const auto part = parts.find(name);
    if (name == "data") {
      pieces.push_back(std::move(part->second));
      pieces.emplace_back();
    } else {
      pieces.back() += part != parts.end() ? part->second : Escaped(words.Of(name));
    }
    markup.remove_prefix(close + 2);
  }
  pieces.back() += markup;
  return pieces;
}

// What no script engine runs: the type says that these are data.
std::string StartOfData(std::string_view id, std::string_view form) {
  std::string start = "<script type=\"application/octet-stream\" id=\"";
  return start.append(id).append("\" data-form=\"").append(form).append("\">");
}

constexpr std::string_view kEndOfData = "</script>\n";

std::string SongsBlock(const PageContents& contents, const CoverPlaces& places) {
  const Payload payload = MakePayload(contents, places);
  const bool isShort = contents.songs < kFewSongs;
  std::string block = StartOfData("songs-data", isShort ? "plain" : "gzip");
  block.reserve(payload.Size());
  if (isShort) {
    block += Base64Text(payload.Part(0, payload.Size()));
  } else {
    AppendCompressed(block, payload);
  }
  return block.append(kEndOfData);
}

void AppendCovers(std::string& blocks, const std::vector<std::string>& pictures) {
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    blocks += StartOfData("covers-" + std::to_string(i), "jpeg");
    blocks += Base64Text(pictures[i]);
    blocks += kEndOfData;
  }
}

}  // namespace

std::vector<std::string> MakePage(const PageContents& contents, const PageCovers& covers,
                                  const std::string& title) {
  const PageSources sources = SourcesOfPage();
  const Words words(sources.words);
  // What takes longest, beside the rest.
  auto songs = InBackground([&] { return SongsBlock(contents, covers.places); });
  Parts parts;
  parts["opening"] = kOpening;
  parts["version"] = TAVREL_VERSION;
  parts["title"] = EscapedStart(title.empty() ? words.Of("title.usual") : title, 200);
  parts["style"] = sources.style;
  parts["script"] = sources.script;
  parts["styleHash"] = Base64OfHex(sources.styleHash);
  parts["scriptHash"] = Base64OfHex(sources.scriptHash);
  parts["words"] = words.Json();
  parts["figures"] = Figures(contents, words);
  parts["albums"] = AlbumList(contents, TopAlbums(contents), covers.top);
  parts["allPlots"] = AllPlots(contents, covers.albumsWithout, words);
  parts["data"] = songs.get();
  AppendCovers(parts["data"], covers.pictures);
  return Fill(sources.markup, std::move(parts), words);
}

bool IsPage(const std::string& path) {
  // Anything else may wait for ever, or be no file at all.
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  std::ifstream file(path, std::ios::binary);
  std::string opening(kOpening.size(), '\0');
  file.read(opening.data(), static_cast<std::streamsize>(opening.size()));
  return file && opening == kOpening;
}

}  // namespace tavrel::host
