#include "host/help/Guesses.h"

#include <algorithm>
#include <array>

#include "host/library/Invocation.h"
#include "host/output/Nearest.h"

namespace tavrel::host {
namespace {

struct Guess {
  std::string_view word;
  std::string_view meant;
};

constexpr std::array kCommands{
    Guess{"find", "search"},
    Guess{"grep", "search"},
    Guess{"list", "songs"},
    Guess{"ls", "songs"},
    Guess{"tracks", "songs"},
    Guess{"show", "songs"},
    Guess{"dump", "songs"},
    Guess{"csv", "songs --format csv"},
    Guess{"json", "songs --json"},
    Guess{"playlist", "playlists"},
    Guess{"playlist", "songs LIST"},
    Guess{"lists", "playlists"},
    Guess{"folders", "playlists"},
    Guess{"tree", "playlists"},
    Guess{"cover", "covers"},
    Guess{"art", "covers"},
    Guess{"images", "covers"},
    Guess{"pictures", "covers"},
    Guess{"albums", "stats --by album"},
    Guess{"artists", "stats --by artist"},
    Guess{"genres", "stats --by genre"},
    Guess{"years", "stats --by year"},
    Guess{"top", "stats"},
    Guess{"count", "stats"},
    Guess{"statistics", "stats"},
    Guess{"tones", "ringtones"},
    Guess{"man", "help"},
    Guess{"version", "--version"},
    Guess{"web", "page"},
    Guess{"html", "page"},
    Guess{"browse", "page"},
    Guess{"missing", "check --only missing"},
    Guess{"lost", "check --only missing"},
    Guess{"duplicates", "check --only duplicates"},
    Guess{"dupes", "check --only duplicates"},
    Guess{"orphans", "check --only orphans"},
    Guess{"verify", "check"},
    Guess{"validate", "check"},
    Guess{"doctor", "check"},
    Guess{"fix", "check"},
    Guess{"sqlite", "export --format sqlite -o FILE"},
    Guess{"database", "export --format sqlite -o FILE"},
    Guess{"db", "export --format sqlite -o FILE"},
    Guess{"m3u", "export --format m3u -o DIR"},
    Guess{"m3u8", "export --format m3u8 -o DIR"},
    Guess{"xspf", "export --format xspf -o DIR"},
    Guess{"convert", "export"},
    Guess{"save", "export"},
    Guess{"backup", "copy"},
    Guess{"sync", "copy"},
    Guess{"cp", "copy"},
};

constexpr std::array kOptions{
    Guess{"--csv", "--format csv"},
    Guess{"--tsv", "--format tsv"},
    Guess{"--title", "--name"},
    Guess{"--song", "--name"},
    Guess{"--track", "--name"},
    Guess{"--columns", "--fields"},
    Guess{"--field", "--fields"},
    Guess{"--order", "--sort"},
    Guess{"--sort-by", "--sort"},
    Guess{"--desc", "--reverse"},
    Guess{"--descending", "--reverse"},
    Guess{"-r", "--reverse"},
    Guess{"-n", "--limit"},
    Guess{"-n", "--top"},
    Guess{"--limit", "--top"},
    Guess{"--max", "--limit"},
    Guess{"--max", "--top"},
    Guess{"--head", "--limit"},
    Guess{"-c", "--count"},
    Guess{"--group-by", "--by"},
    Guess{"--group", "--by"},
    Guess{"--playlists", "--lists"},
    Guess{"--contains", "--with"},
    Guess{"--song", "--with"},
    Guess{"--no-color", "--color never"},
    Guess{"--no-colour", "--color never"},
    Guess{"--colour", "--color"},
    Guess{"--silent", "--quiet"},
    Guess{"--debug", "--verbose"},
    Guess{"-f", "--library"},
    Guess{"--file", "--library"},
    Guess{"--input", "--library"},
    Guess{"--xml", "--library"},
    Guess{"-i", "--library"},
    Guess{"--overwrite", "--force"},
    Guess{"--output-dir", "--output"},
    Guess{"--dest", "--output"},
    Guess{"--to", "--output"},
    Guess{"-o", "--only"},
    Guess{"--missing", "--only missing"},
    Guess{"--duplicates", "--only duplicates"},
    Guess{"--dupes", "--only duplicates"},
    Guess{"--orphans", "--only orphans"},
    Guess{"--path", "--fields path"},
    Guess{"--location", "--fields location"},
    Guess{"--status", "--fields status"},
    Guess{"--relative", "--relative-to"},
    Guess{"--resize", "--size"},
    Guess{"-j", "--json"},
    Guess{"-V", "--version"},
    Guess{"-?", "--help"},
};

std::string_view FirstWord(std::string_view text) {
  return text.substr(0, text.find(' '));
}

bool HasOption(const CommandSummary& command, std::string_view name) {
  return std::any_of(command.options.begin(), command.options.end(), [name](const auto& option) {
    return std::find(option.names.begin(), option.names.end(), name) != option.names.end();
  });
}

}  // namespace

std::vector<std::string> GuessedCommands(const CommandSummary& program, std::string_view word) {
  std::vector<std::string> meant;
  for (const Guess& guess : kCommands) {
    if (guess.word != word) continue;
    const std::string_view first = FirstWord(guess.meant);
    if (program.Find(first) != nullptr || HasOption(program, first))
      meant.emplace_back(guess.meant);
  }
  return meant;
}

std::vector<std::string> GuessedOptions(const CommandSummary& program,
                                        const CommandSummary& command, std::string_view option) {
  std::vector<std::string> meant;
  for (const Guess& guess : kOptions) {
    if (guess.word != option) continue;
    const std::string_view first = FirstWord(guess.meant);
    if (HasOption(command, first) || HasOption(program, first)) meant.emplace_back(guess.meant);
  }
  return meant;
}

std::vector<std::string> GuessedPlaces(const CommandSummary& program, const CommandSummary& command,
                                       const std::string& word) {
  std::vector<std::string> meant;
  const std::string rest = command.path.substr(program.path.size() + 1);
  for (const OptionSummary& option : command.options) {
    const std::vector<std::size_t> near = Nearest(word, option.choices);
    if (near.empty() || option.StandsByPlace()) continue;
    meant.push_back(rest + " " + option.names.back() + " " + option.choices[near.front()]);
  }
  // A value of the program's option, behind a flag of the command's that has the same name.
  for (const OptionSummary& option : program.options) {
    const std::string& name = option.names.back();
    if (std::find(option.choices.begin(), option.choices.end(), word) == option.choices.end())
      continue;
    if (HasOption(command, name)) meant.push_back(name + " " + word + " " + rest + " " + name);
  }
  if (meant.empty() && HasOption(command, "--with")) {
    meant.push_back("songs " + Quoted(word));
    meant.push_back(rest + " --with " + Quoted(word));
  }
  return meant;
}

}  // namespace tavrel::host
