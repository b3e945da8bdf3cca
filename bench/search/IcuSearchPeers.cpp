#include <unicode/ucol.h>
#include <unicode/unorm2.h>
#include <unicode/usearch.h>
#include <unicode/ustring.h>

#include <stdexcept>

#include "bench/search/SearchPeers.h"

namespace tavrel::bench {

namespace {

using Texts = std::vector<std::array<std::u16string, 3>>;

void Check(UErrorCode code) {
  if (U_FAILURE(code)) throw std::runtime_error(u_errorName(code));
}

std::int32_t SizeOf(std::u16string_view text) {
  return static_cast<std::int32_t>(text.size());
}

std::u16string Utf16(const std::string& text) {
  std::u16string result(text.size(), u'\0');
  std::int32_t size = 0;
  UErrorCode code = U_ZERO_ERROR;
  u_strFromUTF8(result.data(), SizeOf(result), &size, text.data(),
                static_cast<std::int32_t>(text.size()), &code);
  Check(code);
  result.resize(static_cast<std::size_t>(size));
  return result;
}

Texts Utf16(const TrackTexts& texts) {
  Texts result;
  result.reserve(texts.size());
  for (const auto& track : texts) {
    result.push_back({Utf16(track[0]), Utf16(track[1]), Utf16(track[2])});
  }
  return result;
}

class IcuStringSearch : public SearchPeer {
 public:
  explicit IcuStringSearch(const TrackTexts& texts) : texts_(Utf16(texts)) {
    UErrorCode code = U_ZERO_ERROR;
    collator_ = ucol_open("", &code);
    Check(code);
    ucol_setStrength(collator_, UCOL_SECONDARY);
    ucol_setAttribute(collator_, UCOL_NORMALIZATION_MODE, UCOL_ON, &code);
    Check(code);
  }
  ~IcuStringSearch() override { ucol_close(collator_); }

  std::string_view Name() const override { return "ICU string search"; }

  std::int64_t Count(const std::string& term) override {
    const std::u16string pattern = Utf16(term);
    UErrorCode code = U_ZERO_ERROR;
    UStringSearch* search = usearch_openFromCollator(pattern.data(), SizeOf(pattern), u" ", 1,
                                                     collator_, nullptr, &code);
    Check(code);
    std::int64_t count = 0;
    for (const auto& track : texts_) {
      for (const std::u16string& text : track) {
        if (text.empty()) continue;
        usearch_setText(search, text.data(), SizeOf(text), &code);
        if (usearch_first(search, &code) == USEARCH_DONE) continue;
        ++count;
        break;
      }
    }
    usearch_close(search);
    Check(code);
    return count;
  }

 private:
  Texts texts_;
  UCollator* collator_ = nullptr;
};

class IcuFolding : public SearchPeer {
 public:
  explicit IcuFolding(const TrackTexts& texts) : texts_(Utf16(texts)) {
    UErrorCode code = U_ZERO_ERROR;
    normalizer_ = unorm2_getNFDInstance(&code);
    Check(code);
  }

  std::string_view Name() const override { return "ICU decompose+fold+find"; }

  std::int64_t Count(const std::string& term) override {
    const std::u16string pattern(Fold(Utf16(term)));
    std::int64_t count = 0;
    for (const auto& track : texts_) {
      for (const std::u16string& text : track) {
        const std::u16string_view folded = Fold(text);
        if (u_strFindFirst(folded.data(), SizeOf(folded), pattern.data(), SizeOf(pattern)) ==
            nullptr) {
          continue;
        }
        ++count;
        break;
      }
    }
    return count;
  }

 private:
  // The folded form, in a buffer that the next call uses again.
  std::u16string_view Fold(std::u16string_view text) {
    const std::size_t room = text.size() * 3 + 8;
    for (std::u16string& buffer : buffers_) {
      if (buffer.size() < room * 3) buffer.resize(room * 3);
    }
    UErrorCode code = U_ZERO_ERROR;
    std::int32_t size = unorm2_normalize(normalizer_, text.data(), SizeOf(text), buffers_[0].data(),
                                         SizeOf(buffers_[0]), &code);
    size = u_strFoldCase(buffers_[1].data(), SizeOf(buffers_[1]), buffers_[0].data(), size,
                         U_FOLD_CASE_DEFAULT, &code);
    size = unorm2_normalize(normalizer_, buffers_[1].data(), size, buffers_[0].data(),
                            SizeOf(buffers_[0]), &code);
    Check(code);
    return {buffers_[0].data(), static_cast<std::size_t>(size)};
  }

  Texts texts_;
  const UNormalizer2* normalizer_ = nullptr;
  std::array<std::u16string, 2> buffers_;
};

}  // namespace

std::unique_ptr<SearchPeer> MakeIcuStringSearch(const TrackTexts& texts) {
  return std::make_unique<IcuStringSearch>(texts);
}

std::unique_ptr<SearchPeer> MakeIcuFolding(const TrackTexts& texts) {
  return std::make_unique<IcuFolding>(texts);
}

}  // namespace tavrel::bench
