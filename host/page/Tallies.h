// What the plots of the page show, counted from the columns of the songs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/page/Contents.h"
#include "host/page/Plots.h"
#include "host/page/Words.h"

namespace tavrel::host {

// The largest first; of equal ones those that come first in the library.
[[nodiscard]] std::vector<PlotEntry> SongsPerGenre(const PageContents& contents);
[[nodiscard]] std::vector<PlotEntry> HoursPerArtist(const PageContents& contents,
                                                    const Words& words);

// In the order of what they count. Songs that do not have it are not counted.
[[nodiscard]] std::vector<PlotEntry> SongsPerDecade(const PageContents& contents,
                                                    const Words& words);
[[nodiscard]] std::vector<PlotEntry> SongsPerRating(const PageContents& contents,
                                                    const Words& words);
[[nodiscard]] std::vector<PlotEntry> SongsPerPlays(const PageContents& contents,
                                                   const Words& words);
[[nodiscard]] std::vector<PlotYear> AddedPerMonth(const PageContents& contents);

// What songs and albums lack, and how many; what none lacks is left out.
[[nodiscard]] std::vector<PlotEntry> Missing(const PageContents& contents,
                                             std::size_t albumsWithoutCover, const Words& words);

}  // namespace tavrel::host
