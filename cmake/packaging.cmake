# packaging.cmake - what is installed where, and the packages made of it
#
# Three components: Runtime is what hosts load, Tools the programs, Development what hosts, modules
# and camera SDKs are built with.

include(CMakePackageConfigHelpers)

# Libraries of the same prefix are found relative to who links them.
if(UNIX)
  file(RELATIVE_PATH libFromBin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  file(RELATIVE_PATH libFromPlugins ${CMAKE_INSTALL_PREFIX}/${MIVORA_INSTALL_PLUGINDIR}
       ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(mivora pyxen-tool PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/${libFromBin}")
  set_target_properties(MivoraKVNPyxen PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/${libFromPlugins}")
  # The build's would be padded with empty entries, which stand for the current directory.
  set_target_properties(mivora pyxen-tool MivoraKVNPyxen PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
endif()

install(TARGETS mivora pyxen-tool COMPONENT Tools)
if(TARGET mivora-view)
  install(TARGETS mivora-view COMPONENT Tools)
endif()

install(TARGETS Mivora mivora_module EXPORT MivoraTargets
        RUNTIME COMPONENT Runtime
        LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE COMPONENT Development)
install(TARGETS MivoraKVNPyxen
        RUNTIME DESTINATION ${MIVORA_INSTALL_PLUGINDIR} COMPONENT Runtime
        LIBRARY DESTINATION ${MIVORA_INSTALL_PLUGINDIR} COMPONENT Runtime)
foreach(sdk IN ITEMS simulator genicam trace recording)
  if(TARGET pxnc_${sdk})
    install(TARGETS pxnc_${sdk}
            RUNTIME DESTINATION ${MIVORA_INSTALL_PLUGINDIR}/${sdk}/Bin COMPONENT Runtime
            LIBRARY DESTINATION ${MIVORA_INSTALL_PLUGINDIR}/${sdk}/Bin COMPONENT Runtime)
  endif()
endforeach()
install(FILES CHANGELOG.md CONTRIBUTING.md README.md THIRD-PARTY.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Runtime)
install(DIRECTORY docs apps/demo DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Runtime
        PATTERN Doxyfile EXCLUDE PATTERN *.awk EXCLUDE PATTERN *.dox EXCLUDE)

install(TARGETS pxnc_header EXPORT PxnCTargets COMPONENT Development)
install(TARGETS pxnc_skeleton_archive EXPORT PxnCSkeletonTargets COMPONENT Development)
install(DIRECTORY host/include/mivora pxnc/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT Development)
# What an SDK on the skeleton includes: not how settings files and XML are read, nor what the
# functions have in common. In a directory of its own, as the names of folders are general ones.
set(skeletonHeaders backend callback_scope callback_turns clock condition described_feature
    entry_call feature feature_module frame_book function_ref handle_table invalidations local_feature
    module never_destroyed stored_value text_pool)
list(TRANSFORM skeletonHeaders REPLACE "(.+)" "pxnc/skeleton/\\1.h")
install(FILES ${skeletonHeaders}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pxnc-skeleton/pxnc/skeleton COMPONENT Development)
install(FILES platform/annotations.h platform/mutex.h platform/thread.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pxnc-skeleton/platform COMPONENT Development)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development
        PATTERN build EXCLUDE)

set(pxncSkeletonPackages)
get_target_property(pugixmlIsForeign pugixml::pugixml IMPORTED)
if(pugixmlIsForeign)
  set(pxncSkeletonPackages pugixml)
endif()
set(packageFiles ${CMAKE_SOURCE_DIR}/cmake/package)
foreach(package IN ITEMS Mivora PxnC)
  set(directory ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
  install(EXPORT ${package}Targets NAMESPACE ${package}:: DESTINATION ${directory}
          COMPONENT Development)
  configure_package_config_file(${packageFiles}/${package}Config.cmake.in
                                ${CMAKE_BINARY_DIR}/${package}Config.cmake
                                INSTALL_DESTINATION ${directory}
                                PATH_VARS MIVORA_INSTALL_PLUGINDIR)
  write_basic_package_version_file(${CMAKE_BINARY_DIR}/${package}ConfigVersion.cmake
                                   COMPATIBILITY SameMajorVersion)
  install(FILES ${CMAKE_BINARY_DIR}/${package}Config.cmake
                ${CMAKE_BINARY_DIR}/${package}ConfigVersion.cmake
          DESTINATION ${directory} COMPONENT Development)
endforeach()
install(FILES ${packageFiles}/mivora_add_module.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Mivora COMPONENT Development)
install(FILES ${packageFiles}/pxnc_add_sdk.cmake ${packageFiles}/pxnc_sdk_library.cmake
              ${packageFiles}/sdk_version.rc.in
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/PxnC COMPONENT Development)
install(EXPORT PxnCSkeletonTargets NAMESPACE PxnC::
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/PxnC COMPONENT Development)

if(TARGET pages)
  foreach(program IN ITEMS mivora pyxen-tool)
    install(FILES ${CMAKE_BINARY_DIR}/pages/${program}.1
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Tools)
    install(FILES ${CMAKE_BINARY_DIR}/pages/${program}.bash RENAME ${program}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT Tools)
  endforeach()
endif()

if(NOT MSVC)
  file(RELATIVE_PATH prefixFromPkgConfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
       ${CMAKE_INSTALL_PREFIX})
  cmake_path(SET prefixFromPkgConfig NORMALIZE ${prefixFromPkgConfig}/.)
  foreach(package IN ITEMS mivora pxnc)
    configure_file(${packageFiles}/${package}.pc.in ${CMAKE_BINARY_DIR}/${package}.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/${package}.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
  endforeach()
endif()

# What `uninstall` takes away. CMake's own list is of no use: packing writes it anew.
set(installedFiles ${CMAKE_BINARY_DIR}/installed_files.txt)
install(CODE "
  if(NOT \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\" MATCHES \"/_CPack_Packages/\")
    set(record \"${installedFiles}\")
    set(installed)
    if(EXISTS \${record})
      file(STRINGS \${record} installed)
    endif()
    foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
      list(APPEND installed \$ENV{DESTDIR}\${file})
    endforeach()
    list(REMOVE_DUPLICATES installed)
    list(JOIN installed \"\\n\" text)
    file(WRITE \${record} \"\${text}\\n\")
  endif()" ALL_COMPONENTS)
add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -DBUILD_DIRECTORY=${CMAKE_BINARY_DIR}
          -DCMAKE_LIBRARY_ARCHITECTURE=${CMAKE_LIBRARY_ARCHITECTURE}
          -P ${CMAKE_SOURCE_DIR}/cmake/uninstall.cmake
  COMMENT "Removing what was installed from here" VERBATIM)

set(CPACK_PACKAGE_NAME mivora)
set(CPACK_PACKAGE_VENDOR Mivora)
set(CPACK_PACKAGE_CONTACT "The Mivora developers <developers@mivora.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME mivora-${PROJECT_VERSION}-windows-x86_64)
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_PACKAGE_FILE_NAME mivora-${PROJECT_VERSION}-linux-x86_64)
  set(CPACK_DEB_COMPONENT_INSTALL ON) # a package of each; the archive has all
  set(CPACK_COMPONENTS_ALL Runtime Tools Development)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/bin)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME mivora)
  set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Host library, camera module, camera SDKs and pages.")
  set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME mivora-tools)
  set(CPACK_COMPONENT_TOOLS_DESCRIPTION "The programs mivora and pyxen-tool.")
  set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "mivora (= ${PROJECT_VERSION})")
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME mivora-dev)
  set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
      "Headers, libraries and examples for hosts, grabber modules and camera SDKs.")
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "mivora (= ${PROJECT_VERSION}), libpugixml-dev")
endif()
include(CPack)
