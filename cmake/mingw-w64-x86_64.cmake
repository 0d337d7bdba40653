# Cross-compiling for 64-bit Windows with Debian's mingw-w64 (posix threads, for std::thread
# and std::jthread). Executables link the GCC and C++ runtimes statically, so a test .exe
# imports only system DLLs and runs under Wine without a DLL path. With Wine found, it is the
# emulator: plain ctest runs the tests under it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(HELMSMAN_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${HELMSMAN_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${HELMSMAN_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${HELMSMAN_MINGW_TRIPLE}-windres)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

# Libraries for the target come from the mingw sysroot and from the prefixes the caller
# names (e.g. a cross-built GoogleTest); programs come from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/${HELMSMAN_MINGW_TRIPLE} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Debian installs Wine's loader in /usr/lib/wine, off PATH.
find_program(HELMSMAN_WINE NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(HELMSMAN_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${HELMSMAN_WINE})
endif()
