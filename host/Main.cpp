// `tavrel`: the command-line host of the library.
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <string>

#include "host/CommandLine.h"
#include "host/library/Diagnosis.h"
#include "host/library/Library.h"
#include "host/library/LinkedHome.h"
#include "host/library/Session.h"
#include "host/output/Failure.h"
#include "host/output/MessageGuard.h"
#include "host/output/Output.h"
#include "host/output/StandardDescriptors.h"
#include "host/output/Terminal.h"
#include "system/HomeFolder.h"

namespace tavrel::host {
namespace {

// Where the library file is, as the user named the place.
std::string LibraryPath(const Options& options) {
  if (options.library) return *options.library;
  std::optional<std::string> home = options.home ? options.home : system::HomeFolder();
  if (!home) throw Failure(ExitCode::NoLibrary, "this user has no home folder; see --home");
  if (!home->ends_with('/')) *home += '/';
  return *home + "Music/iTunes/iTunes Music Library.xml";
}

// Fails when the library that could not be loaded is needed.
void RequireLibrary(LibraryNeed need, const std::string& path) {
  if (need == LibraryNeed::None) return;
  const Failure failure = Diagnose(path);
  const bool isThere = failure.code != ExitCode::NoLibrary;
  if (need == LibraryNeed::Readable || isThere) throw failure;
}

ExitCode RunWithLibrary(const CommandLine& line, Output& output) {
  const std::string path = LibraryPath(line.options);
  std::optional<LinkedHome> linked;
  std::optional<std::string> home;
  if (line.options.home) home = std::filesystem::absolute(*line.options.home);
  if (line.options.library) home = linked.emplace(*line.options.library).Folder();

  MessageGuard messages;
  const Library library(home);
  if (!library.IsLoaded()) {
    messages
        .Discard();  // the diagnosis says more, and where none is needed nobody wants to hear it
    RequireLibrary(line.need, path);
  }
  const Terminal terminal = DescribeStandardOutput();
  Session session{line.options, path, home, library, terminal, output};
  return line.run(session);
}

ExitCode RunProgram(int count, const char* const* arguments) {
  Output output;
  const CommandLine line = ReadCommandLine(count, arguments, output);
  const ExitCode code = line.run ? RunWithLibrary(line, output) : ExitCode::Done;
  output.Flush();
  return code;
}

}  // namespace
}  // namespace tavrel::host

int main(int count, char** arguments) {
  using namespace tavrel::host;
  ExitCode code = ExitCode::Failed;
  try {
    PrepareStandardDescriptors();
    try {
      code = RunProgram(count, arguments);
    } catch (const Failure& failure) {
      code = failure.code;
      if (*failure.what() != '\0') Complain(failure.what());
    } catch (const std::bad_alloc&) {
      Complain("out of memory");
    } catch (const std::exception& error) {
      Complain(error.what());
    }
  } catch (...) {
    // There was no memory even for the message.
    WriteAll(STDERR_FILENO, "tavrel: out of memory\n");
  }
  return static_cast<int>(code);
}
