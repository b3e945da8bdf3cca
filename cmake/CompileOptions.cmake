# Compile and link options that every target of the project shares: link `tavrel_options`.

# On in the presets, where the compilers are known: a newer one may warn of more, and that must stop no user.
option(TAVREL_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(TAVREL_COVERAGE "Count the branches of the library that are taken (Clang)" OFF)
option(TAVREL_REPRODUCIBLE "Let no folder of the build show in what is built" OFF)
set(TAVREL_SANITIZE "" CACHE STRING "Sanitizers to build with, for instance address,undefined")

add_library(tavrel_options INTERFACE)
target_compile_options(tavrel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wundef
  $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual>
  $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes>
  $<$<BOOL:${TAVREL_WARNINGS_AS_ERRORS}>:-Werror>)

if(TAVREL_REPRODUCIBLE)
  target_compile_options(tavrel_options INTERFACE
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()

# Files, times and file numbers of 64 bits, also where words have 32.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_compile_definitions(tavrel_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

# Hardening of what is shipped, the library and the host: what is overrun is noticed, and ends the program.
# FORTIFY needs optimisation, and would hide from the sanitizers what they look for.
add_library(tavrel_hardening INTERFACE)
target_compile_options(tavrel_hardening INTERFACE -fstack-protector-strong)
if(NOT TAVREL_SANITIZE)
  target_compile_options(tavrel_hardening INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()

# Most of what a compiler does for a source of the host or of the tests is reading and instantiating the same
# headers: several sources at a time take a third of the time. The price is that no two of one target may
# give different things one name, also inside their anonymous namespaces, and that what an edit compiles anew
# is more. `scripts/soak sources` compiles each of them by itself.
option(TAVREL_JOIN_SOURCES "Compile sources several at a time, and the library's with precompiled headers"
  ${PROJECT_IS_TOP_LEVEL})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 32)
# GCC tidies its memory up less often where it may take half a gigabyte first: a seventh of the time of such a source.
add_library(tavrel_joined_options INTERFACE)
target_compile_options(tavrel_joined_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:--param=ggc-min-heapsize=524288>)

# tavrel_join_sources(TARGET) does so with the library's, but for the kernels of one job (X.avx2.cpp): those give
# like helpers like names, and are compiled for other processors.
function(tavrel_join_sources target)
  tavrel_set_kernels(${target} SKIP_UNITY_BUILD_INCLUSION)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON)
endfunction()

# tavrel_share_headers(TARGET) has the standard library's headers that most of the library's sources name read once.
function(tavrel_share_headers target)
  tavrel_set_kernels(${target} SKIP_PRECOMPILE_HEADERS)
  if(NOT target STREQUAL tavrel_system)
    target_precompile_headers(${target} REUSE_FROM tavrel_system)
    return()
  endif()
  target_precompile_headers(${target} PRIVATE
    <algorithm> <array> <atomic> <bit> <cstddef> <cstdint> <cstring> <limits> <memory> <new> <optional> <span> <string>
    <string_view> <utility> <vector>)
endfunction()

function(tavrel_set_kernels target property)
  get_target_property(kernels ${target} SOURCES)
  list(FILTER kernels INCLUDE REGEX "\\.[a-z0-9]+\\.cpp$")
  if(kernels)
    get_target_property(folder ${target} SOURCE_DIR)
    list(TRANSFORM kernels PREPEND ${folder}/ REGEX "^[^/].*")
    set_source_files_properties(${kernels} TARGET_DIRECTORY ${target} PROPERTIES ${property} ON)
  endif()
endfunction()

if(TAVREL_SANITIZE)
  target_compile_options(tavrel_options INTERFACE
    -fsanitize=${TAVREL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
    # These two need a C++ runtime, which hosts in C do not have.
    $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function,vptr>)
  # Clang's before 15 prepares every function to look for what is used after its return, and then does not look unless
  # it is asked to when the program starts.
  if(TAVREL_SANITIZE MATCHES address)
    target_compile_options(tavrel_options INTERFACE
      $<$<AND:$<CXX_COMPILER_ID:Clang>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,15>>:-fsanitize-address-use-after-return=never>)
  endif()
  target_link_options(tavrel_options INTERFACE -fsanitize=${TAVREL_SANITIZE})
endif()
if(TAVREL_COVERAGE)  # the library's sources ask for it themselves
  target_link_options(tavrel_options INTERFACE -fprofile-instr-generate)
endif()
