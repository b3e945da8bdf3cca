#include "host/page/CoverSheets.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <optional>
#include <tuple>
#include <utility>

#include "host/artwork/CacheFolder.h"
#include "host/artwork/Covers.h"
#include "host/artwork/Pixels.h"
#include "host/artwork/Scaling.h"
#include "host/output/Failure.h"
#include "host/output/Progress.h"
#include "host/output/Text.h"
#include "host/page/FirstScreen.h"
#include "host/page/Html.h"

namespace tavrel::host {
namespace {

constexpr std::int32_t kSide = 96;   // of a small cover, in pixels
constexpr std::int32_t kAcross = 8;  // covers in a row of a sheet, and rows
constexpr std::int32_t kTopSide = 240;
constexpr int kSheetQuality = 80;
constexpr char kBackground = '\x80';  // around a cover that is no square

std::size_t Number(std::int32_t number) {
  return static_cast<std::size_t>(number);
}

// One picture that holds many covers.
class Sheet {
 public:
  [[nodiscard]] bool IsFull() const { return count_ == kAcross * kAcross; }
  [[nodiscard]] bool IsEmpty() const { return count_ == 0; }

  // Not full. The cover is no larger than its place, in the middle of which it comes.
  void Add(const Pixels& cover) {
    if (IsEmpty()) pixels_.bytes.assign(Number(kWidth) * Number(kWidth) * 4, kBackground);
    const std::int32_t left = count_ % kAcross * kSide + (kSide - cover.width) / 2;
    const std::int32_t top = count_ / kAcross * kSide + (kSide - cover.height) / 2;
    const std::size_t length = Number(cover.width) * 4;
    for (std::int32_t row = 0; row < cover.height; ++row) {
      const std::size_t to = (Number(top + row) * Number(kWidth) + Number(left)) * 4;
      std::memcpy(pixels_.bytes.data() + to, cover.bytes.data() + Number(row) * length, length);
    }
    ++count_;
  }

  // As a JPEG file; empty afterwards.
  std::string Take() {
    count_ = 0;
    return JpegOf(pixels_, kSheetQuality);
  }

 private:
  static constexpr std::int32_t kWidth = kSide * kAcross;

  Pixels pixels_{kWidth, kWidth, {}};
  std::int32_t count_ = 0;
};

// Whether there is anything to look through.
bool HasCache(const Session& session) {
  std::error_code error;
  const std::filesystem::path folder =
      std::filesystem::path(session.libraryPath).parent_path() / "Album Artwork";
  return std::filesystem::is_directory(folder, error);
}

class CoverMaker {
 public:
  CoverMaker(const PageContents& contents, Session& session)
      : contents_(contents),
        session_(session),
        cache_(session.library, session.libraryPath),
        covers_(session.library, cache_) {}

  PageCovers Make(std::size_t most) {
    PageCovers made;
    made.places = {std::vector<std::int64_t>(contents_.albums.size(), 0), kSide, kAcross,
                   std::int64_t{kAcross} * kAcross};
    std::vector<std::size_t> albums = WithCacheFile();
    made.albumsWithout = contents_.albums.size() - albums.size();
    albums = Chosen(std::move(albums), most);
    const std::vector<std::size_t> top = TopAlbums(contents_);
    Progress progress(albums.size(), session_.terminal, session_.output);
    made.top.resize(top.size());
    Sheet sheet;
    std::int64_t count = 0;
    for (const std::size_t album : albums) {
      progress.Step();
      const std::optional<Picture> picture = PictureOf(album);
      if (!picture) continue;
      const std::optional<Pixels> cover = Decoded(*picture, kSide);
      if (!cover) continue;
      sheet.Add(*cover);
      made.places.numbers[album] = ++count;
      if (sheet.IsFull()) made.pictures.push_back(sheet.Take());
      const auto place = std::find(top.begin(), top.end(), album);
      if (place != top.end()) {
        made.top[static_cast<std::size_t>(place - top.begin())] = AddressOf(*picture);
      }
    }
    if (!sheet.IsEmpty()) made.pictures.push_back(sheet.Take());
    return made;
  }

 private:
  std::vector<std::size_t> WithCacheFile() const {
    std::vector<std::size_t> albums;
    for (std::size_t i = 0; i < contents_.albums.size(); ++i) {
      const std::vector<std::int32_t>& songs = contents_.albums[i].positions;
      if (std::any_of(songs.begin(), songs.end(),
                      [this](std::int32_t song) { return !cache_.FileOf(Number(song)).empty(); })) {
        albums.push_back(i);
      }
    }
    return albums;
  }

  // Those that are played most, in the order of the wall.
  std::vector<std::size_t> Chosen(std::vector<std::size_t> albums, std::size_t most) const {
    std::stable_sort(albums.begin(), albums.end(), [this](std::size_t left, std::size_t right) {
      const PageAlbum& one = contents_.albums[left];
      const PageAlbum& two = contents_.albums[right];
      return std::tie(two.plays, two.songs) < std::tie(one.plays, one.songs);
    });
    if (albums.size() > most) albums.resize(most);
    return InOrderOfTheWall(albums);
  }

  std::vector<std::size_t> InOrderOfTheWall(const std::vector<std::size_t>& albums) const {
    std::vector<std::pair<std::string, std::size_t>> named;
    for (const std::size_t album : albums) {
      const PageAlbum& facts = contents_.albums[album];
      named.emplace_back(Fold(facts.artist) + '\0' + Fold(facts.title), album);
    }
    std::sort(named.begin(), named.end());
    std::vector<std::size_t> ordered;
    for (const auto& [name, album] : named) ordered.push_back(album);
    return ordered;
  }

  std::optional<Picture> PictureOf(std::size_t album) {
    for (const std::int32_t song : contents_.albums[album].positions) {
      if (auto picture = covers_.Of(song)) return picture;
    }
    return std::nullopt;
  }

  static std::optional<Pixels> Decoded(const Picture& picture, std::int32_t side) {
    try {
      return ScaledPixels(picture, side);
    } catch (const Failure&) {
      return std::nullopt;
    }
  }

  static std::string AddressOf(const Picture& picture) {
    const std::optional<Pixels> pixels = Decoded(picture, kTopSide);
    return pixels ? "data:image/jpeg;base64," + Base64Text(JpegOf(*pixels, kSheetQuality)) : "";
  }

  const PageContents& contents_;
  Session& session_;
  CacheFolder cache_;
  Covers covers_;
};

}  // namespace

PageCovers MakeCovers(const PageContents& contents, std::size_t most, Session& session) {
  if (most == 0 || !HasCache(session)) return {};
  return CoverMaker(contents, session).Make(most);
}

}  // namespace tavrel::host
