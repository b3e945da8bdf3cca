// Texts in addresses.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::host {

// Every byte but ASCII letters, digits and these marks becomes "%" and two upper-case hexadecimal digits. "-._~" never
// mean anything in an address.
[[nodiscard]] std::string PercentEscaped(std::string_view text, std::string_view plainMarks);

}  // namespace tavrel::host
