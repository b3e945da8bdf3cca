# What `cmake --install` puts where, and under which component: `runtime` is what a finished program needs,
# `development` what it takes to build one, `host` the tavrel command (host/CMakeLists.txt). Nothing that is
# installed knows the prefix: the tree may be moved as a whole.

include(CMakePackageConfigHelpers)

install(TARGETS Tavrel EXPORT TavrelTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(FILES ${PROJECT_SOURCE_DIR}/include/tavrel/tavrel.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tavrel COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/docs/tavrel.3
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)

# For find_package(Tavrel), in what is installed and, by -DTavrel_DIR=..., in the build folder.
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Tavrel)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TavrelConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TavrelConfig.cmake INSTALL_DESTINATION ${package}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TavrelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TavrelConfig.cmake ${PROJECT_BINARY_DIR}/TavrelConfigVersion.cmake
  DESTINATION ${package} COMPONENT development)
install(EXPORT TavrelTargets NAMESPACE Tavrel:: DESTINATION ${package} COMPONENT development)
export(EXPORT TavrelTargets NAMESPACE Tavrel:: FILE ${PROJECT_BINARY_DIR}/TavrelTargets.cmake)

# For pkg-config, which tells where the file itself lies.
set(pkgconfig ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" to_prefix ${to_prefix})
file(RELATIVE_PATH to_library ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH to_header ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(${PROJECT_SOURCE_DIR}/cmake/tavrel.pc.in ${PROJECT_BINARY_DIR}/tavrel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tavrel.pc DESTINATION ${pkgconfig} COMPONENT development)
