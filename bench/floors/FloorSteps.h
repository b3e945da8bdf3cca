// What a load cannot do without, or could do instead, one step at a time.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/report/Turns.h"
#include "bench/support/Region.h"

namespace tavrel::bench {

// Steps that are compared with each other.
struct FloorGroup {
  std::string name;
  std::vector<Step> steps;
};

// The file and memory that is there already. All steps borrow it.
struct FloorInput {
  explicit FloorInput(const std::string& file);

  std::string path;
  std::size_t fileBytes;
  std::size_t elements = 0;
  std::size_t tags = 0;     // '<' and '>'
  std::size_t openers = 0;  // '<'
  Region text;
  std::unique_ptr<Region> records;
};

// A group for each kind of memory: resident, fresh huge pages, fresh 4 KB pages. Its first two steps
// are read(2), and the same with the check of the text.
[[nodiscard]] std::vector<FloorGroup> ReadingGroups(FloorInput& input);
[[nodiscard]] FloorGroup ScanningGroup(FloorInput& input);
[[nodiscard]] FloorGroup RecordGroup(FloorInput& input);

}  // namespace tavrel::bench
