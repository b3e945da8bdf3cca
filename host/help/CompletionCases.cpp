#include "host/help/CompletionCases.h"

#include <cstddef>
#include <vector>

#include "host/help/Template.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kFunction = R"shell(
# Called with the words before the one that is completed: sets what may stand there.
_tavrel_answers() {
  local command='' valued='' place=0
  while (($# > 0)); do
    case $command:$1 in
      @PROGRAM@)
        if (($# == 1)); then valued="*:$1"; else library+=("$1" "$2"); shift; fi ;;
      @VALUED@)
        if (($# == 1)); then valued="$command:$1"; else shift; fi ;;
@STEPS@      *:-?*) ;;
      *) place=$((place + 1)) ;;
    esac
    shift
  done
  case ${valued:-$command:$place} in
@VALUES@@PLACES@  esac
  [[ -z $valued ]] || return 0
  if [[ $word == -* ]]; then choices='' commas='' files='' lists=''; fi
  [[ -z $choices$files$lists ]] || return 0
  case $command in
@OPTIONS@  esac
  choices+=@EVERYWHERE@
}
)shell";

// What stands in quotes of a shell.
std::string Literal(std::string_view text) {
  std::string literal = "'";
  for (const char character : text) {
    if (character == '\'') {
      literal += "'\\''";
    } else {
      literal += character;
    }
  }
  return literal + "'";
}

std::string WordsOf(const CommandSummary& program, const CommandSummary& command) {
  return &program == &command ? "" : command.path.substr(program.path.size() + 1);
}

// Visits the program and the commands below it, those below a command behind it.
template <typename Visit>
void ForEachCommand(const CommandSummary& command, const Visit& visit) {
  visit(command);
  for (const CommandSummary& one : command.commands) ForEachCommand(one, visit);
}

void AddPattern(std::string& patterns, const std::string& pattern) {
  if (!patterns.empty()) patterns += '|';
  patterns += pattern;
}

std::string Described(const std::string& word, const std::string& text) {
  return word + ":" + text + "\n";
}

std::string CommandChoices(const CommandSummary& command) {
  std::string choices;
  for (const CommandSummary& one : command.commands) choices += Described(one.name, one.text);
  return choices;
}

std::string OptionChoices(const CommandSummary& command) {
  std::string choices;
  for (const OptionSummary& option : command.options) {
    for (const std::string& name : option.names) choices += Described(name, option.text);
  }
  return choices;
}

void AddCase(std::string& cases, const std::string& patterns, const std::string& what) {
  if (!what.empty()) cases += "    " + patterns + ")" + what + " ;;\n";
}

// What is set for a value.
std::string Answer(const CommandSummary& program, const OptionSummary& option) {
  const OptionValues values = option.Values();
  std::string choices = values.commands ? CommandChoices(program) : "";
  for (const std::string& choice : values.choices) choices += choice + "\n";
  std::string answer;
  if (!choices.empty()) answer += " choices+=" + Literal(choices);
  if (values.isParted) answer += " commas=yes";
  if (values.files) answer += " files=yes";
  if (values.lists) answer += " lists=yes";
  return answer;
}

class CaseWriter {
 public:
  explicit CaseWriter(const CommandSummary& program) : program_(program) {
    ForEachCommand(program, [this](const CommandSummary& command) { Add(command); });
  }

  [[nodiscard]] std::string Function() const {
    std::string text = Replaced(kFunction, "@PROGRAM@", programValued_);
    text = Replaced(text, "@VALUED@", valued_.empty() ? "''" : valued_);
    text = Replaced(text, "@STEPS@", steps_);
    text = Replaced(text, "@VALUES@", values_);
    text = Replaced(text, "@PLACES@", places_);
    text = Replaced(text, "@OPTIONS@", options_);
    return Replaced(text, "@EVERYWHERE@", Literal(OptionChoices(program_)));
  }

 private:
  void Add(const CommandSummary& command) {
    const bool isProgram = &command == &program_;
    const std::string words = WordsOf(program_, command);
    for (const CommandSummary& one : command.commands) AddStep(words, one);
    for (const OptionSummary& option : command.options) {
      if (option.StandsByPlace() || option.argument.empty()) continue;
      std::string patterns;
      for (const std::string& name : option.names) {
        AddPattern(isProgram ? programValued_ : valued_,
                   isProgram ? "*:" + name : Literal(words + ":" + name));
        AddPattern(patterns, Literal((isProgram ? "*" : words) + ":" + name));
      }
      AddCase(values_, patterns, Answer(program_, option));
    }
    AddPlaces(words, command);
    if (!isProgram) {
      const std::string choices = OptionChoices(command);
      AddCase(options_, Literal(words), choices.empty() ? "" : " choices+=" + Literal(choices));
    }
  }

  void AddStep(const std::string& words, const CommandSummary& next) {
    std::string patterns = Literal(words + ":" + next.name);
    for (const std::string& alias : next.aliases)
      AddPattern(patterns, Literal(words + ":" + alias));
    steps_ += "      " + patterns + ") command=" + Literal(WordsOf(program_, next)) + " ;;\n";
  }

  void AddPlaces(const std::string& words, const CommandSummary& command) {
    const std::string below = CommandChoices(command);
    std::string first = below.empty() ? "" : " choices+=" + Literal(below);
    std::size_t place = 0;
    for (const OptionSummary& option : command.options) {
      if (!option.StandsByPlace()) continue;
      const std::string pattern = option.isRepeated ? Literal(words + ":") + "*"
                                                    : Literal(words + ":" + std::to_string(place));
      AddCase(places_, pattern, first + Answer(program_, option));
      first.clear();
      ++place;
    }
    AddCase(places_, Literal(words + ":0"), first);
  }

  const CommandSummary& program_;
  std::string programValued_;
  std::string valued_;
  std::string steps_;
  std::string values_;
  std::string places_;
  std::string options_;
};

}  // namespace

std::string CompletionCases(const CommandSummary& program) {
  return CaseWriter(program).Function();
}

}  // namespace tavrel::host
