// What may be said to a command, and what it does then. Each command defines its own part with this; the
// headers of the library that parses, which take a compiler long, stay out of sight.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/library/Session.h"
#include "host/output/Failure.h"

namespace CLI {
class App;
}  // namespace CLI

namespace tavrel::host {

// Which library a command cannot do without.
enum class LibraryNeed {
  Readable,         // one that can be read
  ReadableIfThere,  // none, but one that is there must be readable
  None,             // it works the same without
};

// What a command line asks for.
struct Task {
  std::function<ExitCode(Session&)> run;  // none when a text is all that is asked for
  LibraryNeed need = LibraryNeed::Readable;
  bool isPaged = true;  // long output may go through the pager
};

// Options that exclude each other, a value that is none: the program ends with ExitCode::Usage.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Definitions;

// A command, or the program itself. Values are borrowed until the command line is read; what the command
// runs keeps its own alive, as with a shared pointer to all of them.
//
// names:    of an option: "-o,--output".
// argument: as help shows it: "PATH"; "a|b" says what may be chosen.
// text:     for help, without a full stop. Line breaks are for the eyes of the source's readers.
class CommandDefinition {
 public:
  // Both are borrowed.
  CommandDefinition(CLI::App& parser, Definitions& all) : parser_(&parser), all_(&all) {}

  [[nodiscard]] CommandDefinition AddCommand(const std::string& name, const std::string& text);
  void AddAlias(const std::string& name);

  void AddFlag(const std::string& names, bool& isGiven, const std::string& text);
  void AddText(const std::string& names, std::optional<std::string>& value,
               const std::string& argument, const std::string& text);
  // May be given again and again.
  void AddTexts(const std::string& names, std::vector<std::string>& values,
                const std::string& argument, const std::string& text);
  // From 1 on.
  void AddCount(const std::string& names, std::size_t& value, const std::string& argument,
                const std::string& text);
  // An argument of the form "a|b|c" comes of the choices when none is given. Case counts.
  void AddChoice(const std::string& names, std::optional<std::string>& value,
                 const std::vector<std::string>& choices, const std::string& text,
                 const std::string& argument = {});
  // Case does not count.
  void AddChoiceInAnyCase(const std::string& names, std::optional<std::string>& value,
                          const std::vector<std::string>& choices, const std::string& text,
                          const std::string& argument = {});

  // Several of the words, parted by commas, as one text; others are let through, too.
  void AddParted(const std::string& names, std::optional<std::string>& value,
                 const std::vector<std::string>& words, const std::string& argument,
                 const std::string& text);

  // What stands by its place, under the name that help gives it.
  void AddPlace(const std::string& name, std::optional<std::string>& value,
                const std::string& text);
  void AddRequiredPlace(const std::string& name, std::string& value, const std::string& text);
  void AddRequiredChoice(const std::string& name, std::string& value,
                         const std::vector<std::string>& choices, const std::string& text);
  // Several; most: 0 for any number.
  void AddPlaces(const std::string& name, std::vector<std::string>& values, std::size_t most,
                 const std::string& text);

  // make: called when this command was asked for, and none that is below it. It checks the values, and
  // throws UsageError where they do not fit together.
  void Makes(std::function<Task()> make);

 private:
  CLI::App* parser_;
  Definitions* all_;
};

}  // namespace tavrel::host
