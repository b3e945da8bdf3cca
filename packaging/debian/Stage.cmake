# What a package has in Debian beside what `cmake --install` puts there. Run by CPack before it packs, with a folder
# of each component below CPACK_TEMPORARY_INSTALL_DIRECTORY; every file is the same whenever and wherever that is.
cmake_minimum_required(VERSION 3.21)

set(here ${CMAKE_CURRENT_LIST_DIR})
set(readable OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

function(compress file)
  execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
  file(CHMOD ${file}.gz PERMISSIONS ${readable})
endfunction()

# Licence and changes of the program, and of the package, as Debian has them in every package.
function(add_documents tree package)
  set(documents ${tree}/usr/share/doc/${package})
  configure_file(${here}/../../CHANGELOG.md ${documents}/changelog COPYONLY)
  configure_file(${here}/changelog ${documents}/changelog.Debian @ONLY)
  file(READ ${documents}/changelog.Debian text)
  set(version "${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
  string(FIND "${text}" "tavrel (${version}) " place)
  if(NOT place EQUAL 0)
    message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${version}")
  endif()
  compress(${documents}/changelog)
  compress(${documents}/changelog.Debian)
  configure_file(${here}/copyright ${documents}/copyright COPYONLY)
  file(CHMOD ${documents}/copyright PERMISSIONS ${readable})
endfunction()

foreach(component IN ITEMS runtime development host)
  set(tree ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component})
  string(TOUPPER ${component} name)
  add_documents(${tree} ${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  file(GLOB pages ${tree}/usr/share/man/man*/*)
  foreach(page IN LISTS pages)
    compress(${page})
  endforeach()
endforeach()

# The licence stands in `copyright`.
file(REMOVE_RECURSE ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/runtime/usr/share/doc/Tavrel)

# Where Debian's zsh looks.
set(zsh ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/host/usr/share/zsh)
if(EXISTS ${zsh}/site-functions)
  file(RENAME ${zsh}/site-functions ${zsh}/vendor-completions)
endif()

if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find ${CPACK_TEMPORARY_INSTALL_DIRECTORY} -exec touch -hd @$ENV{SOURCE_DATE_EPOCH} {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
