# The binary contract: what the compiler lays out and what the libraries export, compared with
# committed lists; and every slot called by its number, linked and loaded.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(slot_tables ${CMAKE_CURRENT_BINARY_DIR}/abi/SlotTables.h
                ${CMAKE_CURRENT_BINARY_DIR}/abi/SlotTypes.cpp)
add_custom_command(OUTPUT ${slot_tables}
  COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/abi/generate_slots.py ${slot_tables}
  DEPENDS abi/generate_slots.py abi/slot_table.py abi/slots.txt
  COMMENT "Writing the slots as C++")

file(GLOB abi_sources CONFIGURE_DEPENDS abi/*.cpp abi/*.h)
add_library(abi_suite OBJECT ${abi_sources} ${slot_tables})
hav_test_target(abi_suite test_support)
target_include_directories(abi_suite PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/abi)
if(HAV_SANITIZE)
  # The objects are called through a table of their slots, which is not their type.
  target_compile_options(abi_suite PRIVATE -fno-sanitize=vptr)
endif()

add_executable(abi_linked_tests)
hav_test_target(abi_linked_tests abi_suite test_support inmem_objects plugin_linked
                GTest::gtest_main)
hav_register_test(abi_linked abi_linked_tests)

add_executable(abi_loaded_tests)
hav_test_target(abi_loaded_tests abi_suite test_support plugin_loaded GTest::gtest_main)
add_dependencies(abi_loaded_tests inmem)
hav_register_test(abi_loaded abi_loaded_tests)

# Clang lays out for any target, so one machine checks both ABIs.
if(NOT CMAKE_CROSSCOMPILING AND NOT HAV_SANITIZE)
  find_program(HAV_CLANG NAMES clang++ clang++-19 clang++-18 clang++-17 clang++-16 clang++-15
               clang++-14)
  add_test(NAME abi_layout COMMAND Python3::Interpreter
    ${CMAKE_CURRENT_SOURCE_DIR}/abi/check_layout.py "$<$<BOOL:${HAV_CLANG}>:${HAV_CLANG}>"
    ${PROJECT_SOURCE_DIR}/havcore/include)
  set_tests_properties(abi_layout PROPERTIES TIMEOUT 600)
endif()

# The sanitizers' own symbols are not ours to list.
if(NOT MSVC AND NOT APPLE AND NOT HAV_SANITIZE)
  find_program(HAV_CXXFILT c++filt REQUIRED)
  string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
  add_test(NAME abi_exports COMMAND Python3::Interpreter
    ${CMAKE_CURRENT_SOURCE_DIR}/abi/check_exports.py
    ${CMAKE_CURRENT_SOURCE_DIR}/abi/exports.${system}.txt $<TARGET_FILE:inmem>
    ${CMAKE_SYSTEM_NAME} ${CMAKE_OBJDUMP} ${HAV_CXXFILT})
endif()
