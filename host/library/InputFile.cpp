#include "host/library/InputFile.h"

#include <filesystem>

#include "host/output/Failure.h"

namespace tavrel::host {

void RequireFile(const std::string& file) {
  std::error_code ignored;
  const std::filesystem::file_status state = std::filesystem::status(file, ignored);
  if (!std::filesystem::exists(state)) {
    throw Failure(ExitCode::Failed, file + ": there is no such file");
  }
  if (std::filesystem::is_directory(state)) {
    throw Failure(ExitCode::Failed, file + ": this is a folder");
  }
}

}  // namespace tavrel::host
