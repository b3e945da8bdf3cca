#include "bench/load/Phases.h"

#include <stdlib.h>
#include <sys/resource.h>

#include <new>
#include <stdexcept>

#include "agent/Exports.h"
#include "bench/support/Clocks.h"
#include "bench/support/LinkedHome.h"
#include "system/Files.h"
#include "system/Memory.h"
#include "text/TextFile.h"
#include "xml/TBXML.h"

namespace tavrel::bench {
namespace {

double PageFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_minflt);
}

template <class Work>
Cost CostOf(const Work& work) {
  const double faults = PageFaults();
  const double processorStart = ProcessorTime();
  const double seconds = WallSecondsOf(work);
  return {seconds, ProcessorTime() - processorStart, PageFaults() - faults};
}

// The global record, as a load makes it.
void MakeGlobalRecord() {
  if (MakeLibrary() == nullptr) throw std::bad_alloc();
}

std::size_t CountElements(const TBXML& document) {
  const TBXMLFields& fields = document.fields();
  std::size_t count = static_cast<std::size_t>(fields.currentElement) + 1;
  for (const TBXMLElementBuffer* chunk = fields.currentElementBuffer; chunk->previous != nullptr;) {
    chunk = chunk->previous;
    count += kRecordsPerChunk;
  }
  return count;
}

}  // namespace

Parts RunParts(const std::string& file) {
  MakeGlobalRecord();
  Parts parts{};
  text::FileText text;
  parts.read = CostOf([&] { text = text::ReadFileText(file.c_str()); });
  if (text.block.address == nullptr) throw std::runtime_error("the library cannot read the file");

  TBXML* document = TBXML::alloc().release();
  if (document == nullptr) throw std::bad_alloc();
  document->listElementsOfLevel(4);  // as for every library file
  parts.pass = CostOf([&] { document->initWithFileText(text); });
  g_pGlobal->document = document;
  parts.tracks = CostOf([] { CreateTrackArray(); });
  parts.playlists = CostOf([] { CreatePlaylistArray(); });
  parts.trackCount = g_pGlobal->trackCount;
  parts.elements = CountElements(*document);
  return parts;
}

Whole RunWhole(const std::string& file) {
  const LinkedHome home(file);
  setenv("HOME", home.path().c_str(), 1);
  Whole whole{};
  whole.load = CostOf([] { AgentInitializerImp(); });
  if (g_pGlobal == nullptr) throw std::bad_alloc();
  whole.trackCount = g_pGlobal->trackCount;
  whole.release = CostOf([] { AgentFinalizerImp(); });
  return whole;
}

Floor RunFloor(const std::string& path, std::size_t elements) {
  Floor floor{};
  std::size_t size = 0;
  const system::FileDescriptor file = system::OpenRegularFile(path.c_str(), size);
  floor.read = CostOf([&] {
    char* text = system::AllocateBlock(size + 1).address;
    if (text == nullptr || system::ReadAt(file.get(), 0, text, size) != size) {
      throw std::runtime_error("the file cannot be read");
    }
  });
  floor.records = CostOf([&] {
    auto* records = reinterpret_cast<TBXMLElement*>(
        system::AllocateBlock(elements * sizeof(TBXMLElement)).address);
    if (records == nullptr) throw std::bad_alloc();
    // What a leaf gets.
    char text = 0;
    for (TBXMLElement* record = records; record < records + elements; ++record) {
      record->name = &text;
      record->text = &text;
      record->parentElement = records;
      record->nextSibling = record;
      record->previousSibling = record;
    }
  });
  return floor;
}

}  // namespace tavrel::bench
