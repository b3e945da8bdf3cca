#include "library/file/XmlText.h"

#include <cstddef>
#include <cstring>
#include <string_view>

#include "system/SystemLog.h"
#include "text/Numbers.h"

const XMLEntity XMLEntities[5] = {
    {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}, {"&apos;", "'"}, {"&quot;", "\""},
};

namespace tavrel {
namespace {

// Counts every byte of the decoded text and writes those that fit.
class Output {
 public:
  Output(char* destination, std::int32_t size) noexcept : destination_(destination), size_(size) {}

  void Append(std::string_view piece) noexcept {
    const std::int64_t start = total_;
    total_ += static_cast<std::int64_t>(piece.size());
    if (total_ < size_ && !piece.empty()) {
      std::memcpy(destination_ + start, piece.data(), piece.size());
    }
  }

  void Terminate() noexcept {
    if (total_ < size_) destination_[total_] = '\0';
  }

  [[nodiscard]] std::int32_t total() const noexcept { return static_cast<std::int32_t>(total_); }

 private:
  char* destination_;
  std::int64_t size_;
  std::int64_t total_ = 0;
};

// Compares the decoded text with another one.
class Comparison {
 public:
  explicit Comparison(std::string_view text) noexcept : rest_(text) {}

  void Append(std::string_view piece) noexcept {
    isEqual_ = isEqual_ && rest_.starts_with(piece);
    if (isEqual_) rest_.remove_prefix(piece.size());
  }

  [[nodiscard]] bool isEqual() const noexcept { return isEqual_ && rest_.empty(); }

 private:
  std::string_view rest_;
  bool isEqual_ = true;
};

// The replacement of the named reference at the start of `text`; none when there is no such name.
const char* NamedReference(std::string_view text) noexcept {
  for (const XMLEntity& entry : XMLEntities) {
    if (text.starts_with(entry.entity)) return entry.replacement;
  }
  return nullptr;
}

template <class Target>
void AppendBytesOfValue(Target& output, std::uint32_t value) noexcept {
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char byte = static_cast<char>(static_cast<unsigned char>(value >> shift));
    if (byte != '\0') output.Append({&byte, 1});
  }
}

// `reference` runs from the '&' up to and without the ';'. False when it is no numeric reference.
template <class Target>
bool AppendNumericReference(Target& output, std::string_view reference) noexcept {
  if (reference.size() < 3 || reference[1] != '#') return false;
  const bool hexadecimal = reference[2] == 'x' || reference[2] == 'X';
  AppendBytesOfValue(output, hexadecimal ? text::ReadUnsigned(reference.substr(3), 16)
                                         : text::ReadUnsigned(reference.substr(2), 10));
  return true;
}

struct Stop {
  DecodingError error;
  const char* at;
};

// Appends the decoded text to `output`, piece by piece, up to its end or an error.
template <class Target>
Stop Decode(std::string_view rest, Target& output) noexcept {
  for (;;) {
    const std::size_t ampersand = rest.find('&');
    if (ampersand == std::string_view::npos) break;
    output.Append(rest.substr(0, ampersand));
    rest.remove_prefix(ampersand);

    const std::size_t semicolon = rest.find(';');
    if (semicolon == std::string_view::npos) return {DecodingError::kNoEnding, rest.data()};
    if (const char* replacement = NamedReference(rest)) {
      output.Append(replacement);
    } else if (!AppendNumericReference(output, rest.substr(0, semicolon))) {
      return {DecodingError::kNoNumeric, rest.data()};
    }
    rest.remove_prefix(semicolon + 1);
  }
  output.Append(rest);
  return {DecodingError::kNone, nullptr};
}

}  // namespace

Decoding DecodeReferences(char* destination, const char* source,
                          std::int32_t destinationSize) noexcept {
  Output output(destination, destinationSize);
  const Stop stop = Decode(source, output);
  if (stop.error == DecodingError::kNone) output.Terminate();
  return {output.total(), stop.error, stop.at};
}

void LogDecodingError(const Decoding& decoding, const char* source) noexcept {
  switch (decoding.error) {
    case DecodingError::kNone:
      return;
    case DecodingError::kNoEnding:
      return system::Log({"XML text \"", source, "\" Escaping has no ending"});
    case DecodingError::kNoNumeric:
      return system::Log({"XML text \"", decoding.errorAt, "\" Escaping has no numeric"});
  }
}

bool DecodesTo(const char* source, std::string_view text) noexcept {
  Comparison comparison(text);
  (void)Decode(source, comparison);
  return comparison.isEqual();
}

std::int32_t DecodeXmlText(char* destination, const char* source,
                           std::int32_t destinationSize) noexcept {
  if (destination == nullptr || source == nullptr) return 0;
  const Decoding decoding = DecodeReferences(destination, source, destinationSize);
  LogDecodingError(decoding, source);
  return decoding.error == DecodingError::kNone ? decoding.length : 0;
}

}  // namespace tavrel
