# Writes what the program says about itself: cmake -DPROGRAM=... -DFOLDER=... -P WriteTexts.cmake
file(MAKE_DIRECTORY ${FOLDER})
foreach(text "tavrel.1 help --man" "tavrel.bash completion bash" "_tavrel completion zsh"
        "tavrel.fish completion fish")
  separate_arguments(arguments UNIX_COMMAND "${text}")
  list(POP_FRONT arguments file)
  execute_process(COMMAND ${PROGRAM} ${arguments} OUTPUT_VARIABLE output RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ${arguments}: ${result}")
  endif()
  file(WRITE ${FOLDER}/${file} "${output}")
endforeach()
