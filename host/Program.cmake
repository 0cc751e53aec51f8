# havhost_program: the host program as a library, so that tests can run its commands.
# havhost: the program itself.
find_package(CLI11 REQUIRED)
find_package(nlohmann_json 3.9 REQUIRED)

file(GLOB program_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.cpp
     ${CMAKE_CURRENT_LIST_DIR}/*.h ${CMAKE_CURRENT_LIST_DIR}/report/*.cpp
     ${CMAKE_CURRENT_LIST_DIR}/report/*.h)
list(REMOVE_ITEM program_sources ${CMAKE_CURRENT_LIST_DIR}/main.cpp)
add_library(havhost_program STATIC ${program_sources})
hav_target(havhost_program)
target_include_directories(havhost_program PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(havhost_program
  PUBLIC hav::core
  PRIVATE havhost_mof havhost_collectors CLI11::CLI11 nlohmann_json::nlohmann_json
          ${CMAKE_DL_LIBS})

# The program finds the plug-in and the schema by their place beside its own, so that an
# installed tree can be moved.
file(RELATIVE_PATH installed_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH installed_schema ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_FULL_DATADIR}/havhost/schema)
target_compile_definitions(havhost_program PRIVATE
  HAVHOST_VERSION="${PROJECT_VERSION}"
  HAVHOST_PLUGIN_NAME="$<TARGET_FILE_NAME:inmem>"
  HAVHOST_BUILT_LIBRARIES="../lib"
  HAVHOST_INSTALLED_LIBRARIES="${installed_libraries}"
  HAVHOST_INSTALLED_SCHEMA="${installed_schema}")

add_executable(havhost ${CMAKE_CURRENT_LIST_DIR}/main.cpp)
hav_target(havhost)
target_link_libraries(havhost PRIVATE havhost_program)
add_dependencies(havhost inmem)
if(NOT WIN32)
  set_target_properties(havhost PROPERTIES INSTALL_RPATH "$ORIGIN/${installed_libraries}")
endif()

# The schema stands in the build tree where it is installed.
file(GLOB schema_files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/schema/*.mof)
set(built_schema ${PROJECT_BINARY_DIR}/share/havhost/schema)
add_custom_command(OUTPUT ${built_schema}/.copied
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${built_schema}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${built_schema}
  COMMAND ${CMAKE_COMMAND} -E copy ${schema_files} ${built_schema}
  COMMAND ${CMAKE_COMMAND} -E touch ${built_schema}/.copied
  DEPENDS ${schema_files}
  COMMENT "Copying the inventory schema"
  VERBATIM)
add_custom_target(havhost_schema DEPENDS ${built_schema}/.copied)
add_dependencies(havhost havhost_schema)
