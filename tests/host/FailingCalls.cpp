// Loaded before everything else, stands between `tavrel` and the system, and makes calls fail:
//
//   FAULT_KIND     which calls are counted: memory, open, stat, list, read, write, make, link, folder or thread
//   FAULT_NUMBER   which of them fails, counted from 0
//   FAULT_AFTER    set: all later ones fail, too
//   FAULT_COUNT    a file that gets the number of calls at the program's end
//   FAULT_SIGNAL   a signal, which comes to the program instead; the call is made all the same
//   FAULT_PAUSE    milliseconds, by which the call takes longer instead
//   FAULT_DAMAGE   set: what is read of a file with a temporary name begins with another byte
//   FAULT_REPLACE  a folder: a link to it takes the place of each folder "tavrel-..." as soon as that is made
//
// Counting begins with the program's first call of signal(), which is its first call of all. Messages are
// always written.
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

const char* kind = nullptr;  // null: nothing is counted
long number = 0;
bool isAfter = false;
int signalInstead = 0;
unsigned pause = 0;  // in microseconds
bool isCounting = false;
long calls = 0;
dev_t messageDevice = 0;
ino_t messageNumber = 0;

__attribute__((constructor)) void Begin() {
  if (strcmp(program_invocation_short_name, "tavrel") != 0) return;
  kind = getenv("FAULT_KIND");
  if (const char* text = getenv("FAULT_NUMBER")) number = atol(text);
  isAfter = getenv("FAULT_AFTER") != nullptr;
  if (const char* text = getenv("FAULT_SIGNAL")) signalInstead = atoi(text);
  if (const char* text = getenv("FAULT_PAUSE")) pause = static_cast<unsigned>(atoi(text)) * 1000;
}

__attribute__((destructor)) void End() {
  const char* path = getenv("FAULT_COUNT");
  if (kind == nullptr || path == nullptr) return;
  isCounting = false;
  if (FILE* file = fopen(path, "w")) {
    fprintf(file, "%ld", calls);
    fclose(file);
  }
}

bool Fails(const char* which, int error) {
  if (!isCounting || strcmp(kind, which) != 0) return false;
  const long call = calls++;
  if (isAfter ? call < number : call != number) return false;
  if (pause != 0) {
    usleep(pause);
    return false;
  }
  if (signalInstead != 0) {
    raise(signalInstead);
    return false;
  }
  errno = error;
  return true;
}

template <typename Function>
Function* Next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsDamaged(int file) {
  if (getenv("FAULT_DAMAGE") == nullptr) return false;
  char link[64];
  char path[4096] = "";
  snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  return readlink(link, path, sizeof path - 1) > 0 && strstr(path, "/.tavrel-") != nullptr;
}

}  // namespace

// The system's function, looked up once.
#define REAL(name)                                 \
  (*[] {                                           \
    static const auto real = Next(&::name, #name); \
    return real;                                   \
  }())

extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);

void* malloc(size_t bytes) {
  return Fails("memory", ENOMEM) ? nullptr : __libc_malloc(bytes);
}
void* calloc(size_t count, size_t bytes) {
  return Fails("memory", ENOMEM) ? nullptr : __libc_calloc(count, bytes);
}
void* realloc(void* block, size_t bytes) {
  return Fails("memory", ENOMEM) ? nullptr : __libc_realloc(block, bytes);
}

sighandler_t signal(int signalNumber, sighandler_t handler) {
  if (kind != nullptr && !isCounting) {
    struct stat state;
    if (fstat(STDERR_FILENO, &state) == 0) {
      messageDevice = state.st_dev;
      messageNumber = state.st_ino;
    }
    isCounting = true;
  }
  return REAL(signal)(signalNumber, handler);
}

#define OPENING(name)                          \
  int name(const char* path, int flags, ...) { \
    va_list rest;                              \
    va_start(rest, flags);                     \
    const mode_t mode = va_arg(rest, mode_t);  \
    va_end(rest);                              \
    if (Fails("open", EMFILE)) return -1;      \
    return REAL(name)(path, flags, mode);      \
  }
OPENING(open)
OPENING(open64)

#define OPENING_AT(name)                                   \
  int name(int folder, const char* path, int flags, ...) { \
    va_list rest;                                          \
    va_start(rest, flags);                                 \
    const mode_t mode = va_arg(rest, mode_t);              \
    va_end(rest);                                          \
    if (Fails("open", EMFILE)) return -1;                  \
    return REAL(name)(folder, path, flags, mode);          \
  }
