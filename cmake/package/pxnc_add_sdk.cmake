# pxnc_add_sdk.cmake - how a camera SDK is built on the skeleton

# pxnc_add_sdk(NAME SOURCES FILE... [VERSION A.B.C.D])
#
# Adds the camera SDK NAME: a library with the 55 functions of the skeleton, behind which the sources
# have an implementation (skeleton::TheImplementation). It is built as NAME/Bin/PxnC.dll or
# NAME/Bin/libPxnC.so in the present binary directory, so that NAME is what hosts are given. VERSION,
# by default 1.0.0.0, is the version of the file. More is set by the usual commands.
function(pxnc_add_sdk name)
  cmake_parse_arguments(PARSE_ARGV 1 sdk "" "VERSION" "SOURCES")
  if(NOT sdk_VERSION)
    set(sdk_VERSION 1.0.0.0)
  endif()
  if(sdk_UNPARSED_ARGUMENTS OR NOT sdk_SOURCES OR
     NOT sdk_VERSION MATCHES "^[0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+$")
    message(FATAL_ERROR "pxnc_add_sdk(NAME SOURCES FILE... [VERSION A.B.C.D]): "
                        "wrong arguments for ${name}")
  endif()
  # Those who need the headers alone need none of this.
  if(NOT TARGET PxnC::Skeleton)
    foreach(package IN LISTS PxnC_SKELETON_PACKAGES)
      find_package(${package} REQUIRED)
    endforeach()
    include(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/PxnCSkeletonTargets.cmake)
  endif()
  add_library(${name} SHARED ${sdk_SOURCES})
  # Nothing in the sources refers to the functions, so the linker is told to keep them.
  target_link_libraries(${name} PRIVATE $<LINK_LIBRARY:WHOLE_ARCHIVE,PxnC::Skeleton>)
  set_target_properties(${name} PROPERTIES
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  pxnc_sdk_library(${name} ${CMAKE_CURRENT_BINARY_DIR}/${name} ${sdk_VERSION})
  if(WIN32)
    string(REPLACE "." "," sdkVersionNumbers ${sdk_VERSION})
    set(sdkResource ${CMAKE_CURRENT_BINARY_DIR}/${name}_version.rc)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/sdk_version.rc.in ${sdkResource} @ONLY)
    target_sources(${name} PRIVATE ${sdkResource})
  else()
    # The state of a library that is unloaded stays, as threads may still be leaving it.
    target_link_options(${name} PRIVATE -Wl,-z,nodelete)
  endif()
  if(MINGW)
    # Hosts load it from anywhere, where the compiler's run-time libraries are not found.
    target_link_options(${name} PRIVATE -static)
  endif()
endfunction()
