# What takes the inventory of a machine: the common part, and the collectors of the platform.
if(WIN32)
  set(collector_platform windows)
else()
  set(collector_platform linux)
endif()
file(GLOB collector_sources CONFIGURE_DEPENDS
     ${CMAKE_CURRENT_LIST_DIR}/*.cpp ${CMAKE_CURRENT_LIST_DIR}/*.h
     ${CMAKE_CURRENT_LIST_DIR}/${collector_platform}/*.cpp
     ${CMAKE_CURRENT_LIST_DIR}/${collector_platform}/*.h)

add_library(havhost_collectors STATIC ${collector_sources})
hav_target(havhost_collectors)
set_target_properties(havhost_collectors PROPERTIES COLLECTOR_PLATFORM ${collector_platform})
target_include_directories(havhost_collectors PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(havhost_collectors PUBLIC hav::core)
if(WIN32)
  target_link_libraries(havhost_collectors PRIVATE iphlpapi ws2_32)
  target_compile_definitions(havhost_collectors PRIVATE
    _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(hwloc REQUIRED IMPORTED_TARGET hwloc>=2.0)
  pkg_check_modules(udev REQUIRED IMPORTED_TARGET libudev)
  target_link_libraries(havhost_collectors PRIVATE PkgConfig::hwloc PkgConfig::udev)
endif()
