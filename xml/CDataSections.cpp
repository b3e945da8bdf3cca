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

bool EndsWithOpener(const char* from, const char* end) noexcept {
  const auto length = static_cast<std::size_t>(end - from);
  return end[-1] == '[' && length >= kSectionOpener.size() &&
         StartsWith(end - kSectionOpener.size(), end, kSectionOpener);
}

// What follows the part of a value that is done. An end marker leaves the middle of it, so that it
// lies in two pieces:
//
//     value       done    middle       middleEnd   tail        end
//     │ no opener │╌╌╌╌╌╌╌│ no marker  │╌╌╌╌╌╌╌╌╌╌╌│ not seen  │
//
// Bytes are taken from the front, so that the gap before them grows; markers are looked for from the
// tail on, and what they end joins the middle. So each byte moves twice at most, and is searched once.
class Rest {
 public:
  Rest(char* from, char* end) noexcept : middle_(from), middleEnd_(from), tail_(from), end_(end) {}

  [[nodiscard]] bool IsEmpty() const noexcept { return middle_ == middleEnd_ && tail_ == end_; }
  [[nodiscard]] char Take() noexcept { return middle_ != middleEnd_ ? *middle_++ : *tail_++; }

  // Takes the first end marker out; false when there is none.
  [[nodiscard]] bool RemoveEndMarker() noexcept {
    const std::size_t inMiddle = MarkerBytesInMiddle();
    char* marker = inMiddle > 0 ? tail_ : FindNearText(tail_, end_, kSectionEnd);
    if (marker == nullptr) return false;
    if (middle_ == middleEnd_) middle_ = middleEnd_ = tail_;  // an empty piece can stand anywhere
    middleEnd_ = MoveLeft(middleEnd_, tail_, marker) - inMiddle;
    tail_ = marker + (kSectionEnd.size() - inMiddle);
    return true;
  }

  // Moves all of it to `at`, which stands before it; returns its end.
  [[nodiscard]] char* MoveTo(char* at) const noexcept {
    return MoveLeft(MoveLeft(at, middle_, middleEnd_), tail_, end_);
  }

 private:
  // How many bytes of a marker the middle ends with when the tail begins with its others.
  [[nodiscard]] std::size_t MarkerBytesInMiddle() const noexcept {
    for (std::size_t length = kSectionEnd.size() - 1; length > 0; --length) {
      if (static_cast<std::size_t>(middleEnd_ - middle_) >= length &&
          StartsWith(middleEnd_ - length, middleEnd_, kSectionEnd.substr(0, length)) &&
          StartsWith(tail_, end_, kSectionEnd.substr(length))) {
        return length;
      }
    }
    return 0;
  }

  char* middle_;
  char* middleEnd_;
  char* tail_;
  char* end_;
};

// Takes the markers out of what a value still holds, whatever its sections are made of: `value` to
// `done` holds no opener, `tail` to `end` is what follows. An opener may come about where a marker
// has left, which is why openers are looked for in what was written.
void RemoveJoiningMarkers(const char* value, char* done, char* tail, char* end) noexcept {
  Rest rest(tail, end);
  while (!rest.IsEmpty()) {
    *done++ = rest.Take();
    if (!EndsWithOpener(value, done)) continue;
    done -= kSectionOpener.size();
    if (!rest.RemoveEndMarker()) break;
  }
  *rest.MoveTo(done) = '\0';
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
