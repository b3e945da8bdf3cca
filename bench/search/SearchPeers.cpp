#include "bench/search/SearchPeers.h"

#include <spawn.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utf8proc.h>

#include <stdexcept>

extern "C" char** environ;

namespace tavrel::bench {
namespace {

class Utf8procMap : public SearchPeer {
 public:
  explicit Utf8procMap(const TrackTexts& texts) : texts_(texts) {}

  std::string_view Name() const override { return "utf8proc_map+memmem"; }

  std::int64_t Count(const std::string& term) override {
    const std::string pattern = Fold(term);
    std::int64_t count = 0;
    for (const auto& track : texts_) {
      for (const std::string& text : track) {
        const std::string folded = Fold(text);
        if (memmem(folded.data(), folded.size(), pattern.data(), pattern.size()) == nullptr) {
          continue;
        }
        ++count;
        break;
      }
    }
    return count;
  }

 private:
  static std::string Fold(const std::string& text) {
    utf8proc_uint8_t* folded = nullptr;
    const utf8proc_ssize_t size = utf8proc_map(
        reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
        static_cast<utf8proc_ssize_t>(text.size()), &folded,
        static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD | UTF8PROC_STABLE));
    if (size < 0) throw std::runtime_error(utf8proc_errmsg(size));
    std::string result(reinterpret_cast<const char*>(folded), static_cast<std::size_t>(size));
    free(folded);
    return result;
  }

  const TrackTexts& texts_;
};

// Counts lines, not tracks; only its time is of interest.
class Grep : public SearchPeer {
 public:
  Grep(std::string program, std::string file)
      : program_(std::move(program)), name_(program_ + " -i, whole file"), file_(std::move(file)) {}

  std::string_view Name() const override { return name_; }

  std::int64_t Count(const std::string& term) override {
    Run({"-i", "-F", "-c", "--", term, file_});
    return -1;
  }

  [[nodiscard]] bool Runs() {
    try {
      Run({"--version"});
      return true;
    } catch (const std::runtime_error&) {
      return false;
    }
  }

 private:
  void Run(std::vector<std::string> arguments) const {
    std::vector<char*> pointers = {const_cast<char*>(program_.c_str())};
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    // Its answer goes into a pipe: with nobody to read it, grep would stop at the first line found.
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("cannot make a pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    pid_t child = -1;
    const int error =
        posix_spawnp(&child, program_.c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    char answer[256];
    while (read(ends[0], answer, sizeof answer) > 0) continue;
    close(ends[0]);
    int status = 0;
    if (error != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) > 1) {
      throw std::runtime_error(program_ + " cannot be run");
    }
  }

  std::string program_;
  std::string name_;
  std::string file_;
};

}  // namespace

std::unique_ptr<SearchPeer> MakeUtf8procMap(const TrackTexts& texts) {
  return std::make_unique<Utf8procMap>(texts);
}

std::unique_ptr<SearchPeer> MakeGrep(const std::string& program, const std::string& file) {
  auto grep = std::make_unique<Grep>(program, file);
  if (!grep->Runs()) return nullptr;
  return grep;
}

}  // namespace tavrel::bench
