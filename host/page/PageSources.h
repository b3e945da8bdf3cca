// The files of host/page/browser/ as the build has put them into the program.
#pragma once

#include <string_view>

namespace tavrel::host {

struct PageSources {
  std::string_view markup;
  std::string_view style;
  std::string_view script;
  std::string_view words;
  std::string_view styleHash;  // SHA-256, in hexadecimal digits
  std::string_view scriptHash;
};

[[nodiscard]] PageSources SourcesOfPage() noexcept;

}  // namespace tavrel::host
