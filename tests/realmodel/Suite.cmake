# Traversal of a model of a few hundred devices, made of the classes of DMTF's own schema.
hav_add_test(realmodel test_support havhost_mof plugin_linked inmem_objects GTest::gtest_main)
if(TARGET realmodel_tests)
  target_compile_definitions(realmodel_tests PRIVATE
    HAV_CIM_SCHEMA_FOLDER="${HAV_CIM_SCHEMA_FOLDER}")
endif()
