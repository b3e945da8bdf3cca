// The only source that knows how options are parsed: that takes a compiler longer than all else here.
#include "host/arguments/CommandParser.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

namespace tavrel::host {
namespace {

constexpr std::size_t kLargestCount = 2147483647;

std::string Joined(const std::vector<std::string>& choices) {
  std::string joined;
  for (const std::string& choice : choices) joined += (joined.empty() ? "" : "|") + choice;
  return joined;
}

// What help shows as the argument is the text of an option; of its own the parser would add the type.
void Show(CLI::Option* option, const std::string& argument,
          const std::vector<std::string>& choices = {}) {
  option->option_text(argument.empty() ? Joined(choices) : argument);
}

std::string Unbroken(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

OptionSummary Summarize(const CLI::Option& option) {
  OptionSummary summary;
  for (const std::string& name : option.get_snames()) summary.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) summary.names.push_back("--" + name);
  summary.text = Unbroken(option.get_description());
  summary.isRequired = option.get_required();
  summary.isRepeated = option.get_items_expected_max() > 1;
  summary.argument = option.get_option_text();
  if (summary.argument.empty() && summary.StandsByPlace()) summary.argument = option.get_name();
  return summary;
}

CommandSummary Summarize(const CLI::App& parser, const std::string& parent) {
  const bool isProgram = parent.empty();
  CommandSummary summary;
  summary.name = parser.get_name();
  summary.path = isProgram ? summary.name : parent + " " + summary.name;
  summary.aliases = parser.get_aliases();
  summary.text = Unbroken(parser.get_description());
  for (const CLI::Option* option : parser.get_options()) {
    if (isProgram || option != parser.get_help_ptr()) summary.options.push_back(Summarize(*option));
  }
  for (const CLI::App* command : parser.get_subcommands({})) {
    summary.commands.push_back(Summarize(*command, summary.path));
  }
  return summary;
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
  return {*parser_->add_subcommand(name, text), *task_};
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
  Show(option->check(CLI::Range(std::size_t{1}, kLargestCount)), argument);
}

void CommandDefinition::AddChoice(const std::string& names, std::optional<std::string>& value,
                                  const std::vector<std::string>& choices, const std::string& text,
                                  const std::string& argument) {
  CLI::Option* option = parser_->add_option(names, value, text);
  Show(option->check(CLI::IsMember(choices)), argument, choices);
}

void CommandDefinition::AddChoiceInAnyCase(const std::string& names,
                                           std::optional<std::string>& value,
                                           const std::vector<std::string>& choices,
                                           const std::string& text, const std::string& argument) {
  CLI::Option* option = parser_->add_option(names, value, text);
  Show(option->check(CLI::IsMember(choices, CLI::ignore_case)), argument, choices);
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
  Show(option->check(CLI::IsMember(choices)), {}, choices);
}

void CommandDefinition::AddPlaces(const std::string& name, std::vector<std::string>& values,
                                  std::size_t most, const std::string& text) {
  CLI::Option* option = parser_->add_option(name, values, text);
  if (most != 0) option->expected(1, static_cast<int>(most));
}

void CommandDefinition::Makes(std::function<Task()> make) {
  // Those below come first.
  parser_->callback([task = task_, make = std::move(make)] {
    if (!*task) *task = make();
  });
}

// ---- The parser ----

CommandParser::CommandParser(const std::string& name, const std::string& text)
    : parser_(std::make_unique<CLI::App>(text, name)) {
  parser_->set_help_flag("-h,--help", "Print this help");
  parser_->set_version_flag("--version", std::string(), "Print the version");
  parser_->require_subcommand(0, 1);
  parser_->fallthrough();  // global options also stand behind the subcommand
}

CommandParser::~CommandParser() = default;

CommandDefinition CommandParser::Program() {
  return {*parser_, task_};
}

CommandSummary CommandParser::Summary() const {
  return Summarize(*parser_, "");
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
  if (kind == Kind::TooMany) parsed.extras = parser_->remaining(true);
  if (kind == Kind::Understood) parsed.task = task_;
  return parsed;
}

}  // namespace tavrel::host
