// Plausible names and titles, made from the word tables. UTF-8, without XML escapes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bench/generator/WordTables.h"
#include "bench/support/Random.h"

namespace tavrel::bench {

// `fewest` to `most` words, now and then with what titles have: an article, an ampersand, brackets.
std::string MakeTitle(Script script, std::uint32_t fewest, std::uint32_t most, Random& random);

// A person or a band.
std::string MakeArtist(Script script, Random& random);

// One or two names, separated by '/'.
std::string MakeComposer(Script script, Random& random);

// A remark of some ordinary words.
std::string MakeComment(Random& random);

// `title` as it is sorted: without a leading article.
std::string_view SortForm(std::string_view title) noexcept;

// Writes the accents of `text` as combining characters.
std::string Decompose(std::string_view text);

// `name` as the name of a file or folder: without the characters that file systems refuse.
std::string FileName(std::string_view name);

// A path in the form that locations have: decomposed, and percent-encoded byte by byte except for
// the characters that may stand in a path.
std::string EncodePath(std::string_view path);

}  // namespace tavrel::bench
