# third_party.cmake - the libraries that host, SDK, tools and tests use
#
# Header-only libraries are staged as links to just their own headers, so that a cross build sees
# nothing else of the machine's include directory. What Debian packages only as a library for this
# machine (pugixml, lodepng) is compiled here for both targets from Debian's source packages, which
# `./dev` has fetched into MIVORA_THIRD_PARTY.

set(MIVORA_THIRD_PARTY ${CMAKE_SOURCE_DIR}/build/third_party CACHE PATH
    "Where ./dev has unpacked the sources of pugixml and lodepng")
foreach(source pugixml/src/pugixml.cpp lodepng/lodepng.cpp)
  if(NOT EXISTS ${MIVORA_THIRD_PARTY}/${source})
    message(FATAL_ERROR "${MIVORA_THIRD_PARTY}/${source} is missing: run ./dev setup first")
  endif()
endforeach()

set(MIVORA_HEADER_ONLY /usr/include CACHE PATH
    "Where the directories CLI (CLI11) and nlohmann (JSON) with their headers are")
set(MIVORA_GOOGLETEST /usr/src/googletest CACHE PATH "The sources of GoogleTest")

set(staged ${CMAKE_BINARY_DIR}/stage)
file(MAKE_DIRECTORY ${staged})
foreach(directory CLI nlohmann)
  if(NOT EXISTS ${MIVORA_HEADER_ONLY}/${directory})
    message(FATAL_ERROR "There is no directory ${directory} in ${MIVORA_HEADER_ONLY}: "
                        "set MIVORA_HEADER_ONLY")
  endif()
  if(EXISTS ${staged}/${directory})
    continue()
  endif()
  if(CMAKE_HOST_WIN32) # where links need a privilege
    file(COPY ${MIVORA_HEADER_ONLY}/${directory} DESTINATION ${staged})
  else()
    file(CREATE_LINK ${MIVORA_HEADER_ONLY}/${directory} ${staged}/${directory} SYMBOLIC)
  endif()
endforeach()
add_library(header_only_libraries INTERFACE)
target_include_directories(header_only_libraries SYSTEM INTERFACE ${staged})

add_library(pugixml STATIC ${MIVORA_THIRD_PARTY}/pugixml/src/pugixml.cpp)
target_include_directories(pugixml SYSTEM PUBLIC ${MIVORA_THIRD_PARTY}/pugixml/src)
add_library(lodepng STATIC ${MIVORA_THIRD_PARTY}/lodepng/lodepng.cpp)
target_include_directories(lodepng SYSTEM PUBLIC ${MIVORA_THIRD_PARTY}/lodepng)

if(NOT WIN32)
  # Aravis' own pkg-config file wants development files (libusb) that its users do not need, so only
  # GLib is asked for that way.
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0 gobject-2.0 gio-2.0)
  find_path(ARAVIS_INCLUDE_DIR arv.h PATH_SUFFIXES aravis-0.8 REQUIRED)
  find_library(ARAVIS_LIBRARY aravis-0.8 REQUIRED)
  add_library(aravis INTERFACE)
  target_include_directories(aravis SYSTEM INTERFACE ${ARAVIS_INCLUDE_DIR})
  target_link_libraries(aravis INTERFACE ${ARAVIS_LIBRARY} PkgConfig::GLIB)
endif()

function(mivora_use_googletest)
  if(TARGET gtest)
    return()
  endif()
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  add_subdirectory(${MIVORA_GOOGLETEST} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endfunction()
