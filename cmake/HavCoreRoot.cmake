# hav::core from HAVCORE_ROOT, an installed `havcore` of this project or of a vendor.
#
# With a CMake package there, the package says everything. Otherwise the library is looked
# for in lib, lib64 and bin, and the contract headers in include; a vendor that ships the
# library alone is built against with this project's contract headers.
find_package(havcore QUIET PATHS ${HAVCORE_ROOT} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(TARGET hav::core)
  message(STATUS "havcore: the package in ${HAVCORE_ROOT}")
  return()
endif()

find_library(HAVCORE_LIBRARY NAMES havcore libhavcore PATHS ${HAVCORE_ROOT}
             PATH_SUFFIXES lib lib64 bin NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(NOT HAVCORE_LIBRARY)
  message(FATAL_ERROR "HAVCORE_ROOT is ${HAVCORE_ROOT}, but there is no CMake package havcore in "
          "it, and no havcore library in its lib, lib64 or bin")
endif()
set(havcore_include ${HAVCORE_ROOT}/include)
if(NOT EXISTS ${havcore_include}/havcore/havcore.h)
  set(havcore_include ${CMAKE_CURRENT_SOURCE_DIR}/havcore/include)
endif()
message(STATUS "havcore: ${HAVCORE_LIBRARY} with the headers of ${havcore_include}")

find_package(Boost 1.74 REQUIRED)
add_library(hav::core UNKNOWN IMPORTED)
set_target_properties(hav::core PROPERTIES IMPORTED_LOCATION ${HAVCORE_LIBRARY})
target_include_directories(hav::core INTERFACE ${havcore_include})
target_link_libraries(hav::core INTERFACE Boost::boost)
