hav_add_test(mof test_support havhost_mof inmem_objects plugin_linked GTest::gtest_main)
if(TARGET mof_tests)
  target_compile_definitions(mof_tests PRIVATE
    HAV_CIM_SCHEMA_FOLDER="${HAV_CIM_SCHEMA_FOLDER}")
endif()
