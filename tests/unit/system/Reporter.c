/* A stand-in for `osascript` that says in which state it was started, on standard output:
 * "descriptors: 0 1 2", "ignored: 13", "blocked: 15", "arguments: 1", "VARIABLE=value" for each
 * variable whose name begins with "TAVREL_TEST". Built without sanitizers, which change such a
 * state. */
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>

extern char** environ;

int main(int count, char** arguments) {
  (void)arguments;
  printf("descriptors:");
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) >= 0) printf(" %d", descriptor);
  }
  printf("\nignored:");
  for (int number = 1; number < NSIG; ++number) {
    struct sigaction action;
    if (sigaction(number, NULL, &action) == 0 && action.sa_handler != SIG_DFL) {
      printf(" %d", number);
    }
  }
  printf("\nblocked:");
  sigset_t blocked;
  sigprocmask(SIG_SETMASK, NULL, &blocked);
  for (int number = 1; number < NSIG; ++number) {
    if (sigismember(&blocked, number) == 1) printf(" %d", number);
  }
  printf("\narguments: %d\n", count);
  for (char** variable = environ; *variable != NULL; ++variable) {
    if (strncmp(*variable, "TAVREL_TEST", 11) == 0) puts(*variable);
  }
  return 0;
}
