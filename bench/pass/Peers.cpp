#include "bench/pass/Peers.h"

#include <new>
#include <stdexcept>

#include "bench/support/Clocks.h"
#include "system/Memory.h"

#if defined(TAVREL_HAS_PUGIXML)
#include <pugixml.hpp>
#endif
#if defined(TAVREL_HAS_RAPIDXML)
#include <memory>
#include <rapidxml/rapidxml.hpp>
#endif

namespace tavrel::bench {
namespace {

system::ZeroedBlock region;
std::size_t taken = 0;

[[maybe_unused]] void* Take(std::size_t bytes) {
  constexpr std::size_t kAlignment = 16;
  bytes = (bytes + kAlignment - 1) / kAlignment * kAlignment;
  if (bytes > region.mappedBytes - taken) return nullptr;
  void* piece = region.address + taken;
  taken += bytes;
  return piece;
}

[[maybe_unused]] void KeepResident(void*) {}

#if defined(TAVREL_HAS_RAPIDXML)

void* TakeOrThrow(std::size_t bytes) {
  void* piece = Take(bytes);
  if (piece == nullptr) throw std::bad_alloc();
  return piece;
}

double RunRapidxml(char* text, std::size_t) {
  taken = 0;
  const auto document = std::make_unique<rapidxml::xml_document<>>();
  document->set_allocator(TakeOrThrow, KeepResident);
  const double start = ProcessorTime();
  document->parse<rapidxml::parse_fastest>(text);
  return ProcessorTime() - start;
}

#endif

#if defined(TAVREL_HAS_PUGIXML)

double RunPugixml(char* text, std::size_t length) {
  taken = 0;
  pugi::set_memory_management_functions(Take, KeepResident);
  pugi::xml_document document;
  const double start = ProcessorTime();
  const pugi::xml_parse_result result = document.load_buffer_inplace(
      text, length, pugi::parse_minimal | pugi::parse_embed_pcdata, pugi::encoding_utf8);
  const double seconds = ProcessorTime() - start;
  if (!result) throw std::runtime_error(std::string("pugixml: ") + result.description());
  return seconds;
}

#endif

}  // namespace

void ReservePeerMemory(std::size_t bytes) {
  region = system::AllocateBlock(bytes);
  if (region.address == nullptr) throw std::bad_alloc();
}

Peer Rapidxml() {
#if defined(TAVREL_HAS_RAPIDXML)
  return {"rapidxml, parse_fastest", "as installed", RunRapidxml};
#else
  return {"rapidxml", "not there when this was built", nullptr};
#endif
}

Peer Pugixml() {
#if defined(TAVREL_HAS_PUGIXML)
  return {"pugixml, in place", std::to_string(PUGIXML_VERSION), RunPugixml};
#else
  return {"pugixml", "not there when this was built", nullptr};
#endif
}

}  // namespace tavrel::bench
