#include "host/artwork/Covers.h"

#include <utility>

#include "host/artwork/Scaling.h"
#include "host/output/Failure.h"

namespace tavrel::host {

Artwork Covers::Open(std::int32_t song) {
  const std::string file = cache_.FileOf(static_cast<std::size_t>(song));
  if (cache_.IsEmpty() || withoutPicture_.contains(file)) return {library_, nullptr};
  Artwork artwork(library_, library_.openArtworkAny(songs_, song));
  if (!artwork.IsOpen() && !file.empty()) {
    damaged_.insert(file);
    withoutPicture_.insert(file);
  }
  return artwork;
}

std::optional<Picture> Covers::In(const Artwork& artwork, const std::string& file) {
  auto picture = artwork.PictureFor(longestSide_);
  try {
    if (picture && longestSide_ > 0) return Scaled(std::move(*picture), longestSide_);
    if (picture) return picture;
    if (!artwork.Images().empty()) damaged_.insert(file);
  } catch (const Failure& failure) {
    notScaled_.push_back(file + ": " + failure.what());
  }
  if (!file.empty()) withoutPicture_.insert(file);
  return std::nullopt;
}

std::optional<Picture> Covers::Of(std::int32_t song) {
  return In(Open(song), cache_.FileOf(static_cast<std::size_t>(song)));
}

const Picture* OneCover::Of(std::int32_t song) {
  const std::string file = cache_.FileOf(static_cast<std::size_t>(song));
  if (picture_ && (song == song_ || (!file.empty() && file == file_))) return &*picture_;
  const Artwork artwork = covers_.Open(song);
  if (!artwork.IsOpen()) return nullptr;
  picture_.reset();  // before the next one comes
  picture_ = covers_.In(artwork, file);
  if (!picture_) return nullptr;
  song_ = song;
  file_ = file;
  return &*picture_;
}

}  // namespace tavrel::host
