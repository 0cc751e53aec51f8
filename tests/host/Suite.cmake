# The host program: its commands as functions, the plug-in through the operating system's
# loader, and the program itself as a process.
if(TARGET havhost)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  file(GLOB host_sources CONFIGURE_DEPENDS host/*.cpp host/*.h)
  if(WIN32)
    list(FILTER host_sources EXCLUDE REGEX "FakeMachine")
  else()
    list(APPEND host_sources collectors/FakeMachine.cpp)
  endif()
  add_executable(host_tests ${host_sources})
  hav_test_target(host_tests test_support havhost_program havhost_mof havhost_collectors
                  nlohmann_json::nlohmann_json GTest::gtest_main)
  target_compile_definitions(host_tests PRIVATE
    HAVHOST_PLUGIN="$<TARGET_FILE:inmem>"
    HAVHOST_NO_PLUGIN="$<TARGET_FILE:havcore>"
    HAVHOST_PROGRAM="$<TARGET_FILE:havhost>"
    HAVHOST_VERSION="${PROJECT_VERSION}"
    HAVHOST_SCHEMA="${PROJECT_SOURCE_DIR}/schema")
  add_dependencies(host_tests inmem havhost)

  # Plug-ins that are broken in one way each.
  foreach(kind refuses throws throws_anything registers_nothing has_no_switches)
    add_library(plugin_${kind} MODULE host/plugins/BrokenPlugin.cpp)
    hav_test_target(plugin_${kind} hav::core)
    string(TOUPPER ${kind} define)
    target_compile_definitions(plugin_${kind} PRIVATE PLUGIN_${define})
    target_compile_definitions(host_tests PRIVATE
      HAVHOST_PLUGIN_${define}="$<TARGET_FILE:plugin_${kind}>")
    add_dependencies(host_tests plugin_${kind})
  endforeach()
  hav_register_test(host host_tests)
endif()
