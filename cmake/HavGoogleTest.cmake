# GTest::gtest and GTest::gtest_main: the installed ones, or built from the sources that
# Debian's package googletest puts on the machine when no library for the target is there,
# as in a cross build.
set(HAV_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Sources of GoogleTest to build from")

if(NOT CMAKE_CROSSCOMPILING)
  find_package(GTest QUIET)
endif()
if(NOT TARGET GTest::gtest)
  if(NOT EXISTS ${HAV_GOOGLETEST_SOURCE}/CMakeLists.txt)
    message(FATAL_ERROR "The tests need GoogleTest: install it (Debian: libgtest-dev, for cross "
            "builds googletest), set HAV_GOOGLETEST_SOURCE, or set HAV_BUILD_TESTS=OFF")
  endif()
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  add_subdirectory(${HAV_GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endif()
