# The conformance suite sees the contract headers only. It is compiled once and linked
# twice: with the plug-in's objects, and with the way through the loader.
file(GLOB contract_sources CONFIGURE_DEPENDS contract/*.cpp contract/*.h)
if(contract_sources)
  add_library(contract_suite OBJECT ${contract_sources})
  hav_test_target(contract_suite test_support)

  add_executable(contract_linked_tests)
  hav_test_target(contract_linked_tests contract_suite test_support inmem_objects plugin_linked
                  GTest::gtest_main)
  hav_register_test(contract_linked contract_linked_tests)

  add_executable(contract_loaded_tests)
  hav_test_target(contract_loaded_tests contract_suite test_support plugin_loaded
                  GTest::gtest_main)
  # What an object library depends on is not built for those that link it.
  add_dependencies(contract_loaded_tests inmem)
  hav_register_test(contract_loaded contract_loaded_tests)

  # The table of rules names some tests that only Linux has.
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT HAV_SANITIZE)
    find_program(HAV_PYTHON python3 REQUIRED)
    add_test(NAME conformance_table
             COMMAND ${HAV_PYTHON} ${PROJECT_SOURCE_DIR}/scripts/check-conformance
                     ${PROJECT_SOURCE_DIR}/docs/conformance.md
                     $<TARGET_FILE:contract_linked_tests> $<TARGET_FILE:contract_loaded_tests>)
  endif()
endif()
