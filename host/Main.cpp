// `tavrel`: the command-line host of the library.
#include <unistd.h>

#include <cstring>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <string>

#include "host/CommandLine.h"
#include "host/files/SongFiles.h"
#include "host/library/Diagnosis.h"
#include "host/library/FileFormat.h"
#include "host/library/Library.h"
#include "host/library/LibraryPlace.h"
#include "host/library/Session.h"
#include "host/output/Failure.h"
#include "host/output/Format.h"
#include "host/output/MessageGuard.h"
#include "host/output/Output.h"
#include "host/output/StandardDescriptors.h"
#include "host/output/Terminal.h"

namespace tavrel::host {
namespace {

// Fails when the library that could not be loaded is needed.
void RequireLibrary(LibraryNeed need, const LibraryPlace& place) {
  if (need == LibraryNeed::None) return;
  const Failure failure = place.WhyNotLoaded();
  const bool isThere = failure.code != ExitCode::NoLibrary;
  if (need == LibraryNeed::Readable || isThere) throw failure;
}

std::int32_t StopAtTracks(const char* key, const char*, const char*, void* context) {
  auto& found = *static_cast<bool*>(context);
  found = std::strcmp(key, "Tracks") == 0;
  return found ? 0 : 1;
}

// Fails when what was read is no library. A new one has no track yet, but a place for them.
void RequireTracks(const Library& library, const LibraryPlace& place) {
  if (library.getSongCount(library.openAllSongs()) > 0) return;
  bool found = false;
  library.visitLibraryProperties(StopAtTracks, &found);
  if (!found) throw DiagnoseStranger(place.Path(), place.File());
}

// Runs the command, and says behind its output when the library file is not all there.
ExitCode RunOnLibrary(const CommandLine& line, Session& session) {
  const bool isWhole = EndsLikePropertyList(session.place.File());
  const ExitCode code = line.task.run(session);
  if (isWhole) return code;
  session.output.Finish();
  const std::int32_t songs = session.library.getSongCount(session.library.openAllSongs());
  Complain(session.place.Path() + " is cut off: " + Counted(songs, "song") +
           " read\n  It does not end in </plist>. Copy it again, or let iTunes or Music export it "
           "anew.");
  return ExitCode::Failed;
}

std::string MusicFolderOf(const Library& library) {
  const std::int32_t size = library.getLibraryProperty("Music Folder", nullptr, 0);
  if (size <= 0) return {};
  std::string url(static_cast<std::size_t>(size), '\0');
  library.getLibraryProperty("Music Folder", url.data(), size);
  url.pop_back();
  return url;
}

// None for one that comes from a program.
std::optional<std::string> LibraryFolderOf(const LibraryPlace& place) {
  if (place.Path() == kStandardInput) return std::nullopt;
  return std::filesystem::absolute(place.Path()).parent_path().string();
}

ExitCode RunWithLibrary(const CommandLine& line, Output& output) {
  const Options& options = line.options;
  const LibraryPlace place(options);
  MessageGuard messages(options.verbose ? LogLines::Shown : LogLines::Dropped);
  Library library(place.Home());
  const bool isLoaded = library.IsLoaded();
  if (!isLoaded) {
    messages
        .Discard();  // the diagnosis says more, and where none is needed nobody wants to hear it
    RequireLibrary(line.task.need, place);
  }
  SongFiles files(options.paths, MusicFolderOf(library), LibraryFolderOf(place));
  library.files = &files;
  const Terminal terminal = DescribeStandardOutput(options.color);
  Session session{options, place, place.Path(), place.Home(), library, terminal, output, files};
  if (!isLoaded || line.task.need == LibraryNeed::None) return line.task.run(session);
  RequireTracks(library, place);
  if (!options.quiet && !place.Note().empty()) Complain(place.Note());
  return RunOnLibrary(line, session);
}

ExitCode RunProgram(int count, const char* const* arguments) {
  Output output;
  const CommandLine line = ReadCommandLine(count, arguments);
  if (line.task.isPaged && !line.options.noPager) output.PageLongOutput();
  output.Write(line.text);
  const ExitCode code = line.task.run ? RunWithLibrary(line, output) : ExitCode::Done;
  output.Finish();
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
