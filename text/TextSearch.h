// Searching texts without regard to case or to how their characters are composed. A match neither
// begins nor ends inside a character and the combining marks that follow it, inside a Hangul
// syllable, or inside what one character folds to: "e" is not found in "é", however either is
// written, "strasse" is found in "Straße", "stras" is not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "system/Processor.h"
#include "text/ByteSearch.h"
#include "text/TextFolding.h"

namespace tavrel::text {

inline constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

// Folded texts, one behind the other, with a zero byte behind each.
struct FoldedTexts {
  const char* bytes;
  const std::uint64_t* joined;  // see FoldingTarget; none of the zero bytes is joined

  [[nodiscard]] bool IsJoined(std::size_t at) const noexcept {
    return (joined[at / 64] >> at % 64 & 1) != 0;
  }
};

// What is searched for, prepared once for any number of texts.
class SearchTerm {
 public:
  // text: UTF-8 without zero bytes. One that is empty or not valid UTF-8 is never found.
  // set:  a supported one.
  explicit SearchTerm(std::string_view text,
                      system::InstructionSet set = system::WidestSet()) noexcept;
  SearchTerm(const SearchTerm&) = delete;
  SearchTerm& operator=(const SearchTerm&) = delete;
  ~SearchTerm();

  // False when memory was exhausted: the term is never found then.
  [[nodiscard]] bool IsPrepared() const noexcept { return isPrepared_; }

  // The length of every match, in folded bytes.
  [[nodiscard]] std::size_t foldedSize() const noexcept { return pattern_.bytes.size(); }

  // The offset of the first match in the bytes from `from` to `end`, where a text ends; kNotFound
  // when there is none. Cost: linear, whatever the term and the texts.
  [[nodiscard]] std::size_t FindIn(const FoldedTexts& texts, std::size_t from,
                                   std::size_t end) const noexcept;

  // Whether `text`, which is not folded yet, contains the term. False also when memory is
  // exhausted.
  [[nodiscard]] bool IsIn(std::string_view text) const noexcept;

 private:
  [[nodiscard]] bool IsMatch(const FoldedTexts& texts, std::size_t at) const noexcept;
  [[nodiscard]] std::size_t FindByKnuthMorrisPratt(const FoldedTexts& texts, std::size_t from,
                                                   std::size_t end) const noexcept;
  void PrepareBorders() noexcept;

  char* block_ = nullptr;  // the folded term, with `borders_` behind it
  std::uint32_t* borders_ = nullptr;
  BytePattern pattern_ = {};
  bool isPrepared_ = false;
};

}  // namespace tavrel::text
