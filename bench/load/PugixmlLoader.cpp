#include <fmt/format.h>

#include <pugixml.hpp>
#include <stdexcept>

#include "bench/load/HugeRegions.h"
#include "bench/load/Loaders.h"
#include "bench/support/WholeFile.h"

namespace tavrel::bench {
namespace {

// Parses in place, without declarations, comments and blanks, and without a node for each text.
void Parse(pugi::xml_document& document, char* text, std::size_t size) {
  const pugi::xml_parse_result result = document.load_buffer_inplace(
      text, size, pugi::parse_minimal | pugi::parse_embed_pcdata, pugi::encoding_utf8);
  if (!result) throw std::runtime_error(std::string("pugixml: ") + result.description());
}

std::int64_t CountTracks(const pugi::xml_document& document) {
  std::int64_t count = 0;
  const pugi::xml_node tracks = document.document_element().first_child().child("dict");
  for (const pugi::xml_node track : tracks.children("dict")) count += track ? 1 : 0;
  return count;
}

LoadFigures LoadWithPugixml(const std::string& path) {
  LoadMeter meter;
  std::size_t size = 0;
  Buffer buffer = ReadWholeFile(path, size);
  pugi::xml_document document;
  Parse(document, buffer.get(), size);
  meter.Loaded();
  meter.Found(CountTracks(document));

  meter.ReleaseBegins();
  document.reset();
  buffer.reset();
  return meter.Released();
}

LoadFigures LoadWithHugePages(const std::string& path) {
  pugi::set_memory_management_functions(TakeHuge, [](void*) {});
  LoadMeter meter;
  const WholeFile file(path);
  auto* buffer = static_cast<char*>(TakeHuge(file.size()));
  if (buffer == nullptr) throw std::bad_alloc();
  file.ReadInto(buffer);
  pugi::xml_document document;
  Parse(document, buffer, file.size());
  meter.Loaded();
  meter.Found(CountTracks(document));

  meter.ReleaseBegins();
  document.reset();
  ReleaseAllHuge();
  return meter.Released();
}

std::string PugixmlVersion() {
  return fmt::format("{}.{}", PUGIXML_VERSION / 1000, PUGIXML_VERSION % 1000 / 10);
}

}  // namespace

Loader PugixmlLoader() {
  return {kPugixml, PugixmlVersion(), false, LoadWithPugixml};
}

Loader PugixmlHugeLoader() {
  return {kPugixmlHuge, PugixmlVersion(), false, LoadWithHugePages};
}

}  // namespace tavrel::bench
