# packaging.cmake - what is installed where, and the packages made of it

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

install(TARGETS mivora pyxen-tool)
if(TARGET mivora-view)
  install(TARGETS mivora-view)
endif()
install(TARGETS Mivora EXPORT MivoraTargets)
install(TARGETS MivoraKVNPyxen
        RUNTIME DESTINATION ${MIVORA_INSTALL_PLUGINDIR} LIBRARY DESTINATION ${MIVORA_INSTALL_PLUGINDIR})
foreach(sdk IN ITEMS simulator genicam trace)
  if(TARGET pxnc_${sdk})
    install(TARGETS pxnc_${sdk}
            RUNTIME DESTINATION ${MIVORA_INSTALL_PLUGINDIR}/${sdk}/Bin
            LIBRARY DESTINATION ${MIVORA_INSTALL_PLUGINDIR}/${sdk}/Bin)
  endif()
endforeach()
install(TARGETS pxnc_header EXPORT PxnCTargets)
install(DIRECTORY host/include/mivora DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY pxnc/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES CHANGELOG.md CONTRIBUTING.md README.md THIRD-PARTY.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs apps/demo DESTINATION ${CMAKE_INSTALL_DOCDIR})

foreach(package IN ITEMS Mivora PxnC)
  set(directory ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
  install(EXPORT ${package}Targets NAMESPACE ${package}:: DESTINATION ${directory})
  file(WRITE ${CMAKE_BINARY_DIR}/${package}Config.cmake
       "include(\${CMAKE_CURRENT_LIST_DIR}/${package}Targets.cmake)\n")
  write_basic_package_version_file(${CMAKE_BINARY_DIR}/${package}ConfigVersion.cmake
                                   COMPATIBILITY SameMajorVersion)
  install(FILES ${CMAKE_BINARY_DIR}/${package}Config.cmake
                ${CMAKE_BINARY_DIR}/${package}ConfigVersion.cmake
          DESTINATION ${directory})
endforeach()

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
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/bin)
endif()
include(CPack)
