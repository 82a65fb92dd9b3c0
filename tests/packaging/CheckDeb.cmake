# Makes the Debian package of the build in BUILD_DIR with cpack, without
# installing anything, and checks its contents and dependencies: exactly the
# tool, the library, the headers of every library folder and the files that
# find them, all under /usr.

include(${CMAKE_CURRENT_LIST_DIR}/RunChecked.cmake)

set(out_dir ${WORK_DIR}/deb)
file(REMOVE_RECURSE ${out_dir})
run_checked(cpack --config ${BUILD_DIR}/CPackConfig.cmake -G DEB -B ${out_dir})
file(GLOB debs ${out_dir}/*.deb)
list(LENGTH debs count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "cpack made ${count} packages: ${debs}")
endif()

run_checked(dpkg-deb --field ${debs} Package Depends)
message(STATUS "control fields:\n${run_output}")
if(NOT run_output MATCHES "Package: busdecode\n")
  message(FATAL_ERROR "the package is not named busdecode")
endif()
foreach(dependency libc6 libstdc\\+\\+6)
  if(NOT run_output MATCHES "Depends: [^\n]*${dependency}")
    message(FATAL_ERROR "the package does not declare its dependency on ${dependency}")
  endif()
endforeach()

# Regular files only: the lines of dpkg-deb -c that start with '-'.
run_checked(dpkg-deb --contents ${debs})
string(REPLACE "\n" ";" lines "${run_output}")
set(files "")
foreach(line ${lines})
  if(line MATCHES "^-.* \\./(.*)$")
    list(APPEND files "${CMAKE_MATCH_1}")
  endif()
endforeach()

string(TOLOWER "${BUILD_TYPE}" config)
set(expected
  usr/bin/busdecode
  usr/${LIBDIR}/libbusdecode.a
  usr/${LIBDIR}/pkgconfig/busdecode.pc
  usr/${LIBDIR}/cmake/busdecode/busdecodeConfig.cmake
  usr/${LIBDIR}/cmake/busdecode/busdecodeConfigVersion.cmake
  usr/${LIBDIR}/cmake/busdecode/busdecodeTargets.cmake
  usr/${LIBDIR}/cmake/busdecode/busdecodeTargets-${config}.cmake)
foreach(folder platform core registry storage usbclass hid serial hci)
  file(GLOB headers RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/${folder}/*.h)
  foreach(header ${headers})
    list(APPEND expected usr/include/busdecode/${header})
  endforeach()
endforeach()

list(SORT files)
list(SORT expected)
if(NOT files STREQUAL expected)
  set(missing ${expected})
  list(REMOVE_ITEM missing ${files})
  set(extra ${files})
  list(REMOVE_ITEM extra ${expected})
  message(FATAL_ERROR "the package's files differ from what it should hold\nmissing: ${missing}\nextra: ${extra}")
endif()
list(LENGTH files count)
message(STATUS "${debs}: ${count} files as expected")
