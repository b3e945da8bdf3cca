#include "host/help/Completion.h"

#include <functional>

namespace tavrel::host {
namespace {

// Both shells walk the words before the one that is completed, to find the command; the rest are tables
// made here. bash and zsh agree on all but how they name the words and take the answers.
constexpr std::string_view kBash = R"(# Completions of tavrel for bash.
_tavrel() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command= i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      @VALUED@) ((++i)) ;;
      -*) ;;
      *) command=${COMP_WORDS[i]}; break ;;
    esac
  done
  COMPREPLY=()
  local words
  case $command:$previous in
@VALUES@  esac
  case $command in
@WORDS@    *) words= ;;
  esac
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _tavrel tavrel
)";

constexpr std::string_view kZsh = R"(#compdef tavrel
# Completions of tavrel for zsh.
_tavrel() {
  local previous=${words[CURRENT-1]} command= i
  for ((i = 2; i < CURRENT; ++i)); do
    case ${words[i]} in
      @VALUED@) ((++i)) ;;
      -*) ;;
      *) command=${words[i]}; break ;;
    esac
  done
  case $command:$previous in
@VALUES@  esac
  case $command in
@WORDS@  esac
  [[ -z $command ]] || _files
}
if [[ ${funcstack[1]} == _tavrel ]]; then _tavrel; else compdef _tavrel tavrel; fi
)";

std::string Replaced(std::string_view text, std::string_view mark, const std::string& with) {
  std::string result(text);
  const std::size_t at = result.find(mark);
  if (at != std::string::npos) result.replace(at, mark.size(), with);
  return result;
}

std::string Joined(const std::vector<std::string>& words, std::string_view between) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : between).append(word);
  return text;
}

// The options of the program and of each command, each with the command's name.
using Visit = std::function<void(const std::string& command, const OptionSummary& option)>;

void ForEachOption(const CommandSummary& program, const Visit& visit) {
  for (const OptionSummary& option : program.options) visit("*", option);
  for (const CommandSummary& command : program.commands) {
    for (const OptionSummary& option : command.options) visit(command.name, option);
  }
}

// The names of the program's options that take a value: the word behind them is no command.
std::string Valued(const CommandSummary& program) {
  std::vector<std::string> names;
  for (const OptionSummary& option : program.options) {
    if (option.argument.empty()) continue;
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return Joined(names, "|");
}

// Lines of a `case`: what may follow an option. answer: what a shell does with the choices, none for files.
using Answer = std::function<std::string(const std::vector<std::string>& choices)>;

std::string ValueCases(const CommandSummary& program, const Answer& answer) {
  std::string lines;
  ForEachOption(program, [&](const std::string& command, const OptionSummary& option) {
    if (option.argument.empty() || option.StandsByPlace()) return;
    std::vector<std::string> patterns;
    for (const std::string& name : option.names) patterns.push_back(command + ":" + name);
    lines += "    " + Joined(patterns, "|") + ") " + answer(option.Choices()) + "; return ;;\n";
  });
  return lines;
}

std::vector<std::string> WordsOf(const CommandSummary& program, const CommandSummary& command) {
  std::vector<std::string> words;
  for (const CommandSummary& one : command.commands) words.push_back(one.name);
  for (const OptionSummary& option : command.options) {
    if (!option.StandsByPlace()) {
      words.insert(words.end(), option.names.begin(), option.names.end());
      continue;
    }
    for (std::string& choice : option.Choices()) words.push_back(std::move(choice));
    if (option.argument == "COMMAND") {
      for (const CommandSummary& one : program.commands) words.push_back(one.name);
    }
  }
  if (&program == &command) return words;
  for (const OptionSummary& option : program.options) {
    words.insert(words.end(), option.names.begin(), option.names.end());
  }
  return words;
}

std::string WordCases(const CommandSummary& program, std::string_view before,
                      std::string_view after) {
  const auto line = [&](const std::string& pattern, const CommandSummary& command) {
    return "    " + pattern + ") " + std::string(before) + Joined(WordsOf(program, command), " ") +
           std::string(after) + " ;;\n";
  };
  std::string lines = line("''", program);
  for (const CommandSummary& command : program.commands) {
    std::vector<std::string> names = command.aliases;
    names.insert(names.begin(), command.name);
    lines += line(Joined(names, "|"), command);
  }
  return lines;
}

std::string ForBash(const CommandSummary& program) {
  const Answer answer = [](const std::vector<std::string>& choices) {
    if (choices.empty()) return std::string(":");  // files, as bash completes without us
    return "COMPREPLY=($(compgen -W '" + Joined(choices, " ") + "' -- \"$word\"))";
  };
  std::string script = Replaced(kBash, "@VALUED@", Valued(program));
  script = Replaced(script, "@VALUES@", ValueCases(program, answer));
  return Replaced(script, "@WORDS@", WordCases(program, "words='", "'"));
}

std::string ForZsh(const CommandSummary& program) {
  const Answer answer = [](const std::vector<std::string>& choices) {
    return choices.empty() ? std::string("_files") : "compadd -- " + Joined(choices, " ");
  };
  std::string script = Replaced(kZsh, "@VALUED@", Valued(program));
  script = Replaced(script, "@VALUES@", ValueCases(program, answer));
  return Replaced(script, "@WORDS@", WordCases(program, "compadd -- ", ""));
}

std::string FishQuoted(std::string_view text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'' || character == '\\') quoted += '\\';
    quoted += character;
  }
  return quoted + "'";
}

std::string FishOption(const OptionSummary& option) {
  std::string line;
  for (const std::string& name : option.names) {
    const bool isLong = name.starts_with("--");
    line += (isLong ? " -l " : " -s ") + name.substr(isLong ? 2 : 1);
  }
  const std::vector<std::string> choices = option.Choices();
  if (!choices.empty()) {
    line += " -x -a " + FishQuoted(Joined(choices, " "));
  } else if (!option.argument.empty()) {
    line += option.IsFile() ? " -r -F" : " -x";
  }
  return line + " -d " + FishQuoted(option.text);
}

std::string ForFish(const CommandSummary& program) {
  std::string script = "# Completions of tavrel for fish.\n";
  for (const CommandSummary& command : program.commands) {
    script += "complete -c tavrel -n __fish_use_subcommand -f -a " + command.name + " -d " +
              FishQuoted(command.text) + "\n";
    const std::string start =
        "complete -c tavrel -n '__fish_seen_subcommand_from " + command.name + "'";
    for (const OptionSummary& option : command.options) {
      if (!option.StandsByPlace()) script += start + FishOption(option) + "\n";
      if (option.StandsByPlace() && !option.Choices().empty()) {
        script += start + " -f -a " + FishQuoted(Joined(option.Choices(), " ")) + "\n";
      }
    }
    for (const CommandSummary& one : command.commands) {
      script += start + " -f -a " + one.name + " -d " + FishQuoted(one.text) + "\n";
    }
  }
  for (const OptionSummary& option : program.options) {
    script += "complete -c tavrel" + FishOption(option) + "\n";
  }
  return script;
}

}  // namespace

std::string Completion(const CommandSummary& program, std::string_view shell) {
  if (shell == "bash") return ForBash(program);
  return shell == "zsh" ? ForZsh(program) : ForFish(program);
}

}  // namespace tavrel::host
