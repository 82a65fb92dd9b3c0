# Installs the library, its headers and the tool, exports the library as
# busdecode::busdecode for find_package, writes busdecode.pc for pkg-config,
# and describes the Debian package that cpack makes from the same install.

include(CMakePackageConfigHelpers)

set(BUSDECODE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/busdecode)

# The public headers keep the layout of the tree under include/busdecode, as
# the headers include each other by their folder ("core/AdvAnlzData.h").
# Every decoder folder takes part, present and to come.
set(BUSDECODE_HEADER_FOLDERS platform core registry storage usbclass hid serial hci)
foreach(folder ${BUSDECODE_HEADER_FOLDERS})
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.h)
  if(headers)
    install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/busdecode/${folder})
  endif()
endforeach()

install(TARGETS busdecode_lib EXPORT busdecodeTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(BUSDECODE_TOOLS)
  install(TARGETS busdecode RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT busdecodeTargets NAMESPACE busdecode:: DESTINATION ${BUSDECODE_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/busdecodeConfig.cmake.in
  ${CMAKE_BINARY_DIR}/busdecodeConfig.cmake INSTALL_DESTINATION ${BUSDECODE_CMAKE_DIR})
# 0.x releases may change the interface between minor versions.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/busdecodeConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/busdecodeConfig.cmake ${CMAKE_BINARY_DIR}/busdecodeConfigVersion.cmake
        DESTINATION ${BUSDECODE_CMAKE_DIR})

# The pkg-config file finds the prefix from its own place, so one file serves
# any install prefix (cmake --install --prefix, the Debian package's /usr).
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(BUSDECODE_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
  set(BUSDECODE_PC_LIBDIR "${CMAKE_INSTALL_FULL_LIBDIR}")
  set(BUSDECODE_PC_INCLUDEDIR "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
else()
  file(RELATIVE_PATH up "/root/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/root")
  string(REGEX REPLACE "/$" "" up "${up}")
  set(BUSDECODE_PC_PREFIX "\${pcfiledir}/${up}")
  set(BUSDECODE_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
  set(BUSDECODE_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/busdecode.pc.in ${CMAKE_BINARY_DIR}/busdecode.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/busdecode.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# cpack -G DEB: one package with the tool, the library, the headers and the
# files that find them. The tool's library dependencies come from
# dpkg-shlibdeps; building against the headers needs a C++17 compiler.
set(CPACK_PACKAGE_NAME busdecode)
set(CPACK_PACKAGE_VENDOR "busdecode developers")
set(CPACK_PACKAGE_CONTACT "busdecode developers <busdecode@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "protocol decoders for captured bus and link payloads")
set(CPACK_PACKAGE_DESCRIPTION
    "A C++17 library of high-level protocol decoders (USB mass storage, SCSI, Bluetooth HCI and more) and the busdecode command-line tool. Includes the static library, its headers, a CMake package (busdecode::busdecode) and a pkg-config file.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "g++ | clang, cmake, pkg-config")
set(CPACK_GENERATOR DEB)
include(CPack)
