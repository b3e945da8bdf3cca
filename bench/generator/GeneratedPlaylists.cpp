#include "bench/generator/GeneratedPlaylists.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "bench/generator/PlaylistPlan.h"
#include "bench/support/Random.h"

namespace tavrel::bench {
namespace {

constexpr std::uint64_t orderFamily = 4;
constexpr std::uint64_t itemFamily = 5;
constexpr std::uint64_t smartFamily = 6;

using TrackIds = std::vector<std::uint32_t>;

// All tracks in an order of their own: albums shuffled, each in one piece.
TrackIds ShuffleAlbums(const TrackList& tracks, std::uint64_t seed) {
  std::vector<std::uint32_t> albums(tracks.albumStarts.size());
  for (std::size_t i = 0; i < albums.size(); ++i) albums[i] = static_cast<std::uint32_t>(i);
  Random random(SeedOf(seed, orderFamily, 0));
  for (std::size_t i = albums.size(); i > 1; --i) {
    std::swap(albums[i - 1], albums[random.Below(static_cast<std::uint32_t>(i))]);
  }
  TrackIds order;
  order.reserve(tracks.ids.size());
  for (const std::uint32_t album : albums) {
    const std::size_t first = tracks.albumStarts[album];
    const std::size_t end =
        album + 1 < tracks.albumStarts.size() ? tracks.albumStarts[album + 1] : tracks.ids.size();
    for (std::size_t i = first; i < end; ++i) order.push_back(tracks.ids[i]);
  }
  return order;
}

// As people fill playlists: single tracks and whole stretches of an album.
void AppendRuns(TrackIds& items, const TrackIds& ids, std::size_t count, Random& random) {
  const std::size_t end = items.size() + (ids.empty() ? 0 : count);
  while (items.size() < end) {
    std::size_t at = random.Below(static_cast<std::uint32_t>(ids.size()));
    for (std::uint32_t run = 1 + random.LowBelow(12); run > 0 && items.size() < end; --run) {
      items.push_back(ids[at]);
      if (++at == ids.size()) at = 0;
    }
  }
}

// Base64 text that looks like a smart playlist's: a signature, many zeros, rules here and there.
std::string MakeSmartData(std::string_view signature, std::size_t size, Random& random) {
  constexpr std::string_view digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text(signature);
  while (text.size() < size) text += random.Chance(60) ? digits[random.Below(64)] : 'A';
  return text;
}

class PlaylistWriter {
 public:
  PlaylistWriter(PlistWriter& plistWriter, const TrackList& trackList, std::uint64_t librarySeed)
      : writer(plistWriter),
        tracks(trackList),
        seed(librarySeed),
        plans(PlanPlaylists(trackList.ids.size(), librarySeed)),
        order(ShuffleAlbums(trackList, librarySeed)) {}

  PlaylistCounts Write() {
    PlaylistCounts counts;
    counts.playlists = plans.size();
    for (std::size_t i = 0; i < plans.size(); ++i) {
      writer.Begin("dict");
      WriteHead(i);
      if (plans[i].smart) WriteSmartRules(i);
      counts.items += WriteItems(ItemsOf(i));
      writer.End("dict");
    }
    return counts;
  }

 private:
  void WriteHead(std::size_t position) {
    const PlaylistPlan& plan = plans[position];
    writer.String("Name", plan.name);
    if (plan.type == PlaylistType::Master) writer.Boolean("Master", true);
    writer.Integer("Playlist ID", tracks.ids.empty() ? position : tracks.ids.back() + 3 + position);
    writer.PersistentId("Playlist Persistent ID", plan.persistentId);
    if (plan.parent != 0) {
      writer.PersistentId("Parent Persistent ID", plans[plan.parent].persistentId);
    }
    if (plan.kind != 0) writer.Integer("Distinguished Kind", plan.kind);
    if (!plan.mediaKey.empty()) writer.Boolean(plan.mediaKey, true);
    if (plan.type == PlaylistType::Master) writer.Boolean("Visible", false);
    writer.Boolean("All Items", true);
    if (plan.type == PlaylistType::Folder) writer.Boolean("Folder", true);
  }

  void WriteSmartRules(std::size_t position) {
    Random random(SeedOf(seed, smartFamily, position));
    writer.Data("Smart Info", MakeSmartData("AQEAAwAAAAIAAAAZ", 152, random));
    const std::uint32_t ruleCount = random.Between(1, 24);
    writer.Data("Smart Criteria",
                MakeSmartData("U0xzdAABAAEAAAAC", 184 + std::size_t{168} * ruleCount, random));
  }

  TrackIds ItemsOf(std::size_t position) const {
    const PlaylistPlan& plan = plans[position];
    TrackIds items;
    switch (plan.type) {
      case PlaylistType::Master:
        return order;
      case PlaylistType::BuiltIn: {
        // A stretch of the shuffled albums: iTunes lists no track twice here.
        Random random(SeedOf(seed, itemFamily, position));
        const auto room = static_cast<std::uint32_t>(order.size() - plan.itemCount);
        const auto first = order.begin() + random.Below(room + 1);
        items.assign(first, first + static_cast<std::ptrdiff_t>(plan.itemCount));
        return items;
      }
      case PlaylistType::Folder:
        for (std::size_t i = 1; i <= plan.childCount; ++i) {
          const TrackIds child = ItemsOf(position + i);
          items.insert(items.end(), child.begin(), child.end());
        }
        return items;
      case PlaylistType::Own:
        break;
    }
    Random random(SeedOf(seed, itemFamily, position));
    AppendRuns(items, tracks.ids, plan.itemCount, random);
    return items;
  }

  // iTunes leaves the whole key out when a playlist is empty.
  std::size_t WriteItems(const TrackIds& items) {
    if (items.empty()) return 0;
    writer.Key("Playlist Items");
    writer.Begin("array");
    for (const std::uint32_t id : items) {
      writer.Begin("dict");
      writer.Integer("Track ID", id);
      writer.End("dict");
    }
    writer.End("array");
    return items.size();
  }

  PlistWriter& writer;
  const TrackList& tracks;
  std::uint64_t seed;
  std::vector<PlaylistPlan> plans;
  TrackIds order;
};

}  // namespace

PlaylistCounts WritePlaylists(PlistWriter& writer, const TrackList& tracks, std::uint64_t seed) {
  writer.Key("Playlists");
  writer.Begin("array");
  const PlaylistCounts counts = PlaylistWriter(writer, tracks, seed).Write();
  writer.End("array");
  return counts;
}

}  // namespace tavrel::bench
