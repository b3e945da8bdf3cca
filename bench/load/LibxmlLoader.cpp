#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlversion.h>

#include <stdexcept>
#include <string_view>

#include "bench/load/Loaders.h"

namespace tavrel::bench {
namespace {

// As it comes, but without its limit on the size of a text.
constexpr int kOptions = XML_PARSE_HUGE | XML_PARSE_NONET;

bool IsDict(const xmlNode* node) {
  return std::string_view(reinterpret_cast<const char*>(node->name)) == "dict";
}

const xmlNode* FirstDict(const xmlNode* parent) {
  const xmlNode* node = parent == nullptr ? nullptr : parent->children;
  while (node != nullptr && !IsDict(node)) node = node->next;
  return node;
}

std::int64_t CountTracks(const xmlDoc* document) {
  std::int64_t count = 0;
  const xmlNode* tracks = FirstDict(FirstDict(xmlDocGetRootElement(document)));
  for (const xmlNode* track = FirstDict(tracks); track != nullptr; track = track->next) {
    count += IsDict(track) ? 1 : 0;
  }
  return count;
}

LoadFigures LoadWithLibxml(const std::string& path) {
  LoadMeter meter;
  xmlDoc* document = xmlReadFile(path.c_str(), nullptr, kOptions);
  meter.Loaded();
  if (document == nullptr) throw std::runtime_error("libxml2 cannot parse the file");
  meter.Found(CountTracks(document));

  meter.ReleaseBegins();
  xmlFreeDoc(document);
  xmlCleanupParser();
  return meter.Released();
}

}  // namespace

Loader LibxmlLoader() {
  return {kLibxml, LIBXML_DOTTED_VERSION, true, LoadWithLibxml};
}

}  // namespace tavrel::bench
