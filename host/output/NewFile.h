// Files that are complete or absent, whatever happens while they are written.
#pragma once

#include <string>
#include <string_view>

#include "host/output/Failure.h"
#include "host/output/Sink.h"
#include "system/BlockedSignals.h"

namespace tavrel::host {

enum class IfThere { Keep, Replace };

// What cannot be written.
class WriteFailure : public Failure {
 public:
  // number: of the system's error. what: could not be done.
  WriteFailure(const std::string& path, int number, const char* what = "write");

  // Whether nothing else could be written there either: there is no room left, or the disk is gone.
  [[nodiscard]] bool IsOfTheDisk() const noexcept;

 private:
  int number_;
};

// A file that is written under a temporary name in the same folder, and gets its own in one step when it is
// finished; one that is not goes with the object. A signal that ends the program waits until the object is
// gone; writing notices it, and is a Failure without a message then. What cannot be written is a WriteFailure.
class NewFile : public Sink {
 public:
  // Makes the temporary file.
  explicit NewFile(std::string path);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() override;

  void Write(std::string_view bytes) override;

  // Makes it a second name of another file, instead of one of its own. False where the system refuses that, and
  // errno says why; nothing can be written then. Nothing may have been written before.
  [[nodiscard]] bool LinkTo(const std::string& file);

  // Gives the file its name. False, with nothing changed, when there is something of that name and it is to
  // be kept.
  [[nodiscard]] bool Finish(IfThere ifThere);

  // For those who write it by other means.
  [[nodiscard]] const std::string& TemporaryPath() const noexcept { return temporary_; }
  [[nodiscard]] int Descriptor() const noexcept { return descriptor_; }

 private:
  void WriteOut(std::string_view bytes);
  void Flush();
  void Replace();
  [[nodiscard]] bool TakeFreeName();
  [[nodiscard]] bool RenameToFreeName();

  // None comes between the making of a temporary file and its end.
  system::BlockedSignals blocked_ = system::BlockedSignals::Ending();
  std::string path_;
  std::string temporary_;  // empty once it is gone
  int descriptor_ = -1;
  std::string waiting_;
};

// Writes a file that is known as a whole. False, with nothing changed, when there is something of that name
// and it is to be kept, also when it has come only meanwhile.
[[nodiscard]] bool WriteNewFile(const std::string& path, std::string_view bytes, IfThere ifThere);

// Whether there is anything of that name, a link that leads nowhere included.
[[nodiscard]] bool IsTaken(const std::string& path) noexcept;

// Whether a file is there that holds exactly the text.
[[nodiscard]] bool HoldsText(const std::string& path, std::string_view text);

// Makes a folder, and those that lead to it, where they are missing. One that cannot be made is a WriteFailure.
void MakeFolders(const std::string& path);

// For those who write by other means: a Failure without a message when a signal waits that is to end the
// program, so that they give up.
void RequireNoEndingSignal();

}  // namespace tavrel::host
