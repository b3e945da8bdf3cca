#include "host/library/PlaylistSearch.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>

#include "host/library/Invocation.h"
#include "host/library/PlaylistTree.h"
#include "host/output/EditDistance.h"
#include "host/output/Failure.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kMostSuggestions = 3;
constexpr std::size_t kLongestName = 200;  // in bytes; no name that a person types is longer
constexpr std::size_t kLongestPath = 200;  // in bytes, of a name with folders before it

struct Place {
  std::int32_t group = 0;
  std::int32_t position = 0;
};

// Nothing when the text is not two numbers with a colon between them.
std::optional<Place> ParsePlace(std::string_view text) {
  Place place;
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto parse = [](std::string_view digits, std::int32_t& number) {
    if (digits.empty() || digits[0] == '-') return false;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() && end == digits.data() + digits.size();
  };
  if (!parse(text.substr(0, colon), place.group)) return std::nullopt;
  if (!parse(text.substr(colon + 1), place.position)) return std::nullopt;
  return place;
}

using Matches = std::vector<const Playlist*>;

Matches Select(const std::vector<Playlist>& playlists,
               const std::function<bool(const Playlist&)>& fits) {
  Matches matches;
  for (const Playlist& playlist : playlists) {
    if (fits(playlist)) matches.push_back(&playlist);
  }
  return matches;
}

// By its number, the folder that holds each playlist.
std::vector<std::size_t> ParentsOf(const std::vector<Playlist>& playlists) {
  std::vector<std::size_t> parents(playlists.size(), kNoParent);
  for (const TreeEntry& entry : MakeTree(playlists)) parents[entry.playlist] = entry.parent;
  return parents;
}

// Playlists as lines to choose from: "id:8949F3F02A45D15B  Winter/Evening". Behind the ID stands what the playlist
// may be called: its name, and before it the folders around it, as many as a line has room for.
std::string Describe(const std::vector<const Playlist*>& shown,
                     const std::vector<Playlist>& playlists) {
  const std::vector<std::size_t> parents = ParentsOf(playlists);
  std::string lines;
  for (const Playlist* playlist : shown) {
    std::string path = playlist->name.value_or("");
    std::size_t folder = parents[static_cast<std::size_t>(playlist - playlists.data())];
    for (; folder != kNoParent; folder = parents[folder]) {
      const std::string name = playlists[folder].name.value_or("");
      if (name.empty() || path.size() + name.size() >= kLongestPath) break;
      path.insert(0, name + '/');
    }
    lines += playlist->id.empty() ? fmt::format("\n  {}:{}", playlist->group, playlist->position)
                                  : "\n  id:" + Clean(playlist->id);
    lines += "  " + Clean(path);
  }
  return lines;
}

// Finds playlists by the names of the folders around them.
class Paths {
 public:
  Paths(const std::vector<Playlist>& playlists, bool isFolded)
      : playlists_(playlists), isFolded_(isFolded), parents_(ParentsOf(playlists)) {
    for (const Playlist& playlist : playlists) names_.push_back(Form(playlist.name.value_or("")));
  }

  // Those whose name, with folders in front of it, is the path. Cost for each: the length of the path.
  [[nodiscard]] Matches Find(const std::string& path) const {
    const std::string wanted = Form(path);
    Matches matches;
    for (std::size_t i = 0; i < playlists_.size(); ++i) {
      if (EndsWith(wanted, i)) matches.push_back(&playlists_[i]);
    }
    return matches;
  }

 private:
  [[nodiscard]] std::string Form(const std::string& text) const {
    return isFolded_ ? Fold(text) : text;
  }

  [[nodiscard]] bool EndsWith(std::string_view rest, std::size_t playlist) const {
    while (playlist != kNoParent && !names_[playlist].empty() && rest.ends_with(names_[playlist])) {
      rest.remove_suffix(names_[playlist].size());
      if (rest.empty()) return true;
      if (!rest.ends_with('/')) return false;
      rest.remove_suffix(1);
      playlist = parents_[playlist];
    }
    return false;
  }

  const std::vector<Playlist>& playlists_;
  bool isFolded_;
  std::vector<std::size_t> parents_;
  std::vector<std::string> names_;
};

const Playlist& FindById(const std::vector<Playlist>& playlists, const std::string& wanted,
                         const Options& options) {
  const std::string id = Fold(wanted);
  const Matches matches =
      Select(playlists, [&](const Playlist& playlist) { return Fold(playlist.id) == id; });
  if (!id.empty() && !matches.empty()) return *matches.front();
  throw Failure(ExitCode::Failed,
                fmt::format("there is no playlist with the ID \"{}\"\n"
                            "  {} shows the IDs.",
                            Clean(wanted), Invocation(options, "playlists --json")));
}

