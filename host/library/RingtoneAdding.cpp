#include "host/library/RingtoneAdding.h"

#include <algorithm>
#include <filesystem>

#include "host/output/Json.h"
#include "system/ScriptRunner.h"

namespace tavrel::host {
namespace {

namespace fs = std::filesystem;

void RequireRunner() {
  if (system::FindScriptRunner()) return;
  throw Failure(ExitCode::Failed,
                "this system has no osascript, the program through which iTunes is driven, so no "
                "ringtone can be added; nothing was done");
}

// Without "." and double slashes. A ".." stays: what stands before it may be a link.
std::string AbsolutePath(const std::string& file) {
  const fs::path path = fs::absolute(file);
  const bool goesUp = std::find(path.begin(), path.end(), "..") != path.end();
  return goesUp ? path : path.lexically_normal();
}

void RequireFile(const std::string& file) {
  std::error_code ignored;
  const fs::file_status state = fs::status(file, ignored);
  if (!fs::exists(state)) throw Failure(ExitCode::Failed, file + ": there is no such file");
  if (fs::is_directory(state)) throw Failure(ExitCode::Failed, file + ": this is a folder");
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

std::string_view Explain(std::int32_t result) {
  if (result == 0) {
    return "Done: iTunes was told to play the file and got Command-L. \"tavrel ringtones\" lists "
           "it "
           "once iTunes has put it into its Ringtones folder.";
  }
  if (result > 0) {
    return "iTunes was told to play the file and got Command-L, but the library could not update "
           "its own list of ringtones; the next start reads it anew.";
  }
  return "The ringtone could not be added: the script was refused or ended in an error.\n"
         "  Is iTunes there? And may this terminal control it, and press keys? (System "
         "Preferences, "
         "Security & Privacy, Privacy: Automation, Accessibility)";
}

}  // namespace

ExitCode AddRingtone(const std::string& file, bool force, Session& session) {
  RequireRunner();
  RequireFile(file);
  const std::string path = AbsolutePath(file);
  if (!force) RequireSafePath(path);

  Complain("iTunes will be started, play " + path + " and then get the keys Command-L");
  session.messages.Show();
  const std::int32_t result = session.library.appendRingtone(path.c_str());

  if (session.options.json) {
    session.output.WriteLine(
        JsonLine({{"file", path}, {"result", result}, {"meaning", Explain(result)}}));
  } else if (result == 0) {
    session.output.WriteLine(Explain(result));
  } else {
    Complain(std::string(Explain(result)));
  }
  return result == 0 ? ExitCode::Done : ExitCode::Failed;
}

}  // namespace tavrel::host
