#include "host/output/PercentEscaping.h"

#include "text/Ascii.h"

namespace tavrel::host {

std::string PercentEscaped(std::string_view text, std::string_view plainMarks) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string escaped;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    const char lower = text::ToLowerCase(letter);
    const bool isPlain = (lower >= 'a' && lower <= 'z') || (letter >= '0' && letter <= '9') ||
                         plainMarks.find(letter) != std::string_view::npos;
    if (isPlain) {
      escaped += letter;
    } else {
      escaped.append(1, '%').append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0x0F]);
    }
  }
  return escaped;
}

}  // namespace tavrel::host
