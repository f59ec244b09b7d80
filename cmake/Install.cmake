# Installation of qr_config: the shared library, its public headers, qrconfig, the XML
# Schemas of the configuration files, the documentation and the sample installation, with a
# CMake package (find_package(qr_config CONFIG) gives the target qr_config::qr_config) and a
# pkg-config file.
#
# Header layout. Every header of the library includes the others as "qr_config/config/..."
# and "qr_config/platform/...", so they are installed under one include folder of their own,
#   <includedir>/qr_config/config/...   and   <includedir>/qr_config/platform/...,
# with the umbrella header config/qr_config.h as <includedir>/qr_config/qr_config.h. The
# target's include path holds <includedir> alone: qr_config/ is the only top-level name a
# consumer's include path receives, so its own config/ or platform/ folders cannot collide.
#
# Which headers are public is not a hand-kept list: it is every header that the umbrella
# header includes, directly or through other headers, found here by following their
# #include "qr_config/..." lines. Internal headers (readers, the manager's implementation,
# the XML layer) are therefore never installed.
include(CMakePackageConfigHelpers)

set(QR_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/qr_config")
set(QR_INSTALL_HEADERDIR "${CMAKE_INSTALL_INCLUDEDIR}/qr_config")

# The public headers: the include closure of the umbrella header, as paths relative to the
# source tree.
function(qr_public_headers out)
  set(pending "config/qr_config.h")
  set(found "")
  while(pending)
    list(POP_FRONT pending header)
    if(header IN_LIST found)
      continue()
    endif()
    list(APPEND found "${header}")
    file(STRINGS "${PROJECT_SOURCE_DIR}/${header}" lines
         REGEX "^[ \t]*#[ \t]*include[ \t]+\"qr_config/(config|platform)/[^\"]+\"")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[^\"]*\"qr_config/([^\"]+)\".*$" "\\1" included "${line}")
      if(NOT included IN_LIST found)
        list(APPEND pending "${included}")
      endif()
    endforeach()
  endwhile()
  list(REMOVE_ITEM found "config/qr_config.h")
  list(SORT found)
  set(${out} "${found}" PARENT_SCOPE)
endfunction()

qr_public_headers(QR_PUBLIC_HEADERS)
foreach(header IN LISTS QR_PUBLIC_HEADERS)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${PROJECT_SOURCE_DIR}/${header}"
          DESTINATION "${QR_INSTALL_HEADERDIR}/${folder}" COMPONENT Development)
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/config/qr_config.h" DESTINATION "${QR_INSTALL_HEADERDIR}"
        COMPONENT Development)
# Re-run the configuration when a public header changes its includes.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             "${PROJECT_SOURCE_DIR}/config/qr_config.h" ${QR_PUBLIC_HEADERS})

target_include_directories(qr_config INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# The library: libqr_config.so.<version>, the soname link libqr_config.so.<major> (runtime)
# and the namelink libqr_config.so (development).
install(TARGETS qr_config EXPORT qr_configTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
install(EXPORT qr_configTargets NAMESPACE qr_config:: DESTINATION ${QR_INSTALL_CMAKEDIR}
        COMPONENT Development)

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/qr_configConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/qr_configConfig.cmake" INSTALL_DESTINATION ${QR_INSTALL_CMAKEDIR})
# 0.x releases promise nothing across minor versions: a request for 0.1 takes 0.1.y only.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/qr_configConfigVersion.cmake"
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/qr_configConfig.cmake"
              "${PROJECT_BINARY_DIR}/qr_configConfigVersion.cmake"
        DESTINATION ${QR_INSTALL_CMAKEDIR} COMPONENT Development)

# pkg-config; POCO ships no .pc file, so its library is named directly. The prefix is found
# from the .pc file's own place, so that `cmake --install --prefix DIR` and a moved tree work.
# The include path is <includedir> alone, as for the CMake target. A program linked with
# `pkg-config --libs` from any prefix but /usr (whose library directory the loader searches
# anyway) gets the library directory as its run path, so that it starts as it is.
file(RELATIVE_PATH QR_PC_TO_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
     "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" QR_PC_TO_PREFIX "${QR_PC_TO_PREFIX}")
set(QR_PC_RPATH "-Wl,-rpath,\${libdir} ")
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(QR_PC_RPATH "")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/qr_config.pc.in"
               "${PROJECT_BINARY_DIR}/qr_config.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qr_config.pc"
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)

if(TARGET qrconfig)
  install(TARGETS qrconfig RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
  # Where bash-completion looks for a command's completion: completions/<command>.
  install(FILES "${PROJECT_SOURCE_DIR}/tools/shell/qrconfig.bash"
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME qrconfig
          COMPONENT Tools)
endif()
if(TARGET qrconfig_man)
  install(FILES "${PROJECT_BINARY_DIR}/tools/qrconfig.1" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
          COMPONENT Tools)
endif()
# The XML Schemas of the XML file kinds, written at build time from the readers' vocabulary
# (tools/schema), for editors and xmllint: <datadir>/qr_config/schema/qr-<kind>.xsd.
if(TARGET qr_schemas)
  get_target_property(QR_SCHEMA_FILES qr_schemas QR_SCHEMA_FILES)
  install(FILES ${QR_SCHEMA_FILES} DESTINATION ${CMAKE_INSTALL_DATADIR}/qr_config/schema
          COMPONENT Tools)
endif()

# The documentation and the sample installation, an example to start from (qrconfig reads
# it only when named: --config-dir <datadir>/qr_config/sample-config).
install(FILES "${PROJECT_SOURCE_DIR}/README.md" DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT Documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/" DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT Documentation FILES_MATCHING PATTERN "*.md")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/sample-config"
        DESTINATION ${CMAKE_INSTALL_DATADIR}/qr_config COMPONENT Documentation)