OPENING_AT(openat)
OPENING_AT(openat64)

DIR* opendir(const char* path) {
  return Fails("list", EACCES) ? nullptr : REAL(opendir)(path);
}
DIR* fdopendir(int folder) {
  return Fails("list", ENOMEM) ? nullptr : REAL(fdopendir)(folder);
}
struct dirent* readdir(DIR* folder) {
  return Fails("list", EIO) ? nullptr : REAL(readdir)(folder);
}
struct dirent64* readdir64(DIR* folder) {
  return Fails("list", EIO) ? nullptr : REAL(readdir64)(folder);
}

int stat(const char* path, struct stat* state) {
  return Fails("stat", EACCES) ? -1 : REAL(stat)(path, state);
}
int lstat(const char* path, struct stat* state) {
  return Fails("stat", EACCES) ? -1 : REAL(lstat)(path, state);
}
int fstat(int file, struct stat* state) {
  return Fails("stat", EIO) ? -1 : REAL(fstat)(file, state);
}
int fstatat(int folder, const char* path, struct stat* state, int flags) {
  return Fails("stat", EACCES) ? -1 : REAL(fstatat)(folder, path, state, flags);
}

ssize_t read(int file, void* to, size_t bytes) {
  return Fails("read", EIO) ? -1 : REAL(read)(file, to, bytes);
}
ssize_t pread(int file, void* to, size_t bytes, off_t at) {
  if (Fails("read", EIO)) return -1;
  const ssize_t count = REAL(pread)(file, to, bytes, at);
  if (count > 0 && at == 0 && IsDamaged(file)) *static_cast<char*>(to) ^= 1;
  return count;
}

ssize_t write(int file, const void* from, size_t bytes) {
  struct stat state;
  const bool isMessage = !isCounting || file == STDERR_FILENO ||
                         (REAL(fstat)(file, &state) == 0 && state.st_dev == messageDevice &&
                          state.st_ino == messageNumber);
  return !isMessage && Fails("write", ENOSPC) ? -1 : REAL(write)(file, from, bytes);
}

ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t bytes,
                        unsigned flags) {
  if (Fails("write", ENOSPC)) return -1;
  return REAL(copy_file_range)(from, fromAt, to, toAt, bytes, flags);
}
int fsync(int file) {
  return Fails("write", EIO) ? -1 : REAL(fsync)(file);
}

int mkdirat(int folder, const char* path, mode_t mode) {
  if (Fails("make", ENOSPC)) return -1;
  const int result = REAL(mkdirat)(folder, path, mode);
  const char* replacement = getenv("FAULT_REPLACE");
  if (replacement != nullptr && strncmp(path, "tavrel-", 7) == 0) {
    renameat(folder, path, folder, "moved");
    if (symlinkat(replacement, folder, path) != 0) abort();
  }
  return result;
}
int mkdir(const char* path, mode_t mode) {
  return Fails("make", ENOSPC) || Fails("folder", ENOSPC) ? -1 : REAL(mkdir)(path, mode);
}
int symlinkat(const char* target, int folder, const char* path) {
  return Fails("make", ENOSPC) ? -1 : REAL(symlinkat)(target, folder, path);
}
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) {
  return Fails("thread", EAGAIN) ? EAGAIN
                                 : REAL(pthread_create)(thread, attributes, start, argument);
}
int link(const char* from, const char* to) {
  return Fails("make", EPERM) ? -1 : REAL(link)(from, to);
}
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
  if (Fails("make", EPERM) || Fails("link", EPERM)) return -1;
  return REAL(linkat)(fromFolder, from, toFolder, to, flags);
}
int rename(const char* from, const char* to) {
  return Fails("make", EIO) ? -1 : REAL(rename)(from, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  return Fails("make", EIO) ? -1 : REAL(renameat2)(fromFolder, from, toFolder, to, flags);
}
int memfd_create(const char* name, unsigned flags) {
  static const auto real =
      reinterpret_cast<int (*)(const char*, unsigned)>(dlsym(RTLD_NEXT, "memfd_create"));
  return Fails("make", ENOSYS) ? -1 : real(name, flags);
}

}  // extern "C"
