# 64-bit Windows with MinGW-w64 on a Debian machine; programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The posix flavour: the win32 one of this release has no std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

find_program(HAV_WINE NAMES wine64 wine64-stable wine HINTS /usr/lib/wine)
if(HAV_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${HAV_WINE})
endif()

# Debian has no Boost, CLI11 and nlohmann-json for this target, but what is used of them is
# headers only. They are linked into a folder of their own, because /usr/include itself would
# bring in the C library of the build machine.
set(HAV_CROSS_ROOT ${CMAKE_BINARY_DIR}/cross)
get_property(in_try_compile GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT in_try_compile)
  foreach(entry include/boost include/CLI include/nlohmann share/cmake/CLI11
          share/cmake/nlohmann_json)
    get_filename_component(folder ${HAV_CROSS_ROOT}/${entry} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    if(EXISTS /usr/${entry} AND NOT EXISTS ${HAV_CROSS_ROOT}/${entry})
      file(CREATE_LINK /usr/${entry} ${HAV_CROSS_ROOT}/${entry} SYMBOLIC)
    endif()
  endforeach()
endif()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${HAV_CROSS_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
