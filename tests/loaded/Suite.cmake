# The plug-in's life as a library: loaded, used, unloaded, and beside others.
file(GLOB loaded_sources CONFIGURE_DEPENDS loaded/*.cpp loaded/*.h)
add_executable(loaded_tests ${loaded_sources})
hav_test_target(loaded_tests test_support ${CMAKE_DL_LIBS} GTest::gtest_main)

add_library(plugin_other MODULE loaded/plugins/OtherPlugin.cpp)
hav_test_target(plugin_other hav::core)
target_compile_definitions(loaded_tests PRIVATE
  INMEM_LIBRARY="$<TARGET_FILE:inmem>"
  OTHER_LIBRARY="$<TARGET_FILE:plugin_other>")
add_dependencies(loaded_tests inmem plugin_other)

hav_register_test(loaded loaded_tests)
if(HAV_SANITIZE)
  # Libraries whose symbols have the same names are what the suite is about.
  get_property(environment TEST loaded PROPERTY ENVIRONMENT)
  string(REPLACE "ASAN_OPTIONS=" "ASAN_OPTIONS=detect_odr_violation=0:" environment
         "${environment}")
  set_property(TEST loaded PROPERTY ENVIRONMENT "${environment}")
endif()
