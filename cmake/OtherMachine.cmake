# For compiling with one of Debian's cross compilers and running what came of it under QEMU; used by
# `scripts/soak machines`, which sets these:
#   TAVREL_TRIPLET    as the compiler has it in its name, for instance aarch64-linux-gnu
#   TAVREL_QEMU       the emulator's program
#   TAVREL_TREE       a folder with libraries of that machine, as they would lie in its root
#   TAVREL_LIBRARIES  where in that folder they are
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TAVREL_TRIPLET TAVREL_QEMU TAVREL_TREE TAVREL_LIBRARIES)
set(CMAKE_SYSTEM_NAME Linux)
string(REGEX MATCH "^[a-z0-9_]+" CMAKE_SYSTEM_PROCESSOR ${TAVREL_TRIPLET})
set(CMAKE_C_COMPILER ${TAVREL_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${TAVREL_TRIPLET}-g++)
set(CMAKE_NM ${TAVREL_TRIPLET}-nm)
set(CMAKE_READELF ${TAVREL_TRIPLET}-readelf)

set(CMAKE_FIND_ROOT_PATH ${TAVREL_TREE}/usr)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The C library comes with the compiler; the others lie in the tree.
set(CMAKE_CROSSCOMPILING_EMULATOR
  ${TAVREL_QEMU} -L /usr/${TAVREL_TRIPLET} -E LD_LIBRARY_PATH=${TAVREL_LIBRARIES}:/usr/${TAVREL_TRIPLET}/lib)
