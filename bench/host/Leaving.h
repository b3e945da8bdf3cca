// The commands by which people leave with their music: export, check and copy, where every file is there.
#pragma once

#include <cstdint>

#include "bench/host/HostBench.h"
#include "bench/report/Report.h"

namespace tavrel::bench {

// Each beside a bare load, one stat() a file, and writing what it writes; and three of them beside Python's
// plistlib doing the same. Makes an empty file for each song that has one.
void MeasureLeaving(const HostBench& bench, std::uint32_t rounds, std::uint32_t peerRounds,
                    Report& report);

}  // namespace tavrel::bench
