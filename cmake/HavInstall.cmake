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
set(HAV_INSTALL_SCHEMADIR ${CMAKE_INSTALL_DATADIR}/havhost/schema)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/havcore)

# What users of the libraries include; the rest is theirs to change.
set(mof_headers mof/IMofSource.h mof/TMofFolderSource.h mof/TMofLoader.h mof/TMofReport.h
    mof/TMofText.h mof/TMofWriter.h)
set(inventory_headers inventory/CachesFound.h inventory/ICollector.h inventory/Inventory.h
    inventory/Refresh.h inventory/TCollection.h inventory/TMachine.h)
set(HAV_PUBLIC_HEADERS havcore/include/havcore havcore/client ${mof_headers} ${inventory_headers})

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
    install(FILES ${mof_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/hav/mof)
    install(FILES ${inventory_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/hav/inventory)
    foreach(library client mof inventory)
      configure_file(cmake/hav${library}.pc.in ${PROJECT_BINARY_DIR}/hav${library}.pc @ONLY)
      install(FILES ${PROJECT_BINARY_DIR}/hav${library}.pc
              DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    endforeach()
    install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
  endif()
  install(EXPORT havcoreTargets NAMESPACE hav:: DESTINATION ${package_dir})
  configure_package_config_file(cmake/havcoreConfig.cmake.in
    ${PROJECT_BINARY_DIR}/havcoreConfig.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS HAV_INSTALL_PLUGIN HAV_INSTALL_SCHEMADIR)
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
  install(DIRECTORY inventory/schema/ DESTINATION ${HAV_INSTALL_SCHEMADIR}
          FILES_MATCHING PATTERN "*.mof")
  install(FILES docs/havhost.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/havhost)
  if(NOT WIN32)
    configure_file(havhost/server/havhost.service.in ${PROJECT_BINARY_DIR}/havhost.service @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/havhost.service DESTINATION lib/systemd/system)
    install(PROGRAMS scripts/record-machine DESTINATION ${CMAKE_INSTALL_DATADIR}/havhost)
  endif()
  if(HAV_MANUAL)
    install(FILES ${HAV_MANUAL} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${HAV_BASH_COMPLETION}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    # Below /usr, Debian's zsh looks in a folder of its own.
    install(FILES ${HAV_ZSH_COMPLETION} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
    install(FILES ${HAV_ZSH_COMPLETION}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
  endif()
endif()
install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES docs/authors.md docs/conformance.md docs/design.md docs/guide.md docs/hosting.md docs/performance.md
              docs/performance.svg docs/reliability.md docs/serve.md docs/windows.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)

install(DIRECTORY docs/examples DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)

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
