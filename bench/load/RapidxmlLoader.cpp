#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <stdexcept>

#include "bench/load/Loaders.h"
#include "bench/support/WholeFile.h"

namespace tavrel::bench {
namespace {

using Document = rapidxml::xml_document<char>;

std::int64_t CountTracks(const Document& document) {
  std::int64_t count = 0;
  const auto* tracks = document.first_node("plist")->first_node("dict")->first_node("dict");
  const auto* track = tracks->first_node("dict");
  for (; track != nullptr; track = track->next_sibling("dict")) ++count;
  return count;
}

LoadFigures LoadWithRapidxml(const std::string& path) {
  LoadMeter meter;
  std::size_t size = 0;
  Buffer buffer = ReadWholeFile(path, size);
  auto document = std::make_unique<Document>();
  document->parse<rapidxml::parse_fastest>(buffer.get());
  meter.Loaded();
  meter.Found(CountTracks(*document));

  meter.ReleaseBegins();
  document.reset();
  buffer.reset();
  return meter.Released();
}

}  // namespace

// Its headers do not state a version.
Loader RapidxmlLoader() {
  return {"rapidxml", "(states no version)", false, LoadWithRapidxml};
}

}  // namespace tavrel::bench
