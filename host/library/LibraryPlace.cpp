#include "host/library/LibraryPlace.h"

#include <errno.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "host/library/Diagnosis.h"
#include "host/library/LibraryFolder.h"
#include "host/library/Unpacking.h"
#include "host/output/Format.h"
#include "system/Files.h"
#include "system/HomeFolder.h"

namespace tavrel::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kBelowHome = "Music/iTunes/iTunes Music Library.xml";

std::string Below(const std::string& folder, const char* name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

bool IsThere(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

bool IsFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsCompressed(const system::FileDescriptor& file) {
  unsigned char start[2];
  return file && system::ReadAt(file.get(), 0, start, sizeof start) == sizeof start &&
         start[0] == 0x1F && start[1] == 0x8B;
}

std::string NoteOf(const std::vector<std::string>& files) {
  if (files.size() < 2) return {};
  std::string note = fmt::format("there are {} library files; the newest is read: {}", files.size(),
                                 files.front());
  for (std::size_t i = 1; i < files.size(); ++i) note += "\n  older: " + files[i];
  return note;
}

}  // namespace

LibraryPlace::LibraryPlace(const Options& options) {
  if (!options.library) {
    UseHome(options.home);
  } else if (*options.library == "-") {
    UseStandardInput();
  } else if (IsFolder(*options.library)) {
    UseFolder(*options.library);
  } else {
    UseFile(*options.library);
  }
}

void LibraryPlace::UseHome(const std::optional<std::string>& chosen) {
  const std::optional<std::string> home = chosen ? chosen : system::HomeFolder();
  if (!home) throw Failure(ExitCode::NoLibrary, "this user has no home folder; see --home");
  path_ = Below(*home, kBelowHome);
  if (chosen) home_ = fs::absolute(*chosen);
  if (IsThere(path_)) return;
  if (chosen || FindLibraryFiles(*home).empty()) {
    searched_ = home;
  } else {
    UseFolder(*home);
  }
}

void LibraryPlace::UseFolder(const std::string& folder) {
  const std::vector<std::string> files = FindLibraryFiles(folder);
  if (!files.empty()) {
    note_ = NoteOf(files);
    UseFile(files.front());
    return;
  }
  // Beside the missing file there may be covers.
  UseFile(Below(folder,
                IsFolder(Below(folder, "Music/iTunes")) ? kBelowHome : "iTunes Music Library.xml"));
  searched_ = folder;
}

void LibraryPlace::UseFile(const std::string& file) {
  path_ = file;
  home_ = linked_.emplace().Folder();
  const system::FileDescriptor source = system::OpenRegularFile(file.c_str());
  if (IsCompressed(source)) {
    Copy(source.get());
  } else {
    linked_->LinkLibrary(file);
  }
  linked_->LinkNeighbours(file);
}

void LibraryPlace::UseStandardInput() {
  if (::isatty(STDIN_FILENO) == 1) {
    throw Failure(ExitCode::Usage,
                  "-l -: standard input is this terminal\n  zcat FILE | tavrel -l -");
  }
  path_ = kStandardInput;
  home_ = linked_.emplace().Folder();
  Copy(STDIN_FILENO);
}

void LibraryPlace::Copy(int from) {
  const system::FileDescriptor copy = linked_->MakeLibrary();
  const auto fail = [&](ExitCode code, const std::string& reason) {
    throw Failure(code, "cannot read the library file " + path_ + "\n  " + reason);
  };
  switch (Unpack(from, copy.get(), system::kLargestFile)) {
    case Unpacked::Whole:
    case Unpacked::CutOff:  // so is the library file then, which is said once it is read
      return;
    case Unpacked::Damaged:
      fail(ExitCode::Unreadable, "It is compressed, and damaged: see gzip -t.");
      return;
    case Unpacked::TooLarge:
      fail(ExitCode::Unreadable,
           fmt::format("It has more than the {} bytes that the library reads at most.",
                       Grouped(system::kLargestFile)));
      return;
    case Unpacked::NoInput:
      fail(ExitCode::Unreadable, std::strerror(errno));
      return;
    case Unpacked::NoRoom:
      fail(ExitCode::Failed,
           fmt::format("It cannot be copied to {}: {}; set TMPDIR to another folder.",
                       linked_->Folder(), std::strerror(errno)));
  }
}

Failure LibraryPlace::WhyNotLoaded() const {
  if (!searched_) return Diagnose(path_, File());
  return IsLinked() ? NoLibraryIn(*searched_) : NoLibraryAt(path_, *searched_);
}

}  // namespace tavrel::host
