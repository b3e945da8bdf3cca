#include "host/library/AlbumGrouping.h"

#include <algorithm>

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

void SetKey(std::string& key, std::string_view title, std::string_view other) {
  key.assign(title).append(1, '\0').append(other);
}

std::string_view FolderOf(std::string_view path) {
  return path.substr(0, path.rfind('/') + 1);
}

std::string_view ArtistOf(const Song& song) {
  const std::string_view albumArtist = song.albumArtist.value_or("");
  if (!albumArtist.empty()) return albumArtist;
  return song.isCompilation ? kVariousArtists : song.artist.value_or("");
}

}  // namespace

std::optional<std::size_t> AlbumGrouping::Add(const Song& song) {
  const std::string_view title = song.album.value_or("");
  if (title.empty()) return std::nullopt;
  SetKey(key_, title, host::ArtistOf(song));
  const std::string_view folder = FolderOf(song.location.value_or(""));
  if (key_ == lastKey_ && folder == lastFolder_) return lastPart_;
  const std::size_t part = PartOf(title, host::ArtistOf(song));
  lastKey_ = key_;
  lastFolder_ = folder;
  lastPart_ = part;
  if (!folder.empty()) {
    SetKey(key_, parts_[part].title, folder);
    const auto [number, isNew] = byFolder_.Of(key_);
    if (isNew) partsByFolder_.push_back(part);
    Join(part, partsByFolder_[number]);
  }
  return part;
}

// The part of the song whose key that is.
std::size_t AlbumGrouping::PartOf(std::string_view title, std::string_view artist) {
  const auto [written, isNew] = byArtist_.Of(key_);
  if (!isNew) return partsByArtist_[written];
  partsByArtist_.push_back(parts_.size());
  Part part{Compose(title), Compose(artist), parts_.size()};
  std::string key;
  SetKey(key, part.title, part.artist);
  const auto [composed, isFirst] = byArtist_.Of(key);
  if (isFirst) {
    partsByArtist_.push_back(parts_.size());
  } else if (composed != written) {
    return partsByArtist_[written] = partsByArtist_[composed];
  }
  parts_.push_back(std::move(part));
  return partsByArtist_[written];
}

std::optional<std::size_t> AlbumGrouping::Find(const Song& song) const {
  std::string key;
  SetKey(key, Compose(song.album.value_or("")), Compose(host::ArtistOf(song)));
  const auto known = byArtist_.Find(key);
  return known ? std::optional(partsByArtist_[*known]) : std::nullopt;
}

std::vector<std::size_t> AlbumGrouping::Albums() const {
  std::vector<std::size_t> albums(parts_.size());
  for (std::size_t part = 0; part < parts_.size(); ++part) {
    const std::size_t earlier = parts_[part].earlier;
    albums[part] = earlier == part ? part : albums[earlier];
  }
  return albums;
}

// Links point to earlier parts only. Each look halves the way for the next one.
void AlbumGrouping::Join(std::size_t part, std::size_t other) {
  const auto first = [this](std::size_t at) {
    while (parts_[at].earlier != at) {
      at = parts_[at].earlier = parts_[parts_[at].earlier].earlier;
    }
    return at;
  };
  const std::size_t one = first(part);
  const std::size_t two = first(other);
  parts_[std::max(one, two)].earlier = std::min(one, two);
}

}  // namespace tavrel::host
