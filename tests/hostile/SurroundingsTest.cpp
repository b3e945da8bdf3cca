// The library in processes that few hosts would make: closed descriptors, hardly any memory, stack or
// descriptors, other users, every kind of locale. It answers as ever, or loads less and lives on.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <locale.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Soak.h"
#include "tests/support/StandInRunner.h"
#include "tests/support/TemporaryHome.h"
#include "tests/support/WholeUse.h"

namespace tavrel::test {
namespace {

enum Answer : int { kSame = 0, kOther = 1, kNotLoaded = 2, kNotPrepared = 3, kDescriptorLeft = 4 };

// What `child` answers in a process of its own; -1 when a signal ended it.
int AnswerInAChild(const std::function<int()>& child) {
  const pid_t process = fork();
  if (process == 0) _exit(child());
  int status = 0;
  EXPECT_EQ(waitpid(process, &status, 0), process);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class Surroundings : public testing::Test {
 protected:
  void SetUp() override { ASSERT_GT(expected_.size(), 100000u) << "was loaded"; }

  // Loads the library, uses everything, and unloads it.
  [[nodiscard]] int LoadAndUse() const {
    void* handle = dlopen(TAVREL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) return kNotLoaded;
    const bool isSame = UseEverything(FunctionsOf(handle)) == expected_;
    return dlclose(handle) == 0 && isSame ? kSame : kOther;
  }

  const ScopedVariable home_{"HOME", TAVREL_SAMPLE_HOME};
  const StandInRunner runner_{"grep -q 'POSIX file'"};  // in the script that it is given
  const CapturedStderr log_;
  const std::string expected_ = UseEverything(FunctionsOf(LoadedLibrary()));
};

}  // namespace

TEST_F(Surroundings, WithoutStandardDescriptorsEverythingIsTheSame) {
  for (unsigned closed = 1; closed < 8; ++closed) {
    const int answer = AnswerInAChild([this, closed]() -> int {
      for (int descriptor = 0; descriptor < 3; ++descriptor) {
        if ((closed >> descriptor & 1) != 0) close(descriptor);
      }
      const int result = LoadAndUse();
      void* handle = dlopen(TAVREL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
      const bool isImported = Import(FunctionsOf(handle)) == 0;
      for (int descriptor = 0; descriptor < 3; ++descriptor) {
        const bool isOpen = fcntl(descriptor, F_GETFD) >= 0;
        if (isOpen == ((closed >> descriptor & 1) != 0)) return kDescriptorLeft;
      }
      return isImported ? result : static_cast<int>(kOther);
    });
    EXPECT_EQ(answer, kSame) << "closed: " << closed;
  }
}

TEST_F(Surroundings, WithOneDescriptorToSpareEverythingIsTheSame) {
  const int answer = AnswerInAChild([this]() -> int {
    closefrom(3);
    const rlimit four{4, 4};
    if (setrlimit(RLIMIT_NOFILE, &four) != 0) return kNotPrepared;
    return LoadAndUse();
  });
  EXPECT_EQ(answer, kSame);
}

TEST_F(Surroundings, WithoutADescriptorToSpareArtworkIsMissingAndAnImportFails) {
  const int answer = AnswerInAChild([]() -> int {
    const LoadedLibrary library;
    closefrom(3);
    const rlimit three{3, 3};
    if (setrlimit(RLIMIT_NOFILE, &three) != 0) return kNotPrepared;
    const FindFunction find = FunctionsOf(library);
    const bool isMissing = OpenFirstArtwork(find) == nullptr && Import(find) == -1;
    return isMissing && library->getSongCount(library->openAllSongs()) > 100 ? kSame : kOther;
  });
  EXPECT_EQ(answer, kSame);
}

// Sanitizers reserve an address space of their own, and make frames many times larger.
#if !TAVREL_SANITIZED
namespace {

rlim_t MappedBytes() {
  long pages = 0;
  std::FILE* statm = std::fopen("/proc/self/statm", "r");
  if (statm == nullptr || std::fscanf(statm, "%ld", &pages) != 1) return 0;
  std::fclose(statm);
  return static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

void* CallIn(void* call) {
  (*static_cast<const std::function<void()>*>(call))();
  return nullptr;
}

}  // namespace

TEST_F(Surroundings, WithLittleMemoryLessIsLoadedAndLaterEverything) {
  int loaded = 0;
  constexpr rlim_t kFine = rlim_t{64} << 10;
  constexpr rlim_t kCoarse = rlim_t{768} << 10;
  for (rlim_t more = 0; more <= rlim_t{16} << 20; more += (IsSoaking() ? kFine : kCoarse)) {
    const int answer = AnswerInAChild([this, more]() -> int {
      rlimit limit{};
      getrlimit(RLIMIT_AS, &limit);
      const rlimit little{MappedBytes() + more, limit.rlim_max};
      if (setrlimit(RLIMIT_AS, &little) != 0) return kNotPrepared;
      void* handle = dlopen(TAVREL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
      setrlimit(RLIMIT_AS, &limit);
      if (handle == nullptr) return kNotLoaded;
      static_cast<void>(UseEverything(FunctionsOf(handle)));
      dlclose(handle);
      return LoadAndUse();
    });
    EXPECT_TRUE(answer == kSame || answer == kNotLoaded) << more << " bytes more: " << answer;
    loaded += answer == kSame ? 1 : 0;
  }
  EXPECT_GT(loaded, 5);
}

TEST_F(Surroundings, OnAStackOf64KilobytesEverythingIsTheSame) {
  int answer = kNotPrepared;
  bool isImported = false;
  const std::function<void()> use = [&] {
    answer = LoadAndUse();
    unsetenv("HOME");  // so that the password database is asked, too
    const LoadedLibrary library;
    isImported = Import(FunctionsOf(library)) >= 0;
  };
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{64} << 10), 0);
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, CallIn, const_cast<std::function<void()>*>(&use)),
            0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(answer, kSame);
  EXPECT_TRUE(isImported);
}
#endif

namespace {

// Only with the two categories that say how letters change their case and how numbers are written: a whole
// locale takes seconds to make.
void MakeLocale(const TemporaryFolder& folder, const std::string& name,
                const std::string& charset) {
  const std::string copied = "\ncopy \"" + name + "\"\n";
  const std::string source =
      folder.Write(name + ".source",
                   "LC_CTYPE" + copied + "END LC_CTYPE\nLC_NUMERIC" + copied + "END LC_NUMERIC\n");
  const std::string command = "localedef --no-archive -c --quiet -i '" + source + "' -f " +
                              charset + " '" + folder.PathOf(name) + "'";
  // It answers 1 for the categories that are missing. NOLINTNEXTLINE(cert-env33-c,concurrency-mt-unsafe)
  static_cast<void>(std::system(command.c_str()));
}

}  // namespace

// Where letters change their case otherwise, and numbers are written otherwise.
TEST_F(Surroundings, InEveryLocaleEverythingIsTheSame) {
  const TemporaryFolder locales;
  const std::string charset = IsSoaking() ? "UTF-8" : "ISO-8859-9";  // with few characters at once
  for (const std::string name : {"tr_TR", "az_AZ", "de_DE"}) {
    MakeLocale(locales, name, charset);
    const int answer = AnswerInAChild([&]() -> int {
      setenv("LOCPATH", locales.path().c_str(), 1);
      if (setlocale(LC_ALL, name.c_str()) == nullptr) return kNotPrepared;
      const int result = LoadAndUse();
      return setlocale(LC_ALL, nullptr) == name ? result : static_cast<int>(kOther);
    });
    EXPECT_EQ(answer, kSame) << name;
  }
}

// A test that runs as root becomes another user, whom nothing keeps from its own files otherwise.
TEST_F(Surroundings, WhatTheUserMayNotReadIsALibraryThatIsNotThere) {
  const TemporaryHome home;
  home.WriteLibrary(SmallLibraryText());
  chmod(home.parent().c_str(), 0755);
  for (const bool isReadable : {true, false}) {
    chmod(home.LibraryFile().c_str(), isReadable ? 0644 : 0000);
    const int answer = AnswerInAChild([&]() -> int {
      if (getuid() == 0 && setuid(65534) != 0) return kNotPrepared;
      const LoadedLibrary library(home.path());
      return library.HasDocument() == isReadable ? kSame : kOther;
    });
    EXPECT_EQ(answer, kSame) << "readable: " << isReadable;
  }
}

}  // namespace tavrel::test
