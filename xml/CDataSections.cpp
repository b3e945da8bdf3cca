#include "xml/CDataSections.h"

#include <cstring>

#include "xml/ByteScan.h"

namespace tavrel::xml {
namespace {

// Moves [from, to) to `at`, which stands before it; returns the end of the moved bytes.
char* MoveLeft(char* at, const char* from, const char* to) noexcept {
  constexpr std::size_t kShort = 16;
  const auto length = static_cast<std::size_t>(to - from);
  if (length < kShort) {
    while (from != to) *at++ = *from++;
    return at;
  }
  std::memmove(at, from, length);
  return at + length;
}

// The first '<' behind a run of sections; null when a section has no end or there is no such '<'.
char* NextTagBehind(char* opener, const char* end) noexcept {
  char* at = opener;
  do {
    char* sectionEnd = FindNearText(at + kSectionOpener.size(), end, kSectionEnd);
    if (sectionEnd == nullptr) return nullptr;
    at = FindNearByte(sectionEnd + kSectionEnd.size(), end, '<');
  } while (at != nullptr && StartsWith(at, end, kSectionOpener));
  return at;
}

// Takes the markers out of what a value still holds, whatever its sections are made of: `value` to
// `done` holds no opener, `tail` to `end` is what follows.
//
// The value lies in three pieces while this runs: what is done; then `middle` to `middleEnd`, which
// an end marker was taken out behind; then the tail. Each byte moves at most twice, and the search
// for ends only goes forward.
void RemoveJoiningMarkers(const char* value, char* done, char* tail, char* end) noexcept {
  char* middle = tail;
  char* middleEnd = tail;
  while (middle != middleEnd || tail != end) {
    *done++ = middle != middleEnd ? *middle++ : *tail++;
    const auto doneLength = static_cast<std::size_t>(done - value);
    if (done[-1] != '[' || doneLength < kSectionOpener.size() ||
        !StartsWith(done - kSectionOpener.size(), done, kSectionOpener)) {
      continue;
    }
    done -= kSectionOpener.size();

    // The middle holds no end marker of its own, but one may begin with its last bytes.
    std::size_t inMiddle = 0;
    char* marker = nullptr;
    for (std::size_t length = kSectionEnd.size() - 1; length > 0 && marker == nullptr; --length) {
      if (static_cast<std::size_t>(middleEnd - middle) >= length &&
          StartsWith(middleEnd - length, middleEnd, kSectionEnd.substr(0, length)) &&
          StartsWith(tail, end, kSectionEnd.substr(length))) {
        marker = tail;
        inMiddle = length;
      }
    }
    if (marker == nullptr) marker = FindNearText(tail, end, kSectionEnd);
    if (marker == nullptr) break;

    if (middle == middleEnd) middle = middleEnd = tail;  // an empty piece can stand anywhere
    middleEnd = MoveLeft(middleEnd, tail, marker) - inMiddle;
    tail = marker + (kSectionEnd.size() - inMiddle);
  }
  done = MoveLeft(done, middle, middleEnd);
  done = MoveLeft(done, tail, end);
  *done = '\0';
}

}  // namespace

// Taken one by one, each section would move the rest of the run; every section of a run has the
// same next tag, though, so that the run is moved once, from left to right.
char* JoinSections(char* opener, const char* end) noexcept {
  char* nextTag = NextTagBehind(opener, end);
  if (nextTag == nullptr) return nullptr;

  char* written = opener;
  for (char* section = opener; section != nextTag;) {
    char* content = section + kSectionOpener.size();
    char* sectionEnd = FindNearText(content, end, kSectionEnd);
    written = MoveLeft(written, content, sectionEnd);
    char* gap = sectionEnd + kSectionEnd.size();
    section = FindNearByte(gap, end, '<');
    written = MoveLeft(written, gap, section);
  }
  std::memset(written, ' ', static_cast<std::size_t>(nextTag - written));
  return nextTag;
}

// Where sections are as they are meant to be, with no '<' inside, nothing that is removed lets the
// bytes around it become an opener: contents and gaps move from left to right. The rest of the
// value, from the first section on that is not, goes the long way.
void RemoveValueMarkers(char* value, char* end) noexcept {
  char* section = FindByte(value, end, '<');
  char* done = section;
  while (section != nullptr && StartsWith(section, end, kSectionOpener)) {
    char* content = section + kSectionOpener.size();
    char* sectionEnd = FindNearText(content, end, kSectionEnd);
    if (sectionEnd == nullptr || FindNearByte(content, sectionEnd, '<') != nullptr) break;
    done = MoveLeft(done, content, sectionEnd);
    char* gap = sectionEnd + kSectionEnd.size();
    section = FindNearByte(gap, end, '<');
    done = MoveLeft(done, gap, section == nullptr ? end : section);
  }
  if (section != nullptr) return RemoveJoiningMarkers(value, done, section, end);
  if (done != nullptr) *done = '\0';
}

}  // namespace tavrel::xml
