#include "host/arguments/CommandSummary.h"

#include <algorithm>

namespace tavrel::host {

std::string OptionSummary::Title() const {
  std::string title;
  for (const std::string& name : names) title += (title.empty() ? "" : ", ") + name;
  if (!argument.empty()) title += (title.empty() ? "" : " ") + argument;
  return title;
}

std::vector<std::string> OptionSummary::Choices() const {
  std::vector<std::string> choices;
  if (argument.find('|') == std::string::npos) return choices;
  for (std::size_t from = 0; from <= argument.size();) {
    const std::size_t to = std::min(argument.find('|', from), argument.size());
    choices.push_back(argument.substr(from, to - from));
    from = to + 1;
  }
  return choices;
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
