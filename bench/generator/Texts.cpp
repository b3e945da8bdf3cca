#include "bench/generator/Texts.h"

#include <algorithm>
#include <array>

namespace tavrel::bench {
namespace {

void AppendWord(std::string& text, const WordTable& table, Random& random) {
  if (random.Chance(table.wordsPerMille)) {
    text += table.words[random.LowBelow(static_cast<std::uint32_t>(table.words.size()))];
    return;
  }
  text += table.firsts[random.Below(static_cast<std::uint32_t>(table.firsts.size()))];
  const std::uint32_t rests = random.Between(1, table.mostRests);
  for (std::uint32_t i = 0; i < rests; ++i) {
    text += table.rests[random.Below(static_cast<std::uint32_t>(table.rests.size()))];
  }
}

std::string MakeWords(Script script, std::uint32_t count, Random& random) {
  constexpr std::array<std::string_view, 5> linkWords{"of", "in", "and", "to", "for"};
  const WordTable& table = WordTableOf(script);
  std::string text;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (i > 0) text += table.gap;
    if (i > 0 && script == Script::Ascii && random.Chance(120)) {
      text += linkWords[random.Below(linkWords.size())];
      text += table.gap;
    }
    AppendWord(text, table, random);
  }
  return text;
}

std::string Finished(Script script, std::string text) {
  return script == Script::Decomposed ? Decompose(text) : text;
}

// The part of an album or song title that stands in brackets or behind a comma.
std::string MakeEnding(Script script, Random& random) {
  switch (random.Below(8)) {
    case 0:
      return " (Live)";
    case 1:
      return " (Remastered)";
    case 2:
      return " [Demo]";
    case 3:
      return ", Pt. " + std::to_string(random.Between(1, 4));
    case 4:
      return " \"" + MakeWords(script, 1, random) + "\"";
    case 5:
      return " <3";
    default:
      return " (feat. " + MakeWords(script, 2, random) + ")";
  }
}

constexpr bool StandsInPath(unsigned char byte) noexcept {
  const bool alphanumeric =
      (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
  return alphanumeric || std::string_view("-_.!~*'(),&+$=@/").find(static_cast<char>(byte)) !=
                             std::string_view::npos;
}

}  // namespace

std::string MakeTitle(Script script, std::uint32_t fewest, std::uint32_t most, Random& random) {
  std::string text;
  if (script == Script::Ascii && random.Chance(90)) text = "The ";
  text += MakeWords(script, random.Between(fewest, most), random);
  if (random.Chance(25)) {
    text += " & ";
    text += MakeWords(script, 1, random);
  }
  if (random.Chance(80)) text += MakeEnding(script, random);
  return Finished(script, std::move(text));
}

std::string MakeArtist(Script script, Random& random) {
  std::string text;
  if (script == Script::Ascii && random.Chance(200)) {
    text = "The " + MakeWords(script, 1, random) + "s";
  } else {
    text = MakeWords(script, random.Between(1, 2), random);
    text += WordTableOf(script).gap;
    AppendWord(text, WordTableOf(script), random);
    if (random.Chance(80)) text += " & " + MakeWords(script, 2, random);
  }
  return Finished(script, std::move(text));
}

std::string MakeComposer(Script script, Random& random) {
  std::string text;
  const std::uint32_t count = random.Between(1, 2);
  for (std::uint32_t i = 0; i < count; ++i) {
    if (i > 0) text += '/';
    text += MakeWords(script, 2, random);
  }
  return Finished(script, std::move(text));
}

std::string MakeComment(Random& random) {
  std::string text = MakeWords(Script::Ascii, random.Between(3, 7), random);
  return text + (random.Chance(300) ? " > " + MakeWords(Script::Ascii, 3, random) + "." : ".");
}

std::string_view SortForm(std::string_view title) noexcept {
  for (const std::string_view article : {"The ", "A "}) {
    if (title.size() > article.size() && title.starts_with(article)) {
      return title.substr(article.size());
    }
  }
  return title;
}

std::string Decompose(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Decomposition* found = nullptr;
    if (static_cast<unsigned char>(text[at]) >= 0x80) {
      for (const Decomposition& entry : Decompositions()) {
        if (text.substr(at).starts_with(entry.composed)) found = &entry;
      }
    }
    result += found != nullptr ? found->decomposed : text.substr(at, 1);
    at += found != nullptr ? found->composed.size() : 1;
  }
  return result;
}

std::string FileName(std::string_view name) {
  std::string result(name);
  const auto refused = [](char c) {
    return std::string_view("/:?\"<>|").find(c) != std::string_view::npos;
  };
  std::replace_if(result.begin(), result.end(), refused, '_');
  return result;
}

std::string EncodePath(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char c : Decompose(path)) {
    const auto byte = static_cast<unsigned char>(c);
    if (StandsInPath(byte)) {
      result += c;
    } else {
      result += '%';
      result += digits[byte >> 4];
      result += digits[byte & 15];
    }
  }
  return result;
}

}  // namespace tavrel::bench
