# The collectors read machines that the tests make in temporary folders; those of Windows ask
# the system itself.
if(TARGET havhost_collectors)
  file(GLOB collector_test_sources CONFIGURE_DEPENDS
       ${CMAKE_CURRENT_LIST_DIR}/*.cpp ${CMAKE_CURRENT_LIST_DIR}/*.h)
  add_executable(collectors_tests ${collector_test_sources})
  hav_test_target(collectors_tests havhost_collectors test_support GTest::gtest GTest::gtest_main)
  hav_register_test(collectors collectors_tests)
endif()
