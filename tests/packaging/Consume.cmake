# One step of the package tests, run with cmake -P and STEP set to
#   install       install the build in BUILD_DIR to a fresh PREFIX
#   find_package  configure, build and run tests/consumer against PREFIX
#   pkg_config    build tests/consumer/main.cpp against PREFIX with the
#                 README's pkg-config command (its compiler replaced by CXX)
#   readme        check that the README shows the consumer's files as they are
# CXX and CXX_FLAGS are the compiler and extra flags of the build.

include(${CMAKE_CURRENT_LIST_DIR}/RunChecked.cmake)

# The consumer prints the eleven fields of its Command Block Wrapper.
function(check_consumer_output output)
  set(expected
    "Signature = 0x43425355"
    "Tag = 0x00000001"
    "Data Transport Length = 0x00000024"
    "Flags-Direction = 0x01"
    "CB Length = 0x06"
    "CB = 0x00000000000000000000002400000012")
  foreach(line ${expected})
    string(FIND "${output}" "${line}\n" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "the consumer's output lacks \"${line}\":\n${output}")
    endif()
  endforeach()
  string(REGEX MATCHALL "\n" lines "${output}")
  list(LENGTH lines count)
  if(NOT count EQUAL 11)
    message(FATAL_ERROR "the consumer printed ${count} lines, not 11:\n${output}")
  endif()
  message(STATUS "consumer output:\n${output}")
endfunction()

set(consumer ${SOURCE_DIR}/tests/consumer)

if(STEP STREQUAL "install")
  file(REMOVE_RECURSE ${PREFIX})
  run_checked(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX})

elseif(STEP STREQUAL "find_package")
  set(build ${WORK_DIR}/consumer-find-package)
  file(REMOVE_RECURSE ${build})
  run_checked(${CMAKE_COMMAND} -S ${consumer} -B ${build} -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${PREFIX}
              -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}")
  file(READ ${build}/CMakeCache.txt cache)
  string(REGEX MATCH "busdecode_DIR:PATH=[^\n]*" found "${cache}")
  if(NOT found STREQUAL "busdecode_DIR:PATH=${PREFIX}/${LIBDIR}/cmake/busdecode")
    message(FATAL_ERROR "find_package took the package from elsewhere: ${found}")
  endif()
  run_checked(${CMAKE_COMMAND} --build ${build})
  run_checked(${build}/cbw)
  check_consumer_output("${run_output}")

elseif(STEP STREQUAL "pkg_config")
  file(STRINGS ${SOURCE_DIR}/README.md command REGEX "pkg-config --cflags --libs busdecode")
  list(LENGTH command count)
  if(NOT count EQUAL 1 OR NOT command MATCHES "^c\\+\\+ ")
    message(FATAL_ERROR "the README should hold one 'c++ ... pkg-config --cflags --libs busdecode' line: ${command}")
  endif()
  string(REGEX REPLACE "^c\\+\\+ " "${CXX} ${CXX_FLAGS} " command "${command}")
  set(build ${WORK_DIR}/consumer-pkg-config)
  file(REMOVE_RECURSE ${build})
  file(COPY ${consumer}/main.cpp DESTINATION ${build})
  run_checked(${CMAKE_COMMAND} -E chdir ${build}
              ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${PREFIX}/${LIBDIR}/pkgconfig sh -c "${command}")
  check_consumer_output("${run_output}")

elseif(STEP STREQUAL "readme")
  file(READ ${SOURCE_DIR}/README.md readme)
  foreach(name CMakeLists.txt main.cpp example.py)
    file(READ ${consumer}/${name} text)
    string(FIND "${readme}" "\n${text}```\n" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "the README does not show tests/consumer/${name} as it is")
    endif()
  endforeach()

else()
  message(FATAL_ERROR "unknown STEP '${STEP}'")
endif()
