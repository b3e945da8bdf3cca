#include "host/copying/NamePattern.h"

#include <fmt/format.h>

#include "host/library/AlbumGrouping.h"
#include "host/naming/FileNames.h"
#include "host/output/Failure.h"
#include "host/output/Nearest.h"
#include "host/output/Text.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

[[noreturn]] void Refuse(const std::string& why) {
  throw Failure(ExitCode::Usage, "--name: " + why);
}

Field FieldNamed(std::string_view name) {
  if (const auto field = FindField(name)) return *field;
  std::vector<std::string> all;
  for (const FieldFacts& facts : kFields) all.emplace_back(facts.name);
  std::string message = fmt::format("there is no field \"{}\"", Clean(name));
  const std::vector<std::size_t> near = Nearest(name, all);
  if (!near.empty()) message += fmt::format("; do you mean {{{}}}?", all[near[0]]);
  Refuse(message);
}

std::string_view NameOfFile(std::string_view path) {
  const std::string_view base = text::SplitExtension(path).base;
  return base.substr(base.rfind('/') + 1);
}

std::string NumberText(const SongRecord& song, Field field, int digits) {
  const std::int64_t number = song.Number(field).value_or(0);
  return number > 0 ? fmt::format("{:0{}}", number, digits) : std::string();
}

std::string ArtistOfAlbum(const SongRecord& song) {
  const std::string_view artist = song.Text(Field::AlbumArtist).value_or("");
  if (!artist.empty()) return std::string(artist);
  if (song.Is(Field::Compilation)) return std::string(kVariousArtists);
  return std::string(song.Text(Field::Artist).value_or(""));
}

std::string TextOf(Field field, const SongRecord& song, std::string_view path) {
  if (field == Field::Track) return NumberText(song, field, 2);
  if (field == Field::Disc) return NumberText(song, field, 1);
  if (field == Field::AlbumArtist) return ArtistOfAlbum(song);
  const std::string_view text = song.Text(field).value_or("");
  return std::string(field == Field::Name && text.empty() ? NameOfFile(path) : text);
}

std::string Unknown(Field field) {
  const bool isArtist = field == Field::AlbumArtist;
  return "Unknown " + std::string(isArtist ? "Artist" : FactsOf(field).heading);
}

}  // namespace

NamePattern::Name NamePattern::ParseName(std::string_view text) {
  Name name;
  std::string literal;
  const auto end = [&] {
    if (!literal.empty()) name.push_back({std::move(literal), std::nullopt});
    literal.clear();
  };
  while (!text.empty()) {
    if (text.starts_with("{{") || text.starts_with("}}")) {
      literal += text[0];
      text.remove_prefix(2);
    } else if (text[0] == '{') {
      const std::size_t close = text.find('}');
      if (close == std::string_view::npos) Refuse("a { without its }");
      end();
      name.push_back({{}, FieldNamed(text.substr(1, close - 1))});
      text.remove_prefix(close + 1);
    } else {
      if (text[0] == '}') Refuse("a } without its {");
      literal += text[0];
      text.remove_prefix(1);
    }
  }
  end();
  return name;
}

NamePattern::NamePattern(std::string_view text) {
  for (;;) {
    const std::size_t slash = text.find('/');
    names_.push_back(ParseName(text.substr(0, slash)));
    if (names_.back().empty()) Refuse("a folder or file without a name");
    if (slash == std::string_view::npos) break;
    text.remove_prefix(slash + 1);
  }
  fields_ = SetOf({Field::Artist, Field::Compilation});
  for (const Name& name : names_) {
    for (const Piece& piece : name) {
      if (piece.field) fields_.set(IndexOf(*piece.field));
    }
  }
}

std::vector<std::string> NamePattern::NamesFor(const SongRecord& song,
                                               std::string_view path) const {
  std::vector<std::string> texts;
  for (const Name& name : names_) {
    std::string text;
    std::optional<Field> first;
    bool isLeftOut = false;
    for (const Piece& piece : name) {
      if (!piece.field) {
        if (!isLeftOut) text += piece.text;
        continue;
      }
      if (!first) first = piece.field;
      const std::string value = TextOf(*piece.field, song, path);
      isLeftOut = value.empty();
      text += value;
    }
    if (first && SafeName(text).empty()) text = Unknown(*first);
    texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace tavrel::host
