# What is common to the platforms, then the collectors of this one: those of Linux read
# machines that the tests make in temporary folders, those of Windows ask the system itself.
if(TARGET havhost_collectors)
  get_target_property(platform havhost_collectors COLLECTOR_PLATFORM)
  file(GLOB collector_tests CONFIGURE_DEPENDS
       ${CMAKE_CURRENT_LIST_DIR}/*.cpp ${CMAKE_CURRENT_LIST_DIR}/*.h
       ${CMAKE_CURRENT_LIST_DIR}/${platform}/*.cpp
       ${CMAKE_CURRENT_LIST_DIR}/${platform}/*.h)
  if(WIN32)
    list(FILTER collector_tests EXCLUDE REGEX "FakeMachine")
  endif()
  add_executable(collectors_tests ${collector_tests})
  hav_test_target(collectors_tests havhost_collectors havhost_mof test_support inmem_objects
                  plugin_linked GTest::gtest GTest::gtest_main)
  target_compile_definitions(collectors_tests PRIVATE
    HAV_INVENTORY_SCHEMA_FOLDER="${PROJECT_SOURCE_DIR}/schema")
  hav_register_test(collectors collectors_tests)
endif()
