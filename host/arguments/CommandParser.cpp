// The only source that knows how options are parsed: that takes a compiler longer than all else here.
#include "host/arguments/CommandParser.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

#include "host/output/Nearest.h"
#include "host/output/Text.h"

namespace tavrel::host {

// What all commands have in common.
struct Definitions {
  std::optional<Task> task;  // of the one that was asked for
  std::map<const CLI::Option*, std::vector<std::string>> choices =
      {};  // of the options that have some
};

namespace {

constexpr std::size_t kLargestCount = 2147483647;

std::string Joined(const std::vector<std::string>& choices) {
  std::string joined;
  for (const std::string& choice : choices) joined += (joined.empty() ? "" : "|") + choice;
  return joined;
}

// ---- What is wrong with a value, in words of our own ----

std::string OneOf(const std::vector<std::string>& choices) {
  std::string text = "one of:";
  for (const std::string& choice : choices) text += " " + choice;
  return text;
}

std::string NoSuchChoice(const std::string& given, const std::vector<std::string>& choices) {
  std::string message = "there is no \"" + Clean(given) + '"';
  const std::vector<std::size_t> near = Nearest(given, choices);
  if (!near.empty()) message += "; do you mean " + choices[near.front()] + "?";
  return message + "\n  It is " + OneOf(choices);
}

// A command stands where the value should: there is none, or an option of the command's is meant.
std::string CommandForChoice(const CLI::App& command, const std::vector<std::string>& choices,
                             const std::string& option) {
  const std::string& name = command.get_name();
  std::string message = "no value stands before the command " + name;
  if (command.get_option_no_throw(option) != nullptr) {
    message += "; do you mean:\n    tavrel " + name + ' ' + option;
  }
  return message + "\n  It is " + OneOf(choices);
}

// isExact: whether case counts. What is chosen becomes what the choice is called.
CLI::Validator ChoiceOf(const std::vector<std::string>& choices, bool isExact,
                        const CLI::App* parser, const std::string& option) {
  const auto check = [choices, isExact, parser, option](std::string& given) {
    for (const std::string& choice : choices) {
      if (given != choice && (isExact || Fold(given) != Fold(choice))) continue;
      given = choice;
      return std::string();
    }
    const auto commands = parser->get_subcommands(
        [&given](const CLI::App* command) { return command->check_name(given); });
    return commands.empty() ? NoSuchChoice(given, choices)
                            : CommandForChoice(*commands.front(), choices, option);
  };
  return {check, ""};
}

CLI::Validator CountFromOne() {
  const auto check = [](std::string& given) {
    std::size_t count = 0;
    const char* end = given.data() + given.size();
    const auto [stop, error] = std::from_chars(given.data(), end, count);
    const bool isCount =
        error == std::errc() && stop == end && count >= 1 && count <= kLargestCount;
    return isCount ? std::string() : Clean(given) + " is no whole number from 1 on";
  };
  return {check, ""};
}

// The parser's message on an option that has no value, or too many: it begins with the option's name.
std::string WrongCount(const std::string& message, const CLI::App& parser) {
  const std::string name = message.substr(0, message.find(':'));
  const CLI::Option* option = parser.get_option_no_throw(name);
  for (const CLI::App* command : parser.get_subcommands()) {
    if (option == nullptr) return WrongCount(message, *command);
  }
  if (option == nullptr) return message;
  if (option->get_positional()) {
    return name + ": " + std::to_string(option->count()) + " are given, and no more than " +
           std::to_string(option->get_items_expected_max()) + " are taken";
  }
  if (option->count() > 1) return name + " is given " + std::to_string(option->count()) + " times";
  const std::string argument = option->get_option_text();
  return name + " needs a value" + (argument.empty() ? "" : ": " + name + " " + argument);
}

// The parser's message on a flag that is given a value: it ends with "--name = value".
std::string ValueOfFlag(const std::string& message) {
  const std::size_t end = message.find(" = ");
  const std::size_t start = message.rfind(' ', end - 1) + 1;
  if (end == std::string::npos) return message;
  return message.substr(start, end - start) + " takes no value";
}

// What help shows as the argument is the text of an option; of its own the parser would add the type.
void Show(CLI::Option* option, const std::string& argument) {
  option->option_text(argument);
}

void ShowChoices(CLI::Option* option, const std::vector<std::string>& choices,
                 const std::string& argument, Definitions& all) {
  Show(option, argument.empty() ? Joined(choices) : argument);
  all.choices[option] = choices;
}

std::string Unbroken(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

OptionSummary Summarize(const CLI::Option& option, const Definitions& all) {
  OptionSummary summary;
  for (const std::string& name : option.get_snames()) summary.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) summary.names.push_back("--" + name);
  summary.text = Unbroken(option.get_description());
  summary.isRequired = option.get_required();
  summary.isRepeated = option.get_items_expected_max() > 1;
  summary.argument = option.get_option_text();
  if (summary.argument.empty() && summary.StandsByPlace()) summary.argument = option.get_name();
  const auto choices = all.choices.find(&option);
  if (choices != all.choices.end()) summary.choices = choices->second;
  return summary;
}

CommandSummary Summarize(const CLI::App& parser, const std::string& parent,
                         const Definitions& all) {
  const bool isProgram = parent.empty();
  CommandSummary summary;
  summary.name = parser.get_name();
  summary.path = isProgram ? summary.name : parent + " " + summary.name;
  summary.aliases = parser.get_aliases();
  summary.text = Unbroken(parser.get_description());
  for (const CLI::Option* option : parser.get_options()) {
    if (isProgram || option != parser.get_help_ptr())
      summary.options.push_back(Summarize(*option, all));
  }
  for (const CLI::App* command : parser.get_subcommands({})) {
    summary.commands.push_back(Summarize(*command, summary.path, all));
  }
  return summary;
}

constexpr std::string_view kEndOfOptions = "--";  // behind it no word is an option

// Takes the words for those on both sides of the mark, when any stand behind it.
void PartByMark(int count, const char* const* arguments, ParsedWords& parsed) {
  const char* const* end = arguments + count;
  const char* const* mark = std::find(arguments, end, kEndOfOptions);
  if (mark == end || mark + 1 == end) return;
  parsed.kind = ParsedWords::Kind::BehindMark;
  parsed.words.assign(arguments + 1, mark);
  parsed.extras.assign(mark + 1, end);
}

// Those that fit nowhere; the parser has the mark among them.
std::vector<std::string> ExtrasOf(const CLI::App& parser) {
  std::vector<std::string> extras = parser.remaining(true);
  const auto mark = std::find(extras.begin(), extras.end(), kEndOfOptions);
  if (extras.size() > 1 && mark != extras.end()) extras.erase(mark);
  return extras;
}

// The command that the words lead to, and what was given to it by its place.
ParsedWords FindReached(const CLI::App& parser) {
  ParsedWords parsed;
  const CLI::App* reached = &parser;
  while (!reached->get_subcommands().empty()) {
    reached = reached->get_subcommands().back();
    parsed.command.push_back(reached->get_name());
  }
  for (const CLI::Option* option : reached->get_options()) {
    if (!option->get_positional()) continue;
    parsed.words.insert(parsed.words.end(), option->results().begin(), option->results().end());
  }
  return parsed;
}

}  // namespace

// ---- The definition ----

CommandDefinition CommandDefinition::AddCommand(const std::string& name, const std::string& text) {
  return {*parser_->add_subcommand(name, text), *all_};
}

void CommandDefinition::AddAlias(const std::string& name) {
  parser_->alias(name);
}

void CommandDefinition::AddFlag(const std::string& names, bool& isGiven, const std::string& text) {
  parser_->add_flag(names, isGiven, text);
}

void CommandDefinition::AddText(const std::string& names, std::optional<std::string>& value,
                                const std::string& argument, const std::string& text) {
  Show(parser_->add_option(names, value, text), argument);
}

void CommandDefinition::AddTexts(const std::string& names, std::vector<std::string>& values,
                                 const std::string& argument, const std::string& text) {
  Show(parser_->add_option(names, values, text)->allow_extra_args(false), argument);
}

void CommandDefinition::AddCount(const std::string& names, std::size_t& value,
                                 const std::string& argument, const std::string& text) {
  CLI::Option* option = parser_->add_option(names, value, text);
  Show(option->check(CountFromOne()), argument);
}

void CommandDefinition::AddChoice(const std::string& names, std::optional<std::string>& value,
                                  const std::vector<std::string>& choices, const std::string& text,
                                  const std::string& argument) {
  CLI::Option* option = parser_->add_option(names, value, text);
  ShowChoices(option->check(ChoiceOf(choices, true, parser_, names)), choices, argument, *all_);
}

void CommandDefinition::AddChoiceInAnyCase(const std::string& names,
                                           std::optional<std::string>& value,
                                           const std::vector<std::string>& choices,
                                           const std::string& text, const std::string& argument) {
  CLI::Option* option = parser_->add_option(names, value, text);
  ShowChoices(option->check(ChoiceOf(choices, false, parser_, names)), choices, argument, *all_);
}

void CommandDefinition::AddParted(const std::string& names, std::optional<std::string>& value,
                                  const std::vector<std::string>& words,
                                  const std::string& argument, const std::string& text) {
  ShowChoices(parser_->add_option(names, value, text), words, argument, *all_);
}

void CommandDefinition::AddPlace(const std::string& name, std::optional<std::string>& value,
                                 const std::string& text) {
  parser_->add_option(name, value, text);
}

void CommandDefinition::AddRequiredPlace(const std::string& name, std::string& value,
                                         const std::string& text) {
  parser_->add_option(name, value, text)->required();
}

void CommandDefinition::AddRequiredChoice(const std::string& name, std::string& value,
                                          const std::vector<std::string>& choices,
                                          const std::string& text) {
  CLI::Option* option = parser_->add_option(name, value, text)->required();
  ShowChoices(option->check(ChoiceOf(choices, true, parser_, name)), choices, {}, *all_);
}

void CommandDefinition::AddPlaces(const std::string& name, std::vector<std::string>& values,
                                  std::size_t most, const std::string& text) {
  CLI::Option* option = parser_->add_option(name, values, text);
  if (most != 0) option->expected(1, static_cast<int>(most));
}

void CommandDefinition::Makes(std::function<Task()> make) {
  // Those below come first.
  parser_->callback([all = all_, make = std::move(make)] {
    if (!all->task) all->task = make();
  });
}

// ---- The parser ----

CommandParser::CommandParser(const std::string& name, const std::string& text)
    : parser_(std::make_unique<CLI::App>(text, name)), all_(std::make_unique<Definitions>()) {
  parser_->set_help_flag("-h,--help", "Print this help");
  parser_->set_version_flag("--version", std::string(), "Print the version");
  parser_->require_subcommand(0, 1);
  parser_->fallthrough();  // global options also stand behind the subcommand
}

CommandParser::~CommandParser() = default;

CommandDefinition CommandParser::Program() {
  return {*parser_, *all_};
}

CommandSummary CommandParser::Summary() const {
  return Summarize(*parser_, "", *all_);
}

ParsedWords CommandParser::Parse(int count, const char* const* arguments) {
  using Kind = ParsedWords::Kind;
  Kind kind = Kind::Understood;
  std::string message;
  try {
    parser_->parse(count, arguments);
  } catch (const CLI::CallForHelp&) {
    kind = Kind::HelpAsked;
  } catch (const CLI::CallForVersion&) {
    kind = Kind::VersionAsked;
  } catch (const CLI::ExtrasError&) {
    kind = Kind::TooMany;
  } catch (const CLI::ArgumentMismatch& error) {
    kind = Kind::Wrong;
    message = WrongCount(error.what(), *parser_);
  } catch (const CLI::ConversionError& error) {
    kind = Kind::Wrong;
    message = ValueOfFlag(error.what());
  } catch (const CLI::ParseError& error) {
    kind = Kind::Wrong;
    message = error.what();
  } catch (const UsageError& error) {
    kind = Kind::Wrong;
    message = error.what();
  }
  ParsedWords parsed = FindReached(*parser_);
  parsed.kind = kind;
  parsed.message = std::move(message);
  if (kind == Kind::TooMany) parsed.extras = ExtrasOf(*parser_);
  if (kind == Kind::Understood) parsed.task = all_->task;
  // There the parser takes a command for a word, and then forgets it.
  const bool isShown = kind == Kind::HelpAsked || kind == Kind::VersionAsked;
  if (!isShown && parsed.command.empty()) PartByMark(count, arguments, parsed);
  return parsed;
}

}  // namespace tavrel::host
