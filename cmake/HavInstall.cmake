# What `cmake --install` and `cpack` put where. The plug-in lies beside `havcore`: on Linux
# in lib, on Windows in bin, where the loader looks.
include(CMakePackageConfigHelpers)

if(WIN32)
  set(HAV_INSTALL_PLUGINDIR ${CMAKE_INSTALL_BINDIR})
  set(HAV_INSTALL_PLUGIN ${HAV_INSTALL_PLUGINDIR}/inmem.dll)
else()
  set(HAV_INSTALL_PLUGINDIR ${CMAKE_INSTALL_LIBDIR})
  set(HAV_INSTALL_PLUGIN
      ${HAV_INSTALL_PLUGINDIR}/${CMAKE_SHARED_LIBRARY_PREFIX}inmem${CMAKE_SHARED_LIBRARY_SUFFIX})
endif()
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/havcore)

file(GLOB inventory_headers CONFIGURE_DEPENDS inventory/*.h)

install(TARGETS inmem
        LIBRARY DESTINATION ${HAV_INSTALL_PLUGINDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

if(NOT HAVCORE_ROOT)
  install(TARGETS havcore EXPORT havcoreTargets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY havcore/include/havcore DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
          FILES_MATCHING PATTERN "*.h")
  if(HAV_BUILD_HOST)
    install(TARGETS hav_client hav_mof EXPORT havcoreTargets
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(TARGETS hav_inventory EXPORT havinventoryTargets
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(EXPORT havinventoryTargets NAMESPACE hav:: DESTINATION ${package_dir})
    install(DIRECTORY havcore/client DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/havcore
            FILES_MATCHING PATTERN "*.h")
    install(DIRECTORY mof DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/hav
            FILES_MATCHING PATTERN "*.h")
    install(FILES ${inventory_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/hav/inventory)
  endif()
  install(EXPORT havcoreTargets NAMESPACE hav:: DESTINATION ${package_dir})
  configure_package_config_file(cmake/havcoreConfig.cmake.in
    ${PROJECT_BINARY_DIR}/havcoreConfig.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS HAV_INSTALL_PLUGIN)
  # Before 1.0 a minor version may change the contract.
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/havcoreConfigVersion.cmake
                                   COMPATIBILITY SameMinorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/havcoreConfig.cmake
                ${PROJECT_BINARY_DIR}/havcoreConfigVersion.cmake
          DESTINATION ${package_dir})
  configure_file(cmake/havcore.pc.in ${PROJECT_BINARY_DIR}/havcore.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/havcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

if(TARGET havhost)
  install(TARGETS havhost RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY inventory/schema/ DESTINATION ${CMAKE_INSTALL_DATADIR}/havhost/schema
          FILES_MATCHING PATTERN "*.mof")
endif()
install(FILES LICENSE README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_PACKAGE_NAME inmem)
set(CPACK_PACKAGE_VENDOR "the inmem authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_DEBIAN_PACKAGE_MAINTAINER "the inmem authors <inmem@localhost>")
  set(CPACK_DEBIAN_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libboost-dev")
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
endif()
include(CPack)
