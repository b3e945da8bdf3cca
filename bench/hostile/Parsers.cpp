#include "bench/hostile/Parsers.h"

#include "bench/support/Clocks.h"
#include "xml/TBXML.h"

#if defined(TAVREL_HAS_PUGIXML)
#include <pugixml.hpp>
#endif
#if defined(TAVREL_HAS_EXPAT)
#include <expat.h>

#include <memory>
#include <new>
#include <type_traits>
#endif

namespace tavrel::bench {
namespace {

Parsed ParseOurselves(std::string_view text) {
  const auto data = system::ByteBuffer::Copy(text);
  const double start = ProcessorTime();
  const auto document = TBXML::tbxmlWithXMLData(data);
  return {ProcessorTime() - start, true};
}

#if defined(TAVREL_HAS_PUGIXML)

Parsed ParseWithPugixml(std::string_view text) {
  constexpr unsigned int kOptions =
      pugi::parse_minimal | pugi::parse_embed_pcdata | pugi::parse_cdata;
  pugi::xml_document document;
  const double start = ProcessorTime();
  const bool accepted = static_cast<bool>(
      document.load_buffer(text.data(), text.size(), kOptions, pugi::encoding_utf8));
  return {ProcessorTime() - start, accepted};
}

#endif

#if defined(TAVREL_HAS_EXPAT)

struct ParserFreed {
  void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

Parsed ParseWithExpat(std::string_view text) {
  const std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserFreed> parser(
      XML_ParserCreate("UTF-8"));
  if (parser == nullptr) throw std::bad_alloc();
  XML_SetElementHandler(
      parser.get(), [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
  XML_SetCharacterDataHandler(parser.get(), [](void*, const XML_Char*, int) {});
  const double start = ProcessorTime();
  const XML_Status status =
      XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE);
  return {ProcessorTime() - start, status == XML_STATUS_OK};
}

#endif

}  // namespace

Parser OurDocument() {
  return {"ours", ParseOurselves};
}

std::vector<Parser> Peers() {
  std::vector<Parser> peers;
#if defined(TAVREL_HAS_PUGIXML)
  peers.push_back({"pugixml", ParseWithPugixml});
#endif
#if defined(TAVREL_HAS_EXPAT)
  peers.push_back({"expat", ParseWithExpat});
#endif
  return peers;
}

}  // namespace tavrel::bench
