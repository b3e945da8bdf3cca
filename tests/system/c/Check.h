/* Checks of a C test program: each prints what failed, and the program's result tells how many. */
#ifndef TAVREL_TESTS_SYSTEM_C_CHECK_H_
#define TAVREL_TESTS_SYSTEM_C_CHECK_H_

#include <stdio.h>

static int failures = 0;

#define CHECK(condition)                                                      \
  do {                                                                        \
    if (!(condition)) {                                                       \
      fprintf(stderr, "%s:%d: failed: %s\n", __FILE__, __LINE__, #condition); \
      ++failures;                                                             \
    }                                                                         \
  } while (0)

#endif
