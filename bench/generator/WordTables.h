// The words that names and titles of a generated library are made of.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace tavrel::bench {

// The ways in which a text can be written. Decomposed is Accented with every accent as a combining
// character of its own, as file systems and some tag editors leave it.
enum class Script : std::uint8_t { Ascii, Accented, Decomposed, Cyrillic, Cjk };
inline constexpr std::size_t scriptCount = 5;

struct WordTable {
  // Whole words, the most frequent first. The first of each table is the one to search for.
  std::span<const std::string_view> words;
  // Other words are a first syllable, with its capital letter, and some of the rest.
  std::span<const std::string_view> firsts;
  std::span<const std::string_view> rests;
  std::uint32_t wordsPerMille;  // how many of all words are whole words
  std::uint32_t mostRests;
  std::string_view gap;  // between two words
};

const WordTable& WordTableOf(Script script) noexcept;

// Genres, the most frequent first.
std::span<const std::string_view> Genres() noexcept;

// A letter and the same letter as a base letter with combining accents.
struct Decomposition {
  std::string_view composed;
  std::string_view decomposed;
};

// Every letter of the tables that has a decomposition. All composed forms have two bytes.
std::span<const Decomposition> Decompositions() noexcept;

}  // namespace tavrel::bench
