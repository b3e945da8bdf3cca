# The library's own dependencies. Those of the host, the tests and the benchmarks are looked for in
# their folders, and switch them off when they are missing.

# Only programs compress and inflate.
if(TAVREL_BUILD_HOST OR TAVREL_BUILD_TESTS OR TAVREL_BUILD_BENCH OR TAVREL_BUILD_FUZZERS)
  find_package(ZLIB REQUIRED)
endif()

# Tests, benchmarks and a fuzz target read and write JSON through a compiled library: a template of JSON in a header takes
# longer to compile than the source that uses it.
find_path(JANSSON_INCLUDE_DIR jansson.h)
find_library(JANSSON_LIBRARY jansson)
if(JANSSON_INCLUDE_DIR AND JANSSON_LIBRARY AND NOT TARGET jansson::jansson)
  add_library(jansson::jansson UNKNOWN IMPORTED)
  set_target_properties(jansson::jansson PROPERTIES
    IMPORTED_LOCATION ${JANSSON_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${JANSSON_INCLUDE_DIR})
endif()

find_package(uriparser QUIET CONFIG)
if(NOT TARGET uriparser::uriparser)
  find_path(URIPARSER_INCLUDE_DIR uriparser/Uri.h REQUIRED)
  find_library(URIPARSER_LIBRARY uriparser REQUIRED)
  add_library(uriparser::uriparser UNKNOWN IMPORTED)
  set_target_properties(uriparser::uriparser PROPERTIES
    IMPORTED_LOCATION ${URIPARSER_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${URIPARSER_INCLUDE_DIR})
endif()

# Debian's package has neither a CMake package nor a target: a header and a library.
if(NOT TARGET utf8proc::utf8proc)
  find_path(UTF8PROC_INCLUDE_DIR utf8proc.h REQUIRED)
  find_library(UTF8PROC_LIBRARY utf8proc REQUIRED)
  add_library(utf8proc::utf8proc UNKNOWN IMPORTED)
  set_target_properties(utf8proc::utf8proc PROPERTIES
    IMPORTED_LOCATION ${UTF8PROC_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${UTF8PROC_INCLUDE_DIR})
endif()
