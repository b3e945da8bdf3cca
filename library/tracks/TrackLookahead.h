// Looking ahead while the tracks of a document are walked. What is read of a track lies thousands of
// bytes behind what was read of the one before it, too far for the machine to see it coming. The
// document's hints tell where; a wrong one costs nothing but the look.
#pragma once

#include <cstddef>
#include <span>

#include "library/file/PropertyList.h"
#include "system/Prefetch.h"
#include "xml/Records.h"

namespace tavrel {

// Far, Near:       how many tracks ahead the elements, and then the texts, are fetched.
// Elements, Lines: how many element records behind the dictionary, and how many lines of 64 bytes from
//                  its first value's text on; both stand in a row.
template <std::size_t Far, std::size_t Near, int Elements, int Lines>
class TrackLookahead {
 public:
  explicit TrackLookahead(std::span<TBXMLElement* const> dictionaries) noexcept
      : dictionaries_(dictionaries) {}

  // Goes on to the next track.
  void Advance() noexcept {
    if (next_ + Far < dictionaries_.size()) {
      const TBXMLElement* dict = dictionaries_[next_ + Far];
      // The key before the dictionary, the dictionary, and its first pairs.
      for (int i = -1; i <= Elements; ++i)
        system::FetchToRead(dict, i * std::ptrdiff_t{sizeof(TBXMLElement)});
    }
    if (next_ + Near < dictionaries_.size()) {
      const TBXMLElement* value = FirstValue(dictionaries_[next_ + Near]);
      const char* text = value == nullptr ? nullptr : value->text;
      for (int i = 0; text != nullptr && i < Lines; ++i)
        system::FetchToRead(text, i * std::ptrdiff_t{64});
    }
    ++next_;
  }

 private:
  std::span<TBXMLElement* const> dictionaries_;
  std::size_t next_ = 0;
};

}  // namespace tavrel
