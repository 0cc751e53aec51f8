# What users get: the installed tree and the packages of this build, and a project that
# builds against them. Sanitized builds are not for users.
if(NOT HAV_SANITIZE AND NOT HAVCORE_ROOT AND HAV_BUILD_HOST)
  add_test(NAME package COMMAND ${CMAKE_COMMAND}
    -D SOURCE_DIR=${PROJECT_SOURCE_DIR}
    -D BUILD_DIR=${PROJECT_BINARY_DIR}
    -D SYSTEM=${CMAKE_SYSTEM_NAME}
    -D GENERATOR=${CMAKE_GENERATOR}
    -D BUILD_TYPE=${CMAKE_BUILD_TYPE}
    -D CXX_COMPILER=${CMAKE_CXX_COMPILER}
    -D TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}
    -D EMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}
    -P ${CMAKE_CURRENT_SOURCE_DIR}/package/check.cmake)
  set_tests_properties(package PROPERTIES TIMEOUT 900 PROCESSORS 2)
endif()
