#include "host/library/Library.h"

#include <dlfcn.h>

#include <cstdlib>
#include <new>

#include "host/output/Failure.h"

namespace tavrel::host {
namespace {

// The executable's run path leads to it: beside the executable, or in the lib folder next to that.
#if defined(__APPLE__)
constexpr const char* kLibraryName = "@rpath/libTavrel." TAVREL_HOST_SOVERSION ".dylib";
#else
constexpr const char* kLibraryName = "libTavrel.so." TAVREL_HOST_SOVERSION;
#endif

// Sets $HOME, and puts the former value back when it goes.
class HomeVariable {
 public:
  explicit HomeVariable(const std::string& home) {
    if (const char* former = std::getenv("HOME")) former_ = former;
    if (::setenv("HOME", home.c_str(), 1) != 0) throw std::bad_alloc();
  }
  HomeVariable(const HomeVariable&) = delete;
  HomeVariable& operator=(const HomeVariable&) = delete;
  ~HomeVariable() {
    if (former_) {
      ::setenv("HOME", former_->c_str(), 1);
    } else {
      ::unsetenv("HOME");
    }
  }

 private:
  std::optional<std::string> former_;
};

void* Open() {
  return ::dlopen(kLibraryName, RTLD_NOW | RTLD_LOCAL);
}

void* OpenWithHome(const std::string& home) {
  const HomeVariable variable(home);
  return Open();
}

[[noreturn]] void FailWithLoaderMessage(const std::string& what) {
  const char* reason = ::dlerror();
  throw Failure(ExitCode::Failed, what + ": " + (reason != nullptr ? reason : "unknown reason"));
}

template <typename Function>
void Find(void* handle, const char* name, Function& function) {
  // POSIX promises that a data pointer from dlsym() can stand for a function.
  function = reinterpret_cast<Function>(::dlsym(handle, name));
  if (function == nullptr) FailWithLoaderMessage("the Tavrel library does not fit this program");
}

}  // namespace

void Library::Close::operator()(void* handle) const noexcept {
  ::dlclose(handle);
}

Library::Library(const std::optional<std::string>& home)
    : LibraryFunctions(), handle_(home ? OpenWithHome(*home) : Open()) {
  void* handle = handle_.get();
  if (handle == nullptr) FailWithLoaderMessage("cannot open the Tavrel library");
  Find(handle, "GetPlaylistCount", getPlaylistCount);
  Find(handle, "OpenPlaylist", openPlaylist);
  Find(handle, "GetPlaylistName", getPlaylistName);
  Find(handle, "GetPlaylistKind", getPlaylistKind);
  Find(handle, "GetSongCount", getSongCount);
  Find(handle, "GetSongInfo", getSongInfo);
  Find(handle, "AppendRingtone", appendRingtone);
  Find(handle, "GetArtworkCount", getArtworkCount);
  Find(handle, "GetArtworkInfo", getArtworkInfo);
  Find(handle, "CloseArtwork", closeArtwork);
  Find(handle, "OpenAllSongs", openAllSongs);
  Find(handle, "OpenArtworkAny", openArtworkAny);
  Find(handle, "OpenArtworkFile", openArtworkFile);
  Find(handle, "GetSongProperty", getSongProperty);
  Find(handle, "GetLibraryProperty", getLibraryProperty);
  Find(handle, "VisitLibraryProperties", visitLibraryProperties);
  Find(handle, "VisitSongProperties", visitSongProperties);
  Find(handle, "VisitPlaylistProperties", visitPlaylistProperties);
  Find(handle, "FindSongs", findSongs);
}

}  // namespace tavrel::host
