# Installs BUILD_DIR, compares what lies there with the committed list, builds and runs the
# consumer and the installed examples against it, builds the plug-in against it, and makes the
# packages.
cmake_minimum_required(VERSION 3.22)

set(work ${BUILD_DIR}/package-test)
set(prefix ${work}/prefix)
set(expected_output "Example_Volume[.]Name=\"data\": 4096\n")
string(TOLOWER ${SYSTEM} system)
set(list_file ${CMAKE_CURRENT_LIST_DIR}/installed-files.${system}.txt)
file(REMOVE_RECURSE ${work})

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
                  ERROR_VARIABLE output WORKING_DIRECTORY ${BUILD_DIR})
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message("${command}\n${output}")
    message(FATAL_ERROR "${what} failed with ${result}")
  endif()
  set(run_output "${output}" PARENT_SCOPE)
endfunction()

# In bin, so that Windows finds the libraries that lie there.
function(run_consumer what program)
  execute_process(COMMAND ${EMULATOR} ${program} ${ARGN} RESULT_VARIABLE result
                  OUTPUT_VARIABLE output ERROR_VARIABLE errors WORKING_DIRECTORY ${prefix}/bin)
  string(REPLACE "\r" "" output "${output}")
  if(NOT result EQUAL 0 OR NOT output MATCHES "^${expected_output}$")
    message("printed:\n${output}${errors}instead of:\n${expected_output}")
    message(FATAL_ERROR "${what} ended with ${result}")
  endif()
  message(STATUS "${what}: runs")
endfunction()

function(expect_files what files)
  file(STRINGS ${list_file} expected)
  # CMake names this file after the build type.
  list(TRANSFORM files REPLACE "(hav[a-z]+Targets)-[a-z]+[.]cmake" "\\1-BUILDTYPE.cmake")
  list(SORT files)
  list(SORT expected)
  if(files STREQUAL expected)
    list(LENGTH files count)
    message(STATUS "${what}: the ${count} files of the list")
    return()
  endif()
  set(unexpected ${files})
  list(REMOVE_ITEM unexpected ${expected})
  set(missing ${expected})
  list(REMOVE_ITEM missing ${files})
  list(JOIN unexpected "\n  " unexpected)
  list(JOIN missing "\n  " missing)
  message("there, not listed:\n  ${unexpected}\nlisted, not there:\n  ${missing}")
  message(FATAL_ERROR "${what} differs from ${list_file}")
endfunction()

# `top`: what stands before the paths of the list in the listing of an archive.
function(expect_archive what listing top)
  string(REPLACE "\n" ";" entries "${listing}")
  list(FILTER entries INCLUDE REGEX "^${top}.*[^/]$")
  list(TRANSFORM entries REPLACE "^${top}(.*)$" "\\1")
  list(TRANSFORM entries REPLACE " -> .*$" "")
  expect_files(${what} "${entries}")
endfunction()

set(common -G ${GENERATOR} -D CMAKE_BUILD_TYPE=${BUILD_TYPE})
if(TOOLCHAIN_FILE)
  list(APPEND common -D CMAKE_TOOLCHAIN_FILE=${TOOLCHAIN_FILE})
else()
  list(APPEND common -D CMAKE_CXX_COMPILER=${CXX_COMPILER})
endif()

