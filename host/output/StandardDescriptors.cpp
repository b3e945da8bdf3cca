#include "host/output/StandardDescriptors.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace tavrel::host {

void PrepareStandardDescriptors() noexcept {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    // Opens at the lowest free number, which is this one.
    if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) ::open("/dev/null", O_RDONLY);
  }
  ::signal(SIGPIPE, SIG_IGN);
  ::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace tavrel::host
