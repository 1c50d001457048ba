# dependencies.cmake - the libraries that host, SDKs, tools and tests use
#
# Installed packages come first. A cross build finds none of them: there, header-only libraries are
# staged as links to just their own directories, so that no other header of the build machine is
# seen, and pugixml and lodepng are compiled from sources in MIVORA_THIRD_PARTY, which `./dev`
# fetches.

set(MIVORA_THIRD_PARTY ${CMAKE_SOURCE_DIR}/build/third_party CACHE PATH
    "Where the sources of pugixml and lodepng are, for targets without packages of them")
set(MIVORA_HEADER_ONLY /usr/include CACHE PATH
    "Where the directories CLI and nlohmann are, for targets without packages of them")
set(MIVORA_GOOGLETEST /usr/src/googletest CACHE PATH
    "The sources of GoogleTest, for targets without a package of it")

# Declares NAME as an interface library with just the directory DIRECTORY of MIVORA_HEADER_ONLY.
function(mivora_stage_headers name directory)
  if(NOT EXISTS ${MIVORA_HEADER_ONLY}/${directory})
    message(FATAL_ERROR "There is no package of ${directory} for this target and no directory "
                        "${directory} in ${MIVORA_HEADER_ONLY}: set MIVORA_HEADER_ONLY")
  endif()
  set(stage ${CMAKE_BINARY_DIR}/stage/${directory})
  file(MAKE_DIRECTORY ${stage})
  if(NOT EXISTS ${stage}/${directory})
    file(CREATE_LINK ${MIVORA_HEADER_ONLY}/${directory} ${stage}/${directory}
         COPY_ON_ERROR SYMBOLIC)
  endif()
  add_library(${name} INTERFACE IMPORTED)
  target_include_directories(${name} SYSTEM INTERFACE ${stage})
endfunction()

# Compiles NAME from SOURCE, a file below MIVORA_THIRD_PARTY.
function(mivora_compile_library name source)
  set(path ${MIVORA_THIRD_PARTY}/${source})
  if(NOT EXISTS ${path})
    message(FATAL_ERROR "There is no package of ${name} for this target and no ${path}: run "
                        "'./dev setup windows' or set MIVORA_THIRD_PARTY")
  endif()
  cmake_path(GET path PARENT_PATH directory)
  add_library(${name} STATIC ${path})
  target_include_directories(${name} SYSTEM PUBLIC ${directory})
  set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
endfunction()

find_package(CLI11 QUIET)
if(NOT CLI11_FOUND)
  mivora_stage_headers(CLI11::CLI11 CLI)
endif()

find_package(nlohmann_json QUIET)
if(NOT nlohmann_json_FOUND)
  mivora_stage_headers(nlohmann_json::nlohmann_json nlohmann)
endif()

find_package(pugixml QUIET)
if(NOT pugixml_FOUND)
  mivora_compile_library(pugixml pugixml/src/pugixml.cpp)
  add_library(pugixml::pugixml ALIAS pugixml)
endif()

# lodepng's package has no CMake file of its own.
find_path(LODEPNG_INCLUDE_DIR lodepng.h)
find_library(LODEPNG_LIBRARY lodepng)
mark_as_advanced(LODEPNG_INCLUDE_DIR LODEPNG_LIBRARY)
if(LODEPNG_INCLUDE_DIR AND LODEPNG_LIBRARY)
  add_library(lodepng UNKNOWN IMPORTED)
  set_target_properties(lodepng PROPERTIES
    IMPORTED_LOCATION ${LODEPNG_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${LODEPNG_INCLUDE_DIR})
else()
  mivora_compile_library(lodepng lodepng/lodepng.cpp)
endif()

if(MIVORA_GENICAM)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(ARAVIS REQUIRED IMPORTED_TARGET aravis-0.8)
endif()

if(BUILD_TESTING)
  find_package(GTest QUIET)
  if(NOT GTest_FOUND)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
    add_subdirectory(${MIVORA_GOOGLETEST} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    set_target_properties(gtest gtest_main PROPERTIES UNITY_BUILD OFF)
    if(NOT TARGET GTest::gtest)
      add_library(GTest::gtest ALIAS gtest)
      add_library(GTest::gtest_main ALIAS gtest_main)
    endif()
  endif()
endif()
