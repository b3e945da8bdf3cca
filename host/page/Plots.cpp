#include "host/page/Plots.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/page/Html.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kLongestLabel = 80;   // in characters
constexpr std::size_t kMostYearLabels = 8;  // so that they fit a narrow screen
constexpr std::size_t kMostColumnLabels = 8;
constexpr std::int64_t kHeight = 100;

std::int64_t LargestOf(const std::vector<PlotEntry>& entries) {
  std::int64_t largest = 1;
  for (const PlotEntry& entry : entries) largest = std::max(largest, entry.size);
  return largest;
}

// In hundredths, with two decimals.
std::string Share(std::int64_t size, std::int64_t largest) {
  return fmt::format("{:.2f}", 100.0 * static_cast<double>(size) / static_cast<double>(largest));
}

std::string Section(std::string_view name, std::string_view heading, std::string_view body) {
  return fmt::format(
      "<section class=\"plot {0}\" aria-labelledby=\"plot-{0}\"><h3 id=\"plot-{0}\">{1}</h3>\n{2}"
      "</section>\n",
      name, heading, body);
}

std::string Linked(const std::string& address, std::string_view content) {
  if (address.empty()) return fmt::format("<li><span class=\"entry\">{}</span></li>\n", content);
  return fmt::format("<li><a class=\"entry\" href=\"{}\">{}</a></li>\n", Escaped(address), content);
}

}  // namespace

std::string Bars(std::string_view name, std::string_view heading,
                 const std::vector<PlotEntry>& entries) {
  if (entries.empty()) return {};
  const std::int64_t largest = LargestOf(entries);
  std::string body = "<ol class=\"bars\">\n";
  for (const PlotEntry& entry : entries) {
    body +=
        Linked(entry.address,
               fmt::format("<bdi class=\"label\">{}</bdi> <svg viewBox=\"0 0 100 1\" "
                           "preserveAspectRatio=\"none\" aria-hidden=\"true\"><rect width=\"{}\" "
                           "height=\"1\"/></svg> <span class=\"value\">{}</span>",
                           EscapedStart(entry.label, kLongestLabel), Share(entry.size, largest),
                           Escaped(entry.value)));
  }
  return Section(name, heading, body + "</ol>\n");
}

std::string UprightBars(std::string_view name, std::string_view heading,
                        const std::vector<PlotEntry>& entries) {
  if (entries.empty()) return {};
  const std::int64_t largest = LargestOf(entries);
  const bool areMany = entries.size() > kMostColumnLabels;
  std::string body = areMany ? "<ol class=\"upright many\">\n" : "<ol class=\"upright\">\n";
  for (const PlotEntry& entry : entries) {
    const std::string height = Share(entry.size, largest);
    body += Linked(
        entry.address,
        fmt::format("<svg viewBox=\"0 0 1 100\" preserveAspectRatio=\"none\" aria-hidden=\"true\">"
                    "<g transform=\"matrix(1 0 0 -1 0 100)\"><rect width=\"1\" height=\"{}\"/></g>"
                    "</svg> <span class=\"value\">{}</span> <bdi class=\"label\">{}</bdi>",
                    height, Escaped(entry.value), EscapedStart(entry.label, kLongestLabel)));
  }
  return Section(name, heading, body + "</ol>\n");
}

std::string Curve(std::string_view name, std::string_view heading, std::string_view summary,
                  const std::vector<PlotYear>& years) {
  if (years.empty()) return {};
  std::int64_t largest = 1;
  for (const PlotYear& year : years) {
    largest = std::max(largest, *std::max_element(std::begin(year.months), std::end(year.months)));
  }
  std::string path = fmt::format("M0 {}", kHeight);
  std::string marks;
  const std::size_t step = (years.size() + kMostYearLabels - 1) / kMostYearLabels;
  for (std::size_t i = 0; i < years.size(); ++i) {
    for (const std::int64_t songs : years[i].months) {
      const double share = static_cast<double>(songs) / static_cast<double>(largest);
      path += fmt::format("V{:.1f}h1", static_cast<double>(kHeight) * (1 - share));
    }
    if (i % step == 0) {
      marks += Linked(years[i].address, Escaped(years[i].label));
    } else {
      marks += "<li></li>\n";
    }
  }
  const std::string body = fmt::format(
      "<svg class=\"curve\" viewBox=\"0 0 {} {}\" preserveAspectRatio=\"none\" role=\"img\" "
      "aria-label=\"{}\"><path d=\"{}V{}Z\"/></svg>\n<ol class=\"years\">\n{}</ol>\n",
      years.size() * 12, kHeight, Escaped(summary), path, kHeight, marks);
  return Section(name, heading, body);
}

}  // namespace tavrel::host
