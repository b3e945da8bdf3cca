#include "bench/floors/FloorSteps.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "bench/support/Clocks.h"
#include "bench/support/InstructionSets.h"
#include "bench/support/Require.h"
#include "system/Files.h"
#include "text/TextFile.h"
#include "text/Utf8.h"
#include "xml/Records.h"
#include "xml/StructuralIndex.h"

namespace tavrel::bench {
namespace {

constexpr std::size_t kSmallPage = 4096;

system::FileDescriptor Open(const FloorInput& input) {
  std::size_t size = 0;
  system::FileDescriptor file = system::OpenRegularFile(input.path.c_str(), size);
  Require(file && size == input.fileBytes, "the file has changed");
  return file;
}

void ReadWhole(const FloorInput& input, char* to) {
  const system::FileDescriptor file = Open(input);
  std::size_t filled = 0;
  while (filled < input.fileBytes) {
    const ssize_t got = read(file.get(), to + filled, input.fileBytes - filled);
    Require(got > 0, "the file cannot be read");
    filled += static_cast<std::size_t>(got);
  }
}

void ReadChecked(const FloorInput& input, system::ZeroedBlock block) {
  const system::FileDescriptor file = Open(input);
  text::FileText text{block};
  Require(text::ReadText(file.get(), input.fileBytes, text) && text.length == input.fileBytes,
          "the file is not UTF-8");
}

// Before a step that takes `size` bytes of fresh memory.
void WarmMemoryFor(std::size_t size) {
  WarmMemoryHere(size + size / 4);
}

// As a load does it, memory included.
double ReadLikeALoad(const FloorInput& input) {
  WarmMemoryFor(input.fileBytes);
  text::FileText text;
  const double seconds = ProcessorSecondsOf([&] { text = text::ReadFileText(input.path.c_str()); });
  Require(text.length == input.fileBytes, "the file is not UTF-8");
  system::ReleaseBlock(text.block);
  return seconds;
}

// A page is copied when it is first written to.
double WriteMapped(const FloorInput& input) {
  WarmMemoryFor(input.fileBytes);
  void* address = MAP_FAILED;
  const double seconds = ProcessorSecondsOf([&] {
    const system::FileDescriptor file = Open(input);
    address = mmap(nullptr, input.fileBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE, file.get(), 0);
    Require(address != MAP_FAILED, "the file cannot be mapped");
    auto* bytes = static_cast<volatile char*>(address);
    for (std::size_t at = 0; at < input.fileBytes; at += kSmallPage) bytes[at] = 0;
  });
  munmap(address, input.fileBytes);
  return seconds;
}

template <class Work>
double InFreshRegion(std::size_t size, Pages pages, const Work& work) {
  WarmMemoryFor(size);
  std::unique_ptr<Region> region;
  return ProcessorSecondsOf([&] {
    region = std::make_unique<Region>(size, pages);
    work(*region);
  });
}

std::size_t CountOpeners(const FloorInput& input) {
  const char* at = input.text.data();
  const char* end = at + input.fileBytes;
  std::size_t count = 0;
  while ((at = static_cast<const char*>(
              std::memchr(at, '<', static_cast<std::size_t>(end - at)))) != nullptr) {
    ++count;
    ++at;
  }
  return count;
}

// As the pass has it done: a block at a time, the positions always in the same place.
std::size_t CountTags(const FloorInput& input, xml::IndexFunction index) {
  constexpr std::size_t kBlock = 8192;
  std::uint32_t positions[kBlock + xml::kIndexSlack];
  std::size_t count = 0;
  for (std::size_t at = 0; at < input.fileBytes; at += kBlock) {
    const std::size_t bytes = std::min(kBlock, input.fileBytes - at);
    count += index(input.text.data() + at, bytes, static_cast<std::uint32_t>(at), positions);
  }
  return count;
}

void StoreRecords(Region& region) {
  auto* records = reinterpret_cast<TBXMLElement*>(region.data());
  const std::size_t count = region.size() / sizeof *records;
  for (std::size_t i = 0; i < count; ++i) {
    TBXMLElement* other = records + i / 2;
    char* bytes = region.data() + i;
    records[i] = {bytes, bytes, nullptr, other, other, other, other, other};
  }
}

double GiveBack(std::size_t size, Pages pages) {
  WarmMemoryFor(size);
  auto region = std::make_unique<Region>(size, pages);
  region->Touch();
  return ProcessorSecondsOf([&] { region.reset(); });
}

}  // namespace

FloorInput::FloorInput(const std::string& file)
    : path(file),
      fileBytes([&file] {
        std::size_t size = 0;
        Require(system::OpenRegularFile(file.c_str(), size) && size > 0,
                "the file is empty or cannot be read");
        return size;
      }()),
      text(fileBytes + 1, Pages::kHuge) {
  ReadWhole(*this, text.data());
  for (std::size_t i = 0; i < fileBytes; ++i) {
    const char byte = text.data()[i];
    const char next = text.data()[i + 1];  // the last one is followed by a zero byte
    tags += byte == '<' || byte == '>' ? 1 : 0;
    openers += byte == '<' ? 1 : 0;
    elements += byte == '<' && next != '/' && next != '!' && next != '?' ? 1 : 0;
  }
  records = std::make_unique<Region>(elements * sizeof(TBXMLElement), Pages::kHuge);
  records->Touch();
}

std::vector<FloorGroup> ReadingGroups(FloorInput& input) {
  const std::size_t size = input.fileBytes + 1;
  const auto plain = [&input](Region& region) { ReadWhole(input, region.data()); };
  const auto checked = [&input](Region& region) { ReadChecked(input, region.block()); };
  const auto fresh = [size](Pages pages, const auto& work) {
    return [=] { return InFreshRegion(size, pages, work); };
  };
  const auto resident = [&input](const auto& work) {
    return [&input, work] { return ProcessorSecondsOf([&] { work(input.text); }); };
  };
  return {
      {"reading into resident memory",
       {{"read(2)", resident(plain)}, {"read and check", resident(checked)}}},
      {"reading into fresh huge pages",
       {{"read(2)", fresh(Pages::kHuge, plain)},
        {"read and check, as a load does it", [&input] { return ReadLikeALoad(input); }}}},
      {"reading into fresh 4 KB pages",
       {{"read(2)", fresh(Pages::kSmall, plain)},
        {"read and check", fresh(Pages::kSmall, checked)},
        {"mmap(2) and a byte written to each page", [&input] { return WriteMapped(input); }}}},
  };
}

FloorGroup ScanningGroup(FloorInput& input) {
  std::vector<Step> steps;
  // Work that counts; figures of one that finds another number are worth nothing.
  const auto add = [&](const std::string& name, std::size_t expected, const auto& count) {
    steps.push_back({name, [=] {
                       std::size_t found = 0;
                       const double seconds = ProcessorSecondsOf([&] { found = count(); });
                       if (found != expected)
                         throw std::runtime_error(name + " finds another number");
                       return seconds;
                     }});
  };
  add("memchr loop over '<'", input.openers, [&input] { return CountOpeners(input); });
  for (const system::InstructionSet set : ComparedSets()) {
    const xml::IndexFunction index = xml::IndexFunctionFor(set);
    add("structural index, " + NameOf(set), input.tags,
        [&input, index] { return CountTags(input, index); });
  }
  for (const system::InstructionSet set : ComparedSets()) {
    if (set > system::InstructionSet::kAvx2)
      continue;  // a wider one is no faster, and has no check
    add("UTF-8 check, " + NameOf(set), input.fileBytes, [&input, set] {
      return text::ValidTextPrefix(input.text.data(), input.fileBytes, set).length;
    });
  }
  return {"going over the text", std::move(steps)};
}

FloorGroup RecordGroup(FloorInput& input) {
  const std::size_t size = input.records->size();
  const auto fresh = [size](Pages pages) {
    return [=] { return InFreshRegion(size, pages, StoreRecords); };
  };
  const auto giveBack = [size](Pages pages) { return [=] { return GiveBack(size, pages); }; };
  return {"records",
          {
              {"stored, resident",
               [&input] { return ProcessorSecondsOf([&] { StoreRecords(*input.records); }); }},
              {"stored, fresh huge pages", fresh(Pages::kHuge)},
              {"stored, fresh 4 KB pages", fresh(Pages::kSmall)},
              {"given back, huge pages", giveBack(Pages::kHuge)},
              {"given back, 4 KB pages", giveBack(Pages::kSmall)},
          }};
}

}  // namespace tavrel::bench
