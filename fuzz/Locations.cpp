// Locations: the plain decoder takes a URL as the literal form does, the quick one takes it alike or not at
// all, and the URL of a path leads back to it.
#include <memory>
#include <optional>
#include <string>

#include "fuzz/FuzzTarget.h"
#include "tests/reference/LiteralUrl.h"
#include "text/FileUrl.h"
#include "text/OrdinaryUrl.h"

using tavrel::fuzz::Require;

namespace {

std::optional<std::string> Quick(const std::string& url) {
  const auto path = std::make_unique<char[]>(url.size());
  const auto length = tavrel::text::PathOfOrdinaryUrl(url.c_str(), path.get());
  if (!length) return std::nullopt;
  return std::string(path.get(), *length);
}

void DecodeLocation(std::string_view input) {
  const std::string url(input.substr(0, input.find('\0')));
  const std::optional<std::string> path = tavrel::text::PathOfUrl(url);
  Require(path == tavrel::reference::PathOfUrlLiterally(url), "The path is another");
  const std::optional<std::string> quick = Quick(url);
  Require(!quick || quick == path, "The quick decoder gives another path");
  const std::string own = "/" + url;
  Require(tavrel::text::PathOfFileUrl(tavrel::text::FileUrlOfPath(own)) == own,
          "A path does not come back");
}

const tavrel::fuzz::Target locationsTarget("locations", DecodeLocation);

}  // namespace
