#include "bench/startup/SharedObject.h"

#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tavrel::bench {
namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);
using Entry = ElfW(Dyn);

class File {
 public:
  explicit File(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(stream), {});
    if (bytes_.compare(0, SELFMAG, ELFMAG) != 0) Fail();
    const auto header = At<Header>(0);
    if (header.e_phentsize != sizeof(Segment)) Fail();
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
      segments_.push_back(At<Segment>(header.e_phoff + i * sizeof(Segment)));
    }
  }

  [[nodiscard]] std::vector<Entry> DynamicSection() const {
    std::vector<Entry> entries;
    for (const Segment& segment : segments_) {
      if (segment.p_type != PT_DYNAMIC) continue;
      for (std::size_t at = 0; at < segment.p_filesz; at += sizeof(Entry)) {
        entries.push_back(At<Entry>(segment.p_offset + at));
      }
    }
    return entries;
  }

  // The text at an address of the loaded object.
  [[nodiscard]] std::string TextAt(std::size_t address) const {
    for (const Segment& segment : segments_) {
      const bool inside = segment.p_type == PT_LOAD && address >= segment.p_vaddr &&
                          address < segment.p_vaddr + segment.p_filesz;
      const std::size_t at = segment.p_offset + address - segment.p_vaddr;
      if (inside && at < bytes_.size()) return bytes_.c_str() + at;
    }
    Fail();
  }

 private:
  [[noreturn]] static void Fail() { throw std::runtime_error("not a usable shared object"); }

  template <class Record>
  [[nodiscard]] Record At(std::size_t offset) const {
    if (offset > bytes_.size() || bytes_.size() - offset < sizeof(Record)) Fail();
    Record record;
    std::memcpy(&record, bytes_.data() + offset, sizeof record);
    return record;
  }

  std::string bytes_;
  std::vector<Segment> segments_;
};

// 0 for what the section does not mention.
std::size_t Find(const std::vector<Entry>& entries, decltype(Entry::d_tag) tag) {
  for (const Entry& entry : entries) {
    if (entry.d_tag == tag) return entry.d_un.d_val;
  }
  return 0;
}

}  // namespace

SharedObject ReadSharedObject(const std::string& path) {
  const File file(path);
  const std::vector<Entry> entries = file.DynamicSection();
  SharedObject object;
  const bool withAddend = Find(entries, DT_PLTREL) != DT_REL;
  const std::size_t relocationBytes = withAddend ? sizeof(ElfW(Rela)) : sizeof(ElfW(Rel));
  object.relocations =
      (Find(entries, DT_RELASZ) + Find(entries, DT_RELSZ) + Find(entries, DT_PLTRELSZ)) /
      relocationBytes;
  object.constructors = Find(entries, DT_INIT_ARRAYSZ) / sizeof(void*);
  for (const Entry& entry : entries) {
    if (entry.d_tag != DT_NEEDED) continue;
    object.needed.push_back(file.TextAt(Find(entries, DT_STRTAB) + entry.d_un.d_val));
  }
  std::sort(object.needed.begin(), object.needed.end());
  return object;
}

}  // namespace tavrel::bench
