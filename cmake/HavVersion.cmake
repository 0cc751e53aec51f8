# hav_version_resource(TARGET DESCRIPTION): on Windows the version of the project as a resource of
# the target, where the Explorer and installers look for it.
function(hav_version_resource target description)
  if(NOT WIN32)
    return()
  endif()
  string(REPLACE "." "," numbers "${PROJECT_VERSION},0")
  set(resource ${PROJECT_BINARY_DIR}/version/${target}.rc)
  configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
endfunction()
