# Display text over the classes of DMTF's own schema.
hav_add_test(schema test_support havhost_mof inmem_objects plugin_linked GTest::gtest_main)
if(TARGET schema_tests)
  # The same plain way of making display text that the suite of values compares with.
  target_sources(schema_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR}/../values/PlainDisplay.cpp)
  target_compile_definitions(schema_tests PRIVATE
    HAV_CIM_SCHEMA_FOLDER="${HAV_CIM_SCHEMA_FOLDER}")
endif()