run(install ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
file(GLOB_RECURSE installed LIST_DIRECTORIES false RELATIVE ${prefix} ${prefix}/*)
expect_files("the installed tree" "${installed}")

# Found only under another name than the one it was installed with: nothing in it may know
# where it lay.
file(RENAME ${prefix} ${work}/moved)
set(prefix ${work}/moved)

run("configuring the consumer" ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/consumer
    -B ${work}/consumer ${common} -D havcore_DIR=${prefix}/lib/cmake/havcore)
run("building the consumer" ${CMAKE_COMMAND} --build ${work}/consumer)
file(GLOB consumer ${work}/consumer/consumer ${work}/consumer/consumer.exe)
run_consumer("the consumer through find_package" ${consumer})

find_program(pkg_config pkg-config)
if(pkg_config AND SYSTEM STREQUAL "Linux")
  set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
  run(pkg-config ${pkg_config} --cflags --libs havcore)
  separate_arguments(flags UNIX_COMMAND "${run_output}")
  run(pkg-config ${pkg_config} --variable=plugindir havcore)
  string(STRIP "${run_output}" plugin_dir)
  run("compiling with pkg-config's flags" ${CXX_COMPILER} -std=c++17
      -DINMEM_LIBRARY="${plugin_dir}/libinmem.so" ${CMAKE_CURRENT_LIST_DIR}/consumer/Consumer.cpp
      -o ${work}/consumer-pkg-config -Wl,-rpath,${prefix}/lib ${flags} -ldl)
  run_consumer("the consumer through pkg-config" ${work}/consumer-pkg-config)
endif()

# build_example(NAME): the installed example, built where nothing of the sources is near. Its
# program in `example`.
function(build_example name)
  file(COPY ${prefix}/share/doc/inmem/examples/${name} DESTINATION ${work}/examples)
  run("configuring the example ${name}" ${CMAKE_COMMAND} -S ${work}/examples/${name}
      -B ${work}/examples/${name}/build ${common} -D havcore_DIR=${prefix}/lib/cmake/havcore)
  run("building the example ${name}" ${CMAKE_COMMAND} --build ${work}/examples/${name}/build)
  file(GLOB program ${work}/examples/${name}/build/${name}
       ${work}/examples/${name}/build/${name}.exe)
  set(example ${program} PARENT_SCOPE)
endfunction()

file(GLOB installed_plugin ${prefix}/lib/libinmem.so ${prefix}/bin/inmem.dll)
build_example(host)
file(STRINGS ${work}/examples/host/Host.cpp lines)
list(LENGTH lines line_count)
if(line_count GREATER 50)
  message(FATAL_ERROR "the host of 50 lines has ${line_count}")
endif()
# What does not belong to a path is matched by a point: quotes and backslashes.
string(CONCAT expected_output
  "Example_System.Name=.box.\n  Example_Disk.Name=.first.\n  Example_Disk.Name=.second.\n"
  "Example_Disk.Name=.first.\n  Example_System.Name=.box.\n"
  "Example_Disk.Name=.second.\n  Example_System.Name=.box.\n"
  "Example_SystemDisk.GroupComponent=[^\n]*\n"
  "Example_SystemDisk.GroupComponent=[^\n]*\n")
run_consumer("the example host" ${example} ${installed_plugin}
             ${work}/examples/host/disks.mof)
set(host_output ${expected_output})
build_example(inventory)
file(GLOB schema ${prefix}/share/havhost/schema/*.mof)
set(expected_output ".*ORVSG_ComputerSystem 1\n.*ORVSG_Processor [1-9][0-9]*\n.*")
run_consumer("the example inventory" ${example} ${installed_plugin} ${schema})

build_example(collector)
if(SYSTEM STREQUAL "Linux")
  set(expected_output "Example_Battery[.]Name=\"BAT0\": 87 %, Discharging\n")
  run_consumer("the example collector" ${example} ${installed_plugin}
               ${prefix}/share/doc/inmem/docs/examples/machine ${schema}
               ${work}/examples/collector/batteries.mof)
endif()

if(pkg_config AND SYSTEM STREQUAL "Linux")
  foreach(library mof inventory)
    run(pkg-config ${pkg_config} --cflags --libs hav${library})
    separate_arguments(flags_${library} UNIX_COMMAND "${run_output}")
  endforeach()
  run("compiling the example host with pkg-config's flags" ${CXX_COMPILER} -std=c++17
      ${work}/examples/host/Host.cpp -o ${work}/host-pkg-config -Wl,-rpath,${prefix}/lib
      ${flags_mof})
  set(expected_output ${host_output})
  run_consumer("the example host through pkg-config" ${work}/host-pkg-config ${installed_plugin}
               ${work}/examples/host/disks.mof)
  run("compiling the example inventory with pkg-config's flags" ${CXX_COMPILER} -std=c++17
      ${work}/examples/inventory/Inventory.cpp -o ${work}/inventory-pkg-config
      -Wl,-rpath,${prefix}/lib ${flags_mof} ${flags_inventory})
endif()
set(expected_output "Example_Volume[.]Name=\"data\": 4096\n")

# The version that a library carries: in its name, or on Windows as a resource.
if(SYSTEM STREQUAL "Windows")
  foreach(file havcore.dll inmem.dll havhost.exe)
    file(READ ${prefix}/bin/${file} content HEX)
    string(HEX "FileVersion" wanted)
    string(REGEX REPLACE "(..)" "\\100" wanted "${wanted}")
    if(NOT content MATCHES "${wanted}")
      message(FATAL_ERROR "${file} carries no version")
    endif()
  endforeach()
else()
  file(READ_SYMLINK ${prefix}/lib/libhavcore.so soname)
  if(NOT soname MATCHES "^libhavcore[.]so[.][0-9]+[.][0-9]+$")
    message(FATAL_ERROR "libhavcore.so leads to ${soname}")
  endif()
  if(IS_SYMLINK ${prefix}/lib/libinmem.so)
    message(FATAL_ERROR "hosts know the plug-in by its path: it has no version in its name")
  endif()
endif()
message(STATUS "the libraries carry their version")

set(plugin_only -S ${SOURCE_DIR} ${common} -D HAV_BUILD_HOST=OFF -D HAV_BUILD_TESTS=OFF)
find_program(ccache ccache)
if(ccache)
  list(APPEND plugin_only -D CMAKE_CXX_COMPILER_LAUNCHER=${ccache})
endif()
run("configuring against HAVCORE_ROOT" ${CMAKE_COMMAND} ${plugin_only} -B ${work}/plugin
    -D HAVCORE_ROOT=${prefix})
run("building against HAVCORE_ROOT" ${CMAKE_COMMAND} --build ${work}/plugin)
file(GLOB plugin ${work}/plugin/lib/libinmem.so ${work}/plugin/bin/inmem.dll)
run_consumer("the plug-in built against HAVCORE_ROOT" ${consumer} ${plugin})

# A vendor's havcore comes as a library alone.
file(GLOB library ${prefix}/lib/libhavcore.so ${prefix}/lib/libhavcore.dll.a)
file(COPY ${library} DESTINATION ${work}/vendor/lib FOLLOW_SYMLINK_CHAIN)
run("configuring against a bare library" ${CMAKE_COMMAND} ${plugin_only} -B ${work}/bare
    -D HAVCORE_ROOT=${work}/vendor)
if(NOT run_output MATCHES "havcore: ${work}/vendor/lib/libhavcore[^ ]* with the headers of ${SOURCE_DIR}")
  message(FATAL_ERROR "a bare library is not used as it should be:\n${run_output}")
endif()
message(STATUS "a bare havcore library: configures")

run(cpack ${CMAKE_CPACK_COMMAND} --config ${BUILD_DIR}/CPackConfig.cmake -B ${work}/packages)
file(GLOB archives ${work}/packages/*.tar.gz ${work}/packages/*.zip)
foreach(archive ${archives})
  run("listing" ${CMAKE_COMMAND} -E tar tf ${archive})
  get_filename_component(name ${archive} NAME)
  expect_archive(${name} "${run_output}" "[^/]+/")
endforeach()
file(GLOB debs ${work}/packages/*.deb)
foreach(deb ${debs})
  run("listing" dpkg-deb -c ${deb})
  get_filename_component(name ${deb} NAME)
  expect_archive(${name} "${run_output}" ".* \\./usr/")
endforeach()
if(NOT archives)
  message(FATAL_ERROR "cpack made no archive")
endif()
