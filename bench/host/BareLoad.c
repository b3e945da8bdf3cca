/* host_bare_load LIBRARY: opens the library, which reads $HOME's library file, and closes it. */
#include <dlfcn.h>
#include <stddef.h>

int main(int argc, char** argv) {
  void* library = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
  return library == NULL || dlclose(library) != 0;
}
