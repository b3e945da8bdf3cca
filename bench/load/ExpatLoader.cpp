#include <expat.h>

#include <memory>
#include <stdexcept>
#include <string_view>

#include "bench/load/Loaders.h"
#include "bench/support/WholeFile.h"

namespace tavrel::bench {
namespace {

struct Freed {
  void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<XML_ParserStruct, Freed>;

void XMLCALL IgnoreStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL IgnoreEnd(void*, const XML_Char*) {}
void XMLCALL IgnoreText(void*, const XML_Char*, int) {}

// plist, dict, dict of the tracks, dict of a track.
struct Counter {
  int depth = 0;
  bool amongTracks = false;
  std::int64_t trackCount = 0;
};

void XMLCALL CountStart(void* data, const XML_Char* name, const XML_Char**) {
  auto& counter = *static_cast<Counter*>(data);
  const bool isDict = std::string_view(name) == "dict";
  ++counter.depth;
  if (counter.depth == 3) counter.amongTracks = isDict;
  if (counter.depth == 4 && counter.amongTracks && isDict) ++counter.trackCount;
}

void XMLCALL CountEnd(void* data, const XML_Char*) {
  --static_cast<Counter*>(data)->depth;
}

Parser NewParser() {
  Parser parser(XML_ParserCreate(nullptr));
  if (parser == nullptr) throw std::bad_alloc();
  return parser;
}

void Parse(const Parser& parser, const char* text, std::size_t size) {
  if (XML_Parse(parser.get(), text, static_cast<int>(size), 1) == XML_STATUS_OK) return;
  throw std::runtime_error(std::string("expat: ") +
                           XML_ErrorString(XML_GetErrorCode(parser.get())));
}

// It builds nothing that could be counted: a second parse does that.
std::int64_t CountTracks(const char* text, std::size_t size) {
  const Parser parser = NewParser();
  Counter counter;
  XML_SetUserData(parser.get(), &counter);
  XML_SetElementHandler(parser.get(), CountStart, CountEnd);
  Parse(parser, text, size);
  return counter.trackCount;
}

LoadFigures LoadWithExpat(const std::string& path) {
  LoadMeter meter;
  std::size_t size = 0;
  Buffer buffer = ReadWholeFile(path, size);
  Parser parser = NewParser();
  XML_SetElementHandler(parser.get(), IgnoreStart, IgnoreEnd);
  XML_SetCharacterDataHandler(parser.get(), IgnoreText);
  Parse(parser, buffer.get(), size);
  meter.Loaded();
  meter.Found(CountTracks(buffer.get(), size));

  meter.ReleaseBegins();
  parser.reset();
  buffer.reset();
  return meter.Released();
}

}  // namespace

Loader ExpatLoader() {
  return {"expat, empty handlers", XML_ExpatVersion(), false, LoadWithExpat};
}

}  // namespace tavrel::bench
