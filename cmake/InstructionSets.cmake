# Sources that need instructions of one kind of processor say so before their extension
# (StructuralIndex.avx2.cpp) and are left out for all others.

include(CheckCXXSourceCompiles)
check_cxx_source_compiles("#if !defined(__x86_64__)\n#error\n#endif\nint main() {}" TAVREL_FOR_X86)
check_cxx_source_compiles("#if !defined(__aarch64__)\n#error\n#endif\nint main() {}" TAVREL_FOR_ARM64)

# Sets `result` to those of the sources that are for the target processor.
function(tavrel_for_processor result)
  set(sources ${ARGN})
  if(NOT TAVREL_FOR_X86)
    list(FILTER sources EXCLUDE REGEX "\\.(x86|sse2|pclmul|avx2|avx512)\\.cpp$")
  endif()
  if(NOT TAVREL_FOR_ARM64)
    list(FILTER sources EXCLUDE REGEX "\\.neon\\.cpp$")
  endif()
  set(${result} ${sources} PARENT_SCOPE)
endfunction()
