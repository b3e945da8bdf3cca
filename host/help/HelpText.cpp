#include "host/help/HelpText.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "host/help/Guide.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kUsualWidth = 80;
constexpr std::size_t kWidestTitle = 34;
constexpr std::size_t kIndent = 2;

// Words, put into lines of at most `width` columns each, but for words that are wider.
std::vector<std::string> Wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines(1);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(" \n"), text.size());
    const std::string_view word = text.substr(0, end);
    std::string& line = lines.back();
    const bool fits = line.empty() || Width(line) + 1 + Width(word) <= width;
    if (!word.empty() && fits) line.append(line.empty() ? "" : " ").append(word);
    if (!word.empty() && !fits) lines.emplace_back(word);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

struct Entry {
  std::string title;
  std::string text;
};

class HelpWriter {
 public:
  explicit HelpWriter(std::size_t width) : width_(width) {}

  void Paragraph(std::string_view text, std::size_t indent = 0) {
    for (const std::string& line : Wrapped(text, width_ - std::min(width_ - 1, indent))) {
      text_ += std::string(indent, ' ') + line + "\n";
    }
  }

  void Heading(std::string_view title) { text_.append("\n").append(title).append(":\n"); }

  // Titles, and beside them what they are; below them where the title is wide.
  void Entries(std::string_view heading, const std::vector<Entry>& entries) {
    if (entries.empty()) return;
    Heading(heading);
    std::size_t titles = 0;
    const std::size_t widest = std::min(kWidestTitle, width_ / 2);
    for (const Entry& entry : entries) {
      if (Width(entry.title) <= widest) titles = std::max(titles, Width(entry.title));
    }
    for (const Entry& entry : entries) Add(entry, kIndent + titles + 2);
  }

  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  void Add(const Entry& entry, std::size_t column) {
    std::string line = std::string(kIndent, ' ') + entry.title;
    if (Width(line) + 2 > column) {
      text_ += line + "\n";
      line.clear();
    }
    for (const std::string& part : Wrapped(entry.text, width_ - std::min(width_ - 1, column))) {
      text_ += line + std::string(column - Width(line), ' ') + part + "\n";
      line.clear();
    }
  }

  std::size_t width_;
  std::string text_;
};

std::vector<Entry> OptionWords(const CommandSummary& command, bool byPlace) {
  std::vector<Entry> entries;
  for (const OptionSummary& option : command.options) {
    if (option.StandsByPlace() == byPlace) entries.push_back({option.Title(), option.text});
  }
  return entries;
}

std::vector<Entry> Commands(const CommandSummary& command) {
  std::vector<Entry> entries;
  for (const CommandSummary& one : command.commands) entries.push_back({one.name, one.text});
  return entries;
}

}  // namespace

std::string HelpText(const CommandSummary& program, const CommandSummary& command,
                     std::size_t width) {
  const bool isProgram = &program == &command;
  HelpWriter writer(width == 0 ? kUsualWidth : width);
  writer.Paragraph(command.text);

  std::vector<Entry> examples;
  for (const Example& example : ExamplesOf(isProgram ? "" : command.name)) {
    examples.push_back({std::string(example.line), std::string(example.text)});
  }
  writer.Entries("Examples", examples);
  writer.Heading("Usage");
  writer.Paragraph(command.Usage(), kIndent);
  writer.Entries("Arguments", OptionWords(command, true));
  writer.Entries("Commands", Commands(command));
  writer.Entries("Options", OptionWords(command, false));
  if (!isProgram) {
    writer.Entries("Everywhere", OptionWords(program, false));
    return writer.Text();
  }
  for (const Chapter& chapter : Chapters()) {
    writer.Heading(chapter.title);
    for (const std::string_view paragraph : chapter.paragraphs)
      writer.Paragraph(paragraph, kIndent);
  }
  return writer.Text();
}

}  // namespace tavrel::host
