#include "bench/generator/PlaylistPlan.h"

#include "bench/generator/Texts.h"
#include "bench/support/Random.h"

namespace tavrel::bench {
namespace {

constexpr std::uint64_t planFamily = 3;
constexpr std::size_t playlistCount = 208;
// Items per thousand tracks in all playlists but the master.
constexpr std::size_t itemsPerMille = 510;

struct BuiltIn {
  std::string_view name;
  std::uint32_t kind;
  std::string_view mediaKey;
  std::size_t perMille;  // items per thousand tracks
  bool smart;
};

constexpr BuiltIn builtIns[] = {
    {"Music", 4, "Music", 200, false},
    {"Movies", 2, "Movies", 4, false},
    {"TV Shows", 3, "TV Shows", 6, false},
    {"Podcasts", 10, "Podcasts", 20, false},
    {"iTunes U", 31, "iTunesU", 2, false},
    {"Books", 5, "Books", 4, false},
    {"Purchased", 19, "Purchased Music", 30, false},
    {"Genius", 26, "", 1, false},
    {"iTunes DJ", 22, "Party Shuffle", 1, true},
    {"90’s Music", 200, "", 12, true},
    {"Classical Music", 206, "", 7, true},
    {"Music Videos", 205, "", 1, true},
    {"My Top Rated", 201, "", 6, true},
    {"Recently Added", 204, "", 5, true},
    {"Recently Played", 203, "", 3, true},
    {"Top 25 Most Played", 202, "", 1, true},
};

void AppendBuiltIns(std::vector<PlaylistPlan>& plans, std::size_t trackCount) {
  for (const BuiltIn& builtIn : builtIns) {
    PlaylistPlan plan;
    plan.type = PlaylistType::BuiltIn;
    plan.name = builtIn.name;
    plan.kind = builtIn.kind;
    plan.mediaKey = builtIn.mediaKey;
    plan.smart = builtIn.smart;
    plan.itemCount = trackCount * builtIn.perMille / 1000;
    plans.push_back(std::move(plan));
  }
}

// The user's own playlists, with weights in place of item counts: a few are long, most are short,
// some are empty.
void AppendOwn(std::vector<PlaylistPlan>& plans, Random& random) {
  std::size_t folder = 0;
  std::size_t toFill = 0;
  while (plans.size() < playlistCount) {
    PlaylistPlan plan;
    const Script script =
        random.Chance(60) ? static_cast<Script>(random.Below(scriptCount)) : Script::Ascii;
    plan.name = MakeTitle(script, 1, 3, random);
    const std::size_t left = playlistCount - plans.size() - 1;
    if (toFill == 0 && left > 6 && random.Chance(90)) {
      plan.type = PlaylistType::Folder;
      folder = plans.size();
      toFill = plan.childCount = random.Between(2, 6);
    } else {
      const std::uint64_t draw = random.Below(100);
      plan.itemCount = random.Chance(50) ? 0 : draw * draw * draw / 1000 + 1;
      plan.smart = random.Chance(150);
      plan.parent = toFill > 0 ? folder : 0;
      if (toFill > 0) --toFill;
    }
    plans.push_back(std::move(plan));
  }
}

// Turns the weights from `first` on into numbers of items, `itemCount` in all.
void ShareItems(std::vector<PlaylistPlan>& plans, std::size_t first, std::size_t itemCount) {
  std::size_t weights = 0;
  for (std::size_t i = first; i < plans.size(); ++i) {
    // What stands in a folder stands in the file twice.
    weights += plans[i].itemCount * (plans[i].parent != 0 ? 2 : 1);
  }
  for (std::size_t i = first; i < plans.size(); ++i) {
    PlaylistPlan& plan = plans[i];
    if (plan.type == PlaylistType::Folder) continue;
    plan.itemCount = weights == 0 ? 0 : itemCount * plan.itemCount / weights;
    if (plan.parent != 0) plans[plan.parent].itemCount += plan.itemCount;
  }
}

}  // namespace

std::vector<PlaylistPlan> PlanPlaylists(std::size_t trackCount, std::uint64_t seed) {
  Random random(SeedOf(seed, planFamily, 0));
  std::vector<PlaylistPlan> plans;
  PlaylistPlan master;
  master.type = PlaylistType::Master;
  master.name = "Library";
  master.itemCount = trackCount;
  plans.push_back(std::move(master));
  AppendBuiltIns(plans, trackCount);

  const std::size_t firstOwn = plans.size();
  std::size_t itemsLeft = trackCount * itemsPerMille / 1000;
  for (std::size_t i = 1; i < firstOwn; ++i) itemsLeft -= plans[i].itemCount;
  AppendOwn(plans, random);
  ShareItems(plans, firstOwn, itemsLeft);
  for (PlaylistPlan& plan : plans) plan.persistentId = random.Next();
  return plans;
}

}  // namespace tavrel::bench
