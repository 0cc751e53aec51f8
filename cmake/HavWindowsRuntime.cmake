# The compiler's own libraries that programs built with MinGW-w64 need beside them: shared,
# because exceptions cross the borders of our libraries.
if(MINGW)
  set(HAV_RUNTIME_LIBRARIES)
  foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
                    OUTPUT_VARIABLE library OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT EXISTS ${library})
      message(FATAL_ERROR "${CMAKE_CXX_COMPILER} has no ${name}")
    endif()
    file(COPY ${library} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    list(APPEND HAV_RUNTIME_LIBRARIES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
  endforeach()
  install(FILES ${HAV_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endif()
