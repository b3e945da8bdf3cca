# cmake -DPROGRAM=... -DRESULT=... -DAPART=... -P RegisterSuites.cmake asks a GoogleTest program for its tests and
# writes their registration for CTest: a process for each suite; for each test where APART, a regular
# expression, fits the suite's name. The limit is for what hangs: a suite that counts its branches takes minutes where
# others build beside it.
execute_process(COMMAND ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE listed COMMAND_ERROR_IS_FATAL ANY)
set(registered)
function(register name)
  string(APPEND registered "add_test([==[${name}]==] [==[${PROGRAM}]==] [==[--gtest_filter=${ARGN}]==])\n"
    "set_tests_properties([==[${name}]==] PROPERTIES TIMEOUT 900)\n")
  set(registered "${registered}" PARENT_SCOPE)
endfunction()

string(REPLACE "\n" ";" lines "${listed}")
foreach(line IN LISTS lines)
  if(line MATCHES "^([^ ]+)\\.( |$)")
    set(suite ${CMAKE_MATCH_1})
    if(NOT suite MATCHES "^(${APART})$")
      register(${suite} ${suite}.*)
    endif()
  elseif(suite MATCHES "^(${APART})$" AND line MATCHES "^  ([^ ]+)")
    register(${suite}.${CMAKE_MATCH_1} ${suite}.${CMAKE_MATCH_1})
  endif()
endforeach()
file(WRITE ${RESULT} "${registered}")