Failure NoSuchPlace(const std::vector<Playlist>& playlists, const Place& place) {
  if (place.group >= kGroupCount) {
    return {ExitCode::Failed,
            fmt::format("there is no group {}: groups are 0 ({}), 1 ({}) and 2 ({})", place.group,
                        GroupName(0), GroupName(1), GroupName(2))};
  }
  const auto count =
      std::count_if(playlists.begin(), playlists.end(),
                    [&](const Playlist& playlist) { return playlist.group == place.group; });
  return {ExitCode::Failed,
          fmt::format("there is no playlist {}:{}: group {} has {}", place.group, place.position,
                      place.group,
                      count == 0 ? "no playlists" : fmt::format("positions 0 to {}", count - 1))};
}

Failure SeveralMatches(const std::vector<Playlist>& playlists, const std::string& wanted,
                       const Matches& matches) {
  const std::string message =
      fmt::format("{} playlists are named \"{}\"; choose one of:", matches.size(), Clean(wanted));
  return {ExitCode::Failed, message + Describe(matches, playlists)};
}

// How far names are from the wanted one; nothing when that is too far to be meant. All are folded.
class Nearness {
 public:
  explicit Nearness(const std::string& wanted)
      : wanted_(wanted), distance_(wanted.size() > kLongestName ? "" : wanted) {}

  [[nodiscard]] std::optional<std::size_t> To(const std::string& name) const {
    if (name.size() > kLongestName || wanted_.size() > kLongestName) return std::nullopt;
    const bool contained = !wanted_.empty() && name.find(wanted_) != std::string::npos;
    const std::size_t distance = distance_.To(name);
    if (contained || distance <= std::max<std::size_t>(1, wanted_.size() / 3)) return distance;
    return std::nullopt;
  }

 private:
  const std::string& wanted_;
  EditDistance distance_;
};

// Commands for somebody who meant another thing than a playlist.
std::string WhereToLook(const std::string& wanted, const Options& options) {
  struct stat status {};
  if (::stat(wanted.c_str(), &status) == 0) return "tavrel -l " + Quoted(wanted);
  const std::string lists = Invocation(options, "playlists");
  if (wanted.empty()) return lists;
  return lists + ", or " + Invocation(options, "search " + Quoted(wanted));
}

// Those whose names are near, the nearest first; not more than a few.
Matches NearMatches(const std::vector<Playlist>& playlists, const std::string& wanted) {
  std::vector<std::pair<std::size_t, const Playlist*>> near;
  const std::string folded = Fold(wanted);
  const Nearness nearness(folded);
  for (const Playlist& playlist : playlists) {
    if (!playlist.name) continue;
    const std::optional<std::size_t> distance = nearness.To(Fold(*playlist.name));
    if (distance) near.emplace_back(*distance, &playlist);
  }
  std::stable_sort(near.begin(), near.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  if (near.size() > kMostSuggestions) near.resize(kMostSuggestions);
  Matches matches;
  for (const auto& [distance, playlist] : near) matches.push_back(playlist);
  return matches;
}

Failure NoMatch(const std::vector<Playlist>& playlists, const std::string& wanted,
                const Options& options) {
  Matches near = NearMatches(playlists, wanted);
  const std::size_t slash = wanted.rfind('/');  // folders may stand before it
  if (near.empty() && slash != std::string::npos) {
    near = NearMatches(playlists, wanted.substr(slash + 1));
  }
  std::string message = fmt::format("there is no playlist named \"{}\"", Clean(wanted));
  message += near.empty() ? "\n  See " + WhereToLook(wanted, options) + "."
                          : "; do you mean:" + Describe(near, playlists);
  return {ExitCode::Failed, message};
}

}  // namespace

const Playlist& FindPlaylist(const std::vector<Playlist>& playlists, const std::string& wanted,
                             const Options& options) {
  constexpr std::string_view kIdStart = "id:";
  if (wanted.starts_with(kIdStart))
    return FindById(playlists, wanted.substr(kIdStart.size()), options);
  if (const std::optional<Place> place = ParsePlace(wanted)) {
    const Matches matches = Select(playlists, [&](const Playlist& playlist) {
      return playlist.group == place->group && playlist.position == place->position;
    });
    if (matches.empty()) throw NoSuchPlace(playlists, *place);
    return *matches.front();
  }

  Matches matches =
      Select(playlists, [&](const Playlist& playlist) { return playlist.name == wanted; });
  const bool isPath = wanted.find('/') != std::string::npos;
  if (matches.empty() && isPath) matches = Paths(playlists, false).Find(wanted);
  if (matches.empty()) {
    const std::string folded = Fold(wanted);
    matches = Select(playlists, [&](const Playlist& playlist) {
      return playlist.name && Fold(*playlist.name) == folded;
    });
  }
  if (matches.empty() && isPath) matches = Paths(playlists, true).Find(wanted);
  if (matches.empty()) throw NoMatch(playlists, wanted, options);
  if (matches.size() > 1) throw SeveralMatches(playlists, wanted, matches);
  return *matches.front();
}

}  // namespace tavrel::host
