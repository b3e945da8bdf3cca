# Limits what a shared library exports to the checked-in lists of names.

set(TAVREL_EXPORT_LISTS
  ${PROJECT_SOURCE_DIR}/agent/exports/interface.txt
  ${PROJECT_SOURCE_DIR}/agent/exports/additions.txt)

function(tavrel_limit_exports target)
  set(names)
  foreach(list ${TAVREL_EXPORT_LISTS})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
    file(STRINGS ${list} lines REGEX "^[A-Za-z_]")
    list(APPEND names ${lines})
  endforeach()

  if(APPLE)
    list(TRANSFORM names PREPEND "_")
    string(JOIN "\n" text ${names})
    set(file ${PROJECT_BINARY_DIR}/exports.list)
    file(CONFIGURE OUTPUT ${file} CONTENT "${text}\n")
    target_link_options(${target} PRIVATE -Wl,-exported_symbols_list,${file} -Wl,-dead_strip_dylibs)
  else()
    # Every name carries the major version, so that two of them can serve one process. Who asks for the bare
    # name, by dlsym or from before there was a version, gets it.
    set(node TAVREL_${PROJECT_VERSION_MAJOR})
    string(JOIN ";\n    " text ${names})
    set(file ${PROJECT_BINARY_DIR}/exports.map)
    file(CONFIGURE OUTPUT ${file} CONTENT "${node} {\n  global:\n    ${text};\n  local: *;\n};\n")
    target_link_options(${target} PRIVATE -Wl,--version-script=${file}
      # What the library refers to is its own, also where the host, or a second copy of the library in the
      # same process, has a function or a variable of the same name.
      -Wl,-Bsymbolic -Wl,-z,relro -Wl,-z,now -Wl,--as-needed)
    if(NOT TAVREL_SANITIZE)
      target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
  endif()
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${file})
endfunction()
