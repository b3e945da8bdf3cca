// tavrel ringtones add: adding a ringtone to iTunes, explained on the way.
#include <algorithm>
#include <filesystem>
#include <memory>

#include "host/commands/Commands.h"
#include "host/library/InputFile.h"
#include "host/output/Json.h"
#include "system/ScriptRunner.h"

namespace tavrel::host {
namespace {

struct RingtoneArguments {
  std::string file;  // as the user wrote it
  bool force = false;
};

void RequireRunner() {
  if (system::FindScriptRunner()) return;
  throw Failure(ExitCode::Failed,
                "this system has no osascript, the program through which iTunes is driven, so no "
                "ringtone can be added; nothing was done");
}

// Without "." and double slashes. A ".." stays: what stands before it may be a link.
std::string AbsolutePath(const std::string& file) {
  const std::filesystem::path path = std::filesystem::absolute(file);
  const bool goesUp = std::find(path.begin(), path.end(), "..") != path.end();
  return goesUp ? path : path.lexically_normal();
}

std::string_view NameOfCharacter(char character) {
  if (character == '"') return "a double quote";
  return character == '\\' ? "a backslash" : "a line break";
}

// The script holds the path as it is, between double quotes.
void RequireSafePath(const std::string& path) {
  const std::size_t at = path.find_first_of("\"\\\n\r");
  if (at == std::string::npos) return;
  throw Failure(ExitCode::Failed, path + ": the path has " +
                                      std::string(NameOfCharacter(path[at])) +
                                      " in it, which would change the script that drives iTunes\n"
                                      "  Rename the file, or use --force. Nothing was done.");
}

constexpr std::string_view kDone =
    "Done: iTunes was told to play the file and got Command-L. "
    "\"tavrel ringtones\" lists it once iTunes has put it into its Ringtones folder.";

constexpr std::string_view kListNotUpdated =
    "iTunes was told to play the file and got Command-L, "
    "but the library could not update its own list of ringtones; the next start reads it anew.";

constexpr std::string_view kNotAdded =
    "The ringtone could not be added: the script was refused or ended in an error.\n"
    "  Is iTunes there? And may this terminal control it, and press keys? "
    "(System Preferences, Security & Privacy, Privacy: Automation, Accessibility)";

std::string_view Explain(std::int32_t result) {
  if (result == 0) return kDone;
  return result > 0 ? kListNotUpdated : kNotAdded;
}

ExitCode AddRingtone(const RingtoneArguments& arguments, Session& session) {
  RequireRunner();
  RequireFile(arguments.file);
  const std::string path = AbsolutePath(arguments.file);
  if (!arguments.force) RequireSafePath(path);

  Complain("iTunes will be started, play " + path + " and then get the keys Command-L");
  const std::int32_t result = session.library.appendRingtone(path.c_str());

  const std::string_view meaning = Explain(result);
  if (session.options.json) {
    const JsonObject answer{{"file", path}, {"result", result}, {"meaning", meaning}};
    session.output.WriteLine(answer.Text());
  } else if (result == 0) {
    session.output.WriteLine(meaning);
  } else {
    Complain(std::string(meaning));
  }
  return result == 0 ? ExitCode::Done : ExitCode::Failed;
}

}  // namespace

void DefineRingtoneAdding(CommandDefinition ringtones) {
  const auto arguments = std::make_shared<RingtoneArguments>();
  CommandDefinition command = ringtones.AddCommand("add", "Add a ringtone to iTunes");
  command.AddRequiredPlace("FILE", arguments->file, "The ringtone's file");
  command.AddFlag("--force", arguments->force,
                  "Send the script also when the file's path changes it");
  command.Makes([arguments] {
    return Task{.run = [arguments](Session& session) { return AddRingtone(*arguments, session); },
                .isPaged = false};
  });
}

}  // namespace tavrel::host
