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

foreach(component IN ITEMS runtime development host python)
  set(tree ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component})
  string(TOUPPER ${component} name)
  add_documents(${tree} ${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  file(GLOB pages ${tree}/usr/share/man/man*/*)
  foreach(page IN LISTS pages)
    compress(${page})
  endforeach()
endforeach()

# What is read, and built upon, without a checkout. Links lead to where the packages put things.
set(checkout ${here}/../..)
function(put folder)
  file(COPY ${ARGN} DESTINATION ${folder} FILE_PERMISSIONS ${readable})
endfunction()
set(documents ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/development/usr/share/doc/libtavrel-dev)
file(GLOB examples ${checkout}/examples/*.*)
put(${documents}/examples ${examples})
put(${documents}/node ${checkout}/bindings/node/README.md)
put(${documents} ${checkout}/docs/hosts.md)
file(READ ${documents}/hosts.md text)
string(REPLACE "](../examples/" "](examples/" text "${text}")
string(REPLACE "](../include/" "](/usr/include/" text "${text}")
string(REPLACE "](../bindings/python/" "](../python3-tavrel/" text "${text}")
string(REPLACE "](../bindings/node/" "](node/" text "${text}")
file(WRITE ${documents}/hosts.md "${text}")
put(${CPACK_TEMPORARY_INSTALL_DIRECTORY}/python/usr/share/doc/python3-tavrel ${checkout}/bindings/python/README.md)
put(${CPACK_TEMPORARY_INSTALL_DIRECTORY}/host/usr/share/doc/tavrel ${checkout}/docs/tasks.md ${checkout}/docs/fields.md)

# The module for Node, as npm packs one: it needs a package that Debian has not, so that npm installs both.
set(module ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/module)
set(source ${checkout}/bindings/node)
set(archives ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/development/usr/share/tavrel)
set(archive ${archives}/tavrel-node-${CPACK_PACKAGE_VERSION})
put(${module}/package ${source}/package.json ${source}/README.md ${source}/LICENSE ${source}/lib)
put(${module}/package/types ${source}/types/index.d.ts)
file(MAKE_DIRECTORY ${archives})
execute_process(COMMAND tar --create --file ${archive}.tar --directory ${module} --sort=name --format=ustar --mtime=@0
  --owner=0 --group=0 --numeric-owner --mode=u=rwX,go=rX package COMMAND_ERROR_IS_FATAL ANY)
compress(${archive}.tar)
file(RENAME ${archive}.tar.gz ${archive}.tgz)
file(REMOVE_RECURSE ${module})

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
