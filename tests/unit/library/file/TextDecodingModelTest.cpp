// The decoder beside a model: a plain coding of its rules with the C library's string functions,
// run on many random texts and sizes.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "agent/Exports.h"
#include "library/file/XmlText.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"

namespace {

class Model {
 public:
  Model(char* destination, std::int32_t size) : destination_(destination), size_(size) {}

  std::int32_t Decode(const char* source) {
    for (const char* ampersand; (ampersand = std::strchr(source, '&')) != nullptr;) {
      Copy(source, ampersand - source);
      const char* semicolon = std::strchr(ampersand, ';');
      if (semicolon == nullptr) return 0;
      if (!CopyNamed(ampersand)) {
        if (semicolon - ampersand < 3 || ampersand[1] != '#') return 0;
        CopyNumber(ampersand + 2);
      }
      source = semicolon + 1;
    }
    const auto rest = static_cast<std::int32_t>(std::strlen(source));
    if (total_ + rest < size_) std::strcpy(destination_ + total_, source);
    return total_ + rest;
  }

 private:
  void Copy(const char* piece, std::ptrdiff_t length) {
    const std::int32_t start = total_;
    total_ += static_cast<std::int32_t>(length);
    if (total_ < size_) std::memcpy(destination_ + start, piece, static_cast<std::size_t>(length));
  }

  bool CopyNamed(const char* at) {
    for (const XMLEntity& entry : XMLEntities) {
      if (std::strncmp(at, entry.entity, std::strlen(entry.entity)) != 0) continue;
      Copy(entry.replacement, 1);
      return true;
    }
    return false;
  }

  void CopyNumber(const char* digits) {
    const bool hexadecimal = *digits == 'x' || *digits == 'X';
    const unsigned long long value =
        hexadecimal ? std::strtoull(digits + 1, nullptr, 16) : std::strtoull(digits, nullptr, 10);
    for (int shift = 24; shift >= 0; shift -= 8) {
      const char byte = static_cast<char>(static_cast<unsigned char>(value >> shift));
      if (byte != '\0') Copy(&byte, 1);
    }
  }

  char* destination_;
  std::int32_t size_;
  std::int32_t total_ = 0;
};

void Compare(tavrel::test::Random& random, const std::string& source) {
  const auto longest = source.size() + 3;
  const auto size = static_cast<std::int32_t>(random.Below(longest + 1)) - 1;
  std::string expected(longest, '~');
  std::string actual(longest, '~');
  const std::int32_t expectedResult = Model(expected.data(), size).Decode(source.c_str());
  ASSERT_EQ(RestoreXMLEscChar(actual.data(), source.c_str(), size), expectedResult)
      << source << " into " << size;
  ASSERT_EQ(actual, expected) << source << " into " << size;
}

}  // namespace

TEST(RestoreXMLEscChar, AgreesWithAModelOnRandomTexts) {
  tavrel::test::Random random(1905);
  const tavrel::test::CapturedStderr log;
  for (int i = 0; i < tavrel::test::Rounds(60000); ++i) {
    Compare(random,
            random.Text({"&", ";", "#", "x",  "X",    "0",     "1",  "9",   "a",     "F",  "g",
                         " ", "-", "+", "lt", "&lt;", "&amp;", "&#", "&#x", "&#65;", "\t", "\xE9"},
                        random.Below(12)));
    if (HasFatalFailure()) return;
  }
}

TEST(RestoreXMLEscChar, AgreesWithAModelOnRandomNumbers) {
  tavrel::test::Random random(2019);
  const tavrel::test::CapturedStderr log;
  for (int i = 0; i < tavrel::test::Rounds(60000); ++i) {
    Compare(random,
            "&#" + random.Text({"x", "X", "0x", " ", "-", "+", ""}, random.Below(4)) +
                random.Text({"0", "1", "2", "7", "9", "a", "E", "f", "18446744073709551615"},
                            random.Below(24)) +
                ";");
    if (HasFatalFailure()) return;
  }
}
