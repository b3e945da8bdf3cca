// What machine and which build the figures come from.
#pragma once

#include <string>

#include "bench/report/Report.h"

namespace tavrel::bench {

[[nodiscard]] std::string ProcessorName();

// Processor, huge-page mode, compiler and load average.
void AddMachineFacts(Report& report);

}  // namespace tavrel::bench
