#include "host/help/FishCompletion.h"

#include <vector>

#include "host/help/Template.h"

namespace tavrel::host {
namespace {

constexpr std::string_view kFunctions = R"fish(# Completions of tavrel for fish.
function __tavrel_words  # those before the one that is completed; --name=value as two
    for word in (commandline -opc)[2..-1]
        if string match -q -- '--*=*' $word
            string split -m 1 = -- $word
        else
            printf '%s\n' $word
        end
    end
end

function __tavrel_at -a wanted  # whether they lead to the command
    set -l command ''
    set -l skipped no
    for word in (__tavrel_words)
        if test $skipped = yes
            set skipped no
            continue
        end
        switch "$command:$word"
            case @VALUED@
                set skipped yes
@STEPS@        end
    end
    test "$command" = "$wanted"
end

function __tavrel_library  # the options that say which library
    set -l option ''
    for word in (__tavrel_words)
        if test -n "$option"
            printf '%s\n' $option $word
            set option ''
            continue
        end
        switch ":$word"
            case @PROGRAM@
                set option $word
        end
    end
end

function __tavrel_lists
    set -l program (commandline -opc)[1]
    $program (__tavrel_library) -q playlists --all --format tsv 2>/dev/null </dev/null | sed 1d | cut -f 2
end

function __tavrel_parted  # words, behind those that stand there with a comma
    set -l before (commandline -ct | string replace -r '^--[^=]*=' '' | string match -r '^.*,')
    for word in $argv
        echo "$before$word"
    end
end

complete -c tavrel -f
)fish";

std::string FishQuoted(std::string_view text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'' || character == '\\') quoted += '\\';
    quoted += character;
  }
  return quoted + "'";
}

// An argument of `complete`.
void Append(std::string& line, std::string_view option, std::string_view value) {
  line.append(1, ' ').append(option).append(1, ' ').append(value);
}

std::string JoinedWords(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

// What may stand where an option has its argument.
std::string Answer(const OptionSummary& option, const CommandSummary& program) {
  const OptionValues values = option.Values();
  std::string answer = values.files ? " -F" : "";
  if (values.lists) Append(answer, "-a", "'(__tavrel_lists)'");
  std::vector<std::string> words = values.choices;
  if (values.commands) {
    for (const CommandSummary& command : program.commands) words.push_back(command.name);
  }
  if (words.empty()) return answer;
  const std::string choices = JoinedWords(words);
  Append(answer, "-a", FishQuoted(values.isParted ? "(__tavrel_parted " + choices + ")" : choices));
  return answer;
}

class FishWriter {
 public:
  explicit FishWriter(const CommandSummary& program) : program_(program) { Add(program, ""); }

  [[nodiscard]] std::string Script() const {
    std::string script = Replaced(kFunctions, "@VALUED@", programValued_ + valued_);
    script = Replaced(script, "@STEPS@", steps_);
    return Replaced(script, "@PROGRAM@", programValued_) + lines_;
  }

 private:
  // words: those that lead to the command.
  void Add(const CommandSummary& command, const std::string& words) {
    std::string start = "complete -c tavrel";
    Append(start, "-n", FishQuoted("__tavrel_at " + FishQuoted(words)));
    for (const OptionSummary& option : command.options) {
      const std::string answer = Answer(option, program_);
      if (!option.StandsByPlace()) AddOption(option, command, words, start);
      if (option.StandsByPlace() && !answer.empty()) lines_ += start + answer + "\n";
    }
    for (const CommandSummary& one : command.commands) {
      lines_ += start;
      Append(lines_, "-a", one.name);
      Append(lines_, "-d", FishQuoted(one.text));
      lines_ += '\n';
      const std::string next = words.empty() ? one.name : words + " " + one.name;
      AddStep(words, one, next);
      Add(one, next);
    }
  }

  void AddStep(const std::string& words, const CommandSummary& next, const std::string& nextWords) {
    std::string names = FishQuoted(words + ":" + next.name);
    for (const std::string& alias : next.aliases) {
      names.append(1, ' ').append(FishQuoted(words + ":" + alias));
    }
    steps_ += "            case " + names + "\n                set command " +
              FishQuoted(nextWords) + "\n";
  }

  // The program's options stand everywhere.
  void AddOption(const OptionSummary& option, const CommandSummary& command,
                 const std::string& words, const std::string& start) {
    const bool isProgram = &command == &program_;
    std::string& valued = isProgram ? programValued_ : valued_;
    lines_ += isProgram ? "complete -c tavrel" : start;
    for (const std::string& name : option.names) {
      const bool isLong = name.starts_with("--");
      Append(lines_, isLong ? "-l" : "-s", name.substr(isLong ? 2 : 1));
      if (option.argument.empty()) continue;
      valued.append(1, ' ').append(FishQuoted((isProgram ? "*" : words) + ":" + name));
    }
    if (!option.argument.empty()) {
      lines_ += option.Values().files ? " -r" : " -x";
      lines_ += Answer(option, program_);
    }
    Append(lines_, "-d", FishQuoted(option.text));
    lines_ += '\n';
  }

  const CommandSummary& program_;
  std::string programValued_;
  std::string valued_;
  std::string steps_;
  std::string lines_;
};

}  // namespace

std::string FishCompletion(const CommandSummary& program) {
  return FishWriter(program).Script();
}

}  // namespace tavrel::host
