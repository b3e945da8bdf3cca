// What the page shows before any script runs, and without one.
#pragma once

#include <string>
#include <vector>

#include "host/page/Contents.h"
#include "host/page/Words.h"

namespace tavrel::host {

// The numbers of the albums with the most plays, of equal ones those with the most songs.
[[nodiscard]] std::vector<std::size_t> TopAlbums(const PageContents& contents);

// "203 songs", and so on.
[[nodiscard]] std::string Figures(const PageContents& contents, const Words& words);

// covers: for each of them the picture as a data URL; empty: none.
[[nodiscard]] std::string AlbumList(const PageContents& contents,
                                    const std::vector<std::size_t>& albums,
                                    const std::vector<std::string>& covers);

[[nodiscard]] std::string AllPlots(const PageContents& contents, std::size_t albumsWithoutCover,
                                   const Words& words);

}  // namespace tavrel::host
