execute_process(COMMAND ${GIT} ls-files -- *.h *.c *.cpp
  OUTPUT_VARIABLE files COMMAND_ERROR_IS_FATAL ANY OUTPUT_STRIP_TRAILING_WHITESPACE)
string(REPLACE "\n" ";" files "${files}")
if(NOT files)
  message(FATAL_ERROR "git names no source files")
endif()
execute_process(COMMAND ${CLANG_FORMAT} --dry-run -Werror ${files} COMMAND_ERROR_IS_FATAL ANY)
