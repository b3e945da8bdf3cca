#include "library/file/PropertyText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "library/file/PropertyList.h"
#include "library/file/PropertyValue.h"
#include "library/file/XmlText.h"
#include "system/Memory.h"

namespace tavrel {
namespace {

// The size of a longer one would not fit into 32 bits.
constexpr std::size_t kLongestText = std::numeric_limits<std::int32_t>::max() - 1;

const char* NameOf(const TBXMLElement& element) noexcept {
  return element.name == nullptr ? "" : element.name;
}

// A key without a text counts as an empty one.
const char* KeyOf(const TBXMLElement& element) noexcept {
  return element.text == nullptr ? "" : element.text;
}

// Values that are no texts, even when the parser found characters in them. Most are none of them, as the
// first letter of the name tells.
bool IsNoText(const char* name) noexcept {
  if (*name == 'a') return std::strcmp(name, "array") == 0;
  return *name == 'd' && (std::strcmp(name, "data") == 0 || std::strcmp(name, "dict") == 0);
}

// A text as it stands in the file, looked through once; or none. Two words, so that it is handed on in registers.
class Source {
 public:
  Source() noexcept = default;
  explicit Source(const char* text) noexcept : text_(text), plain_(PlainLength(text)) {}

  [[nodiscard]] bool IsNone() const noexcept { return text_ == nullptr; }
  // The others must not be asked of none.
  [[nodiscard]] const char* Text() const noexcept { return text_; }
  [[nodiscard]] bool HoldsReference() const noexcept { return text_[plain_] != '\0'; }
  // Cost: none, unless it holds a reference.
  [[nodiscard]] std::size_t Size() const noexcept {
    return HoldsReference() ? plain_ + std::strlen(text_ + plain_) : plain_;
  }

 private:
  // Up to the first reference, or to the end.
  static std::size_t PlainLength(const char* text) noexcept {
#if defined(__GLIBC__)
    return static_cast<std::size_t>(::strchrnul(text, '&') - text);
#else
    return std::strcspn(text, "&");
#endif
  }

  const char* text_ = nullptr;
  std::size_t plain_ = 0;
};

// What is shown of a value, as it stands in the file; none when there is nothing to show.
Source ShownText(const TBXMLElement& value) noexcept {
  if (const std::optional<bool> boolean = BooleanOf(value)) {
    return Source(*boolean ? "true" : "false");
  }
  if (value.text == nullptr || IsNoText(NameOf(value))) return {};
  const Source text(value.text);
  return text.Size() > kLongestText ? Source() : text;
}

// The first '&', if the texts are alike up to it, makes it worth decoding.
bool IsKey(const TBXMLElement& element, std::string_view key) noexcept {
  const char* source = KeyOf(element);
  std::size_t alike = 0;
  while (alike < key.size() && source[alike] == key[alike] && source[alike] != '&') ++alike;
  if (source[alike] == '&') return DecodesTo(source, key);
  return alike == key.size() && source[alike] == '\0';
}

// Decodes twice: what does not fit must leave no trace in the buffer.
std::int32_t CopyText(Source source, char* buffer, std::int32_t bufferSize) noexcept {
  const auto fits = [=](std::int32_t size) { return buffer != nullptr && size <= bufferSize; };
  if (!source.HoldsReference()) {
    const auto size = static_cast<std::int32_t>(source.Size() + 1);
    if (fits(size)) std::memcpy(buffer, source.Text(), source.Size() + 1);
    return size;
  }
  char none = '\0';
  const Decoding decoding = DecodeReferences(&none, source.Text(), 0);
  LogDecodingError(decoding, source.Text());
  const std::int32_t size = decoding.length + 1;
  if (!fits(size)) return size;
  (void)DecodeReferences(buffer, source.Text(), size);
  buffer[decoding.length] = '\0';
  return size;
}

// Decodes one text after the other, each of which stands until the next.
class Decoder {
 public:
  Decoder() noexcept = default;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() { system::Release(taken_); }

  // None when memory is exhausted.
  [[nodiscard]] const char* Decode(Source source) noexcept {
    if (!source.HoldsReference()) return source.Text();
    if (source.Size() > kLongestText || !Reserve(source.Size() + 1)) return nullptr;
    char* room = taken_ == nullptr ? own_.data() : taken_;
    const auto size = static_cast<std::int32_t>(source.Size() + 1);
    const Decoding decoding = DecodeReferences(room, source.Text(), size);
    LogDecodingError(decoding, source.Text());
    room[decoding.length] = '\0';
    return room;
  }

 private:
  bool Reserve(std::size_t size) noexcept {
    if (size <= size_) return true;
    const std::size_t grown = std::max(size, 2 * size_);
    auto* room = static_cast<char*>(system::Allocate(grown));
    if (room == nullptr) return false;
    system::Release(taken_);
    taken_ = room;
    size_ = grown;
    return true;
  }

  std::array<char, 1024> own_;  // more than nearly all texts need
  char* taken_ = nullptr;
  std::size_t size_ = std::tuple_size_v<decltype(own_)>;
};

}  // namespace

std::int32_t CopyProperty(const TBXMLElement* dict, const char* key, char* buffer,
                          std::int32_t bufferSize) noexcept {
  if (key == nullptr) return 0;
  const std::string_view wanted = key;
  for (const auto [keyElement, value] : Pairs(dict)) {
    if (!IsKey(*keyElement, wanted)) continue;
    const Source text = ShownText(*value);
    return text.IsNone() ? 0 : CopyText(text, buffer, bufferSize);
  }
  return 0;
}

std::int32_t VisitProperties(const TBXMLElement* dict, PropertyVisitor visitor,
                             void* context) noexcept {
  if (visitor == nullptr) return 0;
  Decoder keys;
  Decoder texts;
  std::int32_t count = 0;
  for (const auto [keyElement, value] : Pairs(dict)) {
    const Source shown = ShownText(*value);
    const char* key = keys.Decode(Source(KeyOf(*keyElement)));
    const char* text = shown.IsNone() ? nullptr : texts.Decode(shown);
    // A pair for which there is no memory ends the visit: none is shown as what it is not.
    if (key == nullptr || (!shown.IsNone() && text == nullptr)) break;
    ++count;
    if (visitor(key, text, NameOf(*value), context) == 0) break;
  }
  return count;
}

}  // namespace tavrel
