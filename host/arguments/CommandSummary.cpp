#include "host/arguments/CommandSummary.h"

#include <algorithm>

namespace tavrel::host {
namespace {

bool IsLowerCase(std::string_view word) {
  return !word.empty() && std::none_of(word.begin(), word.end(),
                                       [](char letter) { return letter >= 'A' && letter <= 'Z'; });
}

// A word of an option's argument.
void Take(std::string_view word, OptionValues& values) {
  if (IsLowerCase(word)) values.choices.emplace_back(word);
  if (word.starts_with("FILE") || word == "PATH" || word == "DIR" || word == "FOLDER")
    values.files = true;
  if (word == "NAMES") values.files = values.lists = true;
  if (word == "LIST" || word == "PLAYLIST") values.lists = true;
  if (word == "COMMAND") values.commands = true;
}

}  // namespace

std::string OptionSummary::Title() const {
  std::string title;
  for (const std::string& name : names) title += (title.empty() ? "" : ", ") + name;
  if (!argument.empty()) title += (title.empty() ? "" : " ") + argument;
  return title;
}

OptionValues OptionSummary::Values() const {
  OptionValues values;
  for (std::string_view rest = argument; !rest.empty();) {
    const std::size_t end = std::min(rest.find_first_of("|[,"), rest.size());
    Take(rest.substr(0, end), values);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (!choices.empty()) values.choices = choices;
  values.isParted = !values.choices.empty() && argument.find(',') != std::string::npos;
  return values;
}

std::string CommandSummary::Usage() const {
  std::string usage = path + " [OPTIONS]";
  for (const OptionSummary& option : options) {
    if (!option.StandsByPlace()) continue;
    const std::string place = option.argument + (option.isRepeated ? "…" : "");
    usage += option.isRequired ? " " + place : " [" + place + "]";
  }
  if (!commands.empty()) usage += " [COMMAND]";
  return usage;
}

const CommandSummary* CommandSummary::Find(std::string_view command) const {
  for (const CommandSummary& candidate : commands) {
    const auto& others = candidate.aliases;
    if (candidate.name == command ||
        std::find(others.begin(), others.end(), command) != others.end()) {
      return &candidate;
    }
  }
  return nullptr;
}

}  // namespace tavrel::host
