# Cross-compiles for 64-bit Windows with Debian's mingw-w64; the tests run under Wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The posix flavour of the compiler is the one with C++ threads.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# One file per program: no libraries of the compiler to ship beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

set(brackwell_windows_tools "${CMAKE_CURRENT_LIST_DIR}/../tools/windows")
set(CMAKE_CROSSCOMPILING_EMULATOR "${brackwell_windows_tools}/wine-run")

execute_process(
  COMMAND "${brackwell_windows_tools}/build-dependencies" --prefixes
  OUTPUT_VARIABLE brackwell_windows_prefixes
  OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" brackwell_windows_prefixes "${brackwell_windows_prefixes}")

# The tools that Qt's sources go through run here.
execute_process(
  COMMAND qmake6 -query QT_INSTALL_LIBS
  OUTPUT_VARIABLE brackwell_host_libraries
  OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR "${brackwell_host_libraries}/cmake")

# Libraries and headers come from there only, programs from this machine only.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${brackwell_windows_prefixes})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

list(TRANSFORM brackwell_windows_prefixes APPEND "/lib/pkgconfig" OUTPUT_VARIABLE brackwell_pkgconfig_folders)
list(JOIN brackwell_pkgconfig_folders ":" brackwell_pkgconfig_folders)
set(ENV{PKG_CONFIG_LIBDIR} "${brackwell_pkgconfig_folders}")
