// Small covers for the page: many to a picture, so that a browser decodes only those that are looked at.
#pragma once

#include <cstddef>

#include "host/library/Session.h"
#include "host/page/Contents.h"
#include "host/page/PageFile.h"

namespace tavrel::host {

// Covers for the albums that are played most, no more than `most`; the sheets hold them in the order of artists
// and titles. A picture that cannot be decoded is left out.
// Cost: a look at a cache file for each album, and decoding of the pictures.
[[nodiscard]] PageCovers MakeCovers(const PageContents& contents, std::size_t most,
                                    Session& session);

}  // namespace tavrel::host
