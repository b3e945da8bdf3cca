// Small plots as HTML and SVG that need no script.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::host {

// One bar or column.
struct PlotEntry {
  std::string label;    // of unknown content
  std::string address;  // where it leads; of this program's making. Empty: nowhere
  std::int64_t size;
  std::string value;  // what is said of the size
};

// A section with a heading. Empty when there is nothing to show.
// name: of the section, for its style; heading: HTML.
[[nodiscard]] std::string Bars(std::string_view name, std::string_view heading,
                               const std::vector<PlotEntry>& entries);
[[nodiscard]] std::string UprightBars(std::string_view name, std::string_view heading,
                                      const std::vector<PlotEntry>& entries);

// Years of twelve sizes each, one curve in steps, with a mark below each year.
struct PlotYear {
  std::string label;
  std::string address;
  std::int64_t months[12];
};
[[nodiscard]] std::string Curve(std::string_view name, std::string_view heading,
                                std::string_view summary, const std::vector<PlotYear>& years);

}  // namespace tavrel::host
