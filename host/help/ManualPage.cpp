#include "host/help/ManualPage.h"

#include <algorithm>

#include "host/help/Guide.h"
#include "text/Ascii.h"

namespace tavrel::host {
namespace {

// A line as text: nothing in it is a request or an escape, and hyphens can be copied.
std::string Text(std::string_view line) {
  std::string text;
  if (line.starts_with('.') || line.starts_with('\'')) text += "\\&";
  for (const char character : line) {
    if (character == '\\') {
      text += "\\e";
    } else if (character == '-') {
      text += "\\-";
    } else {
      text += character == '\n' ? ' ' : character;
    }
  }
  return text;
}

std::string Upper(std::string_view title) {
  std::string upper(title);
  std::transform(upper.begin(), upper.end(), upper.begin(), text::ToUpperCase);
  return upper;
}

void AddOptions(const CommandSummary& command, std::string& page) {
  for (const OptionSummary& option : command.options) {
    page += ".TP\n\\fB" + Text(option.Title()) + "\\fR\n" + Text(option.text) + "\n";
  }
}

void AddExamples(std::string_view command, std::string& page) {
  for (const Example& example : ExamplesOf(command)) {
    page += ".TP\n\\fB" + Text(example.line) + "\\fR\n" + Text(example.text) + "\n";
  }
}

void AddCommand(const CommandSummary& command, std::string& page) {
  page += ".SS \"" + Text(command.path) + "\"\n" + Text(command.text) + ".\n.PP\n" +
          Text(command.Usage()) + "\n";
  AddOptions(command, page);
  for (const CommandSummary& one : command.commands) AddCommand(one, page);
}

}  // namespace

std::string ManualPage(const CommandSummary& program, std::string_view version) {
  std::string page = ".TH TAVREL 1 \"\" \"tavrel " + Text(version) + "\"\n";
  page += ".nh\n.ad l\n.SH NAME\ntavrel \\- what is in an iTunes library, from outside iTunes\n";
  page += ".SH SYNOPSIS\n" + Text(program.Usage()) + "\n";
  page += ".SH DESCRIPTION\n" + Text(program.text) + "\n.SH EXAMPLES\n";
  AddExamples("", page);
  page += ".SH COMMANDS\n";
  for (const CommandSummary& command : program.commands) AddCommand(command, page);
  page += ".SH OPTIONS\n";
  AddOptions(program, page);
  for (const Chapter& chapter : Chapters()) {
    page += ".SH \"" + Upper(chapter.title) + "\"\n";
    std::string_view between;
    for (const std::string_view paragraph : chapter.paragraphs) {
      page.append(between).append(Text(paragraph)).append("\n");
      between = ".PP\n";
    }
  }
  return page;
}

}  // namespace tavrel::host
