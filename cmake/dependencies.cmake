# dependencies.cmake - the libraries that host, SDKs, tools and tests use
#
# Installed packages come first. A cross build finds none of them: there, header-only libraries are
# staged as links to just their own directories, so that no other header of the build machine is
# seen, and pugixml, lodepng, libdeflate, libtiff, libjpeg-turbo and cpp-httplib are compiled from
# sources in MIVORA_THIRD_PARTY, which `./dev` fetches.

set(MIVORA_THIRD_PARTY ${CMAKE_SOURCE_DIR}/build/third_party CACHE PATH
    "Where the sources of libraries are, for targets without packages of them")
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

# mivora_compile_library(NAME DIRECTORY SOURCES...): NAME from sources in a directory of
# MIVORA_THIRD_PARTY; their headers are in the directory of the first.
function(mivora_compile_library name directory)
  list(TRANSFORM ARGN PREPEND ${MIVORA_THIRD_PARTY}/${directory}/ OUTPUT_VARIABLE sources)
  list(GET sources 0 first)
  if(NOT EXISTS ${first})
    message(FATAL_ERROR "There is no package of ${name} for this target and no ${first}: run "
                        "'./dev setup windows' or set MIVORA_THIRD_PARTY")
  endif()
  cmake_path(GET first PARENT_PATH headers)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} SYSTEM PUBLIC ${headers})
  set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
endfunction()

# mivora_find_library(NAME HEADER LIBRARY...): declares NAME, a package without a file for CMake,
# unless it is not there.
function(mivora_find_library name header)
  string(TOUPPER ${name} prefix)
  find_path(${prefix}_INCLUDE_DIR ${header})
  find_library(${prefix}_LIBRARY NAMES ${ARGN})
  mark_as_advanced(${prefix}_INCLUDE_DIR ${prefix}_LIBRARY)
  if(${prefix}_INCLUDE_DIR AND ${prefix}_LIBRARY)
    add_library(${name} UNKNOWN IMPORTED GLOBAL)
    set_target_properties(${name} PROPERTIES
      IMPORTED_LOCATION ${${prefix}_LIBRARY}
      INTERFACE_INCLUDE_DIRECTORIES ${${prefix}_INCLUDE_DIR})
  endif()
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
  mivora_compile_library(pugixml pugixml src/pugixml.cpp)
  add_library(pugixml::pugixml ALIAS pugixml)
endif()

mivora_find_library(lodepng lodepng.h lodepng)
if(NOT TARGET lodepng)
  mivora_compile_library(lodepng lodepng lodepng.cpp)
endif()

mivora_find_library(deflate libdeflate.h deflate libdeflate)
if(NOT TARGET deflate)
  mivora_compile_library(deflate libdeflate libdeflate.h lib/adler32.c lib/crc32.c
                         lib/deflate_compress.c lib/deflate_decompress.c lib/utils.c
                         lib/x86/cpu_features.c lib/zlib_compress.c lib/zlib_decompress.c)
endif()

# With its own project: what it finds out about the system is a page long.
function(mivora_compile_tiff)
  if(NOT EXISTS ${MIVORA_THIRD_PARTY}/tiff/CMakeLists.txt)
    message(FATAL_ERROR "There is no package of libtiff for this target and no "
                        "${MIVORA_THIRD_PARTY}/tiff: run './dev setup windows' or set "
                        "MIVORA_THIRD_PARTY")
  endif()
  if(MINGW)
    # Not the library that wants a DLL beside the program.
    find_library(ZLIB_LIBRARY libz.a)
  endif()
  set(CMAKE_POLICY_DEFAULT_CMP0077 NEW) # its options are set here
  set(BUILD_SHARED_LIBS OFF)
  set(CMAKE_UNITY_BUILD OFF)
  set(CMAKE_EXPORT_COMPILE_COMMANDS OFF) # not to be checked
  foreach(option IN ITEMS cxx jbig jpeg lerc libdeflate lzma old-jpeg pixarlog tiff-contrib tiff-docs
                          tiff-opengl tiff-tests tiff-tools webp zstd)
    set(${option} OFF)
  endforeach()
  set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON) # what it links is linked from here
  set(CMAKE_MESSAGE_LOG_LEVEL WARNING)
  add_subdirectory(${MIVORA_THIRD_PARTY}/tiff ${CMAKE_BINARY_DIR}/tiff EXCLUDE_FROM_ALL SYSTEM)
endfunction()

# In a build of its own, as its project wants to be the outermost one.
function(mivora_compile_turbojpeg)
  set(sources ${MIVORA_THIRD_PARTY}/libjpeg-turbo)
  set(binaries ${CMAKE_BINARY_DIR}/libjpeg-turbo)
  if(NOT EXISTS ${sources}/CMakeLists.txt)
    message(FATAL_ERROR "There is no package of libjpeg-turbo for this target and no ${sources}: run "
                        "'./dev setup windows' or set MIVORA_THIRD_PARTY")
  endif()
  include(ExternalProject)
  set(library ${binaries}/${CMAKE_STATIC_LIBRARY_PREFIX}turbojpeg${CMAKE_STATIC_LIBRARY_SUFFIX})
  set(choices -DCMAKE_BUILD_TYPE=Release -DENABLE_SHARED=OFF -DREQUIRE_SIMD=ON
              -DCMAKE_INSTALL_PREFIX=${binaries}/unused)
  foreach(setting IN ITEMS TOOLCHAIN_FILE C_COMPILER SYSTEM_NAME SYSTEM_PROCESSOR)
    if(CMAKE_${setting} AND NOT (setting MATCHES "SYSTEM|C_COMPILER$" AND CMAKE_TOOLCHAIN_FILE))
      list(APPEND choices -DCMAKE_${setting}=${CMAKE_${setting}})
    endif()
  endforeach()
  ExternalProject_Add(turbojpeg_build
    SOURCE_DIR ${sources}
    BINARY_DIR ${binaries}
    PREFIX ${binaries}/steps
    CMAKE_ARGS ${choices}
    BUILD_COMMAND ${CMAKE_COMMAND} --build <BINARY_DIR> --target turbojpeg-static
    INSTALL_COMMAND ""
    BUILD_BYPRODUCTS ${library}
    EXCLUDE_FROM_ALL TRUE)
  add_library(turbojpeg STATIC IMPORTED GLOBAL)
  add_dependencies(turbojpeg turbojpeg_build)
  set_target_properties(turbojpeg PROPERTIES IMPORTED_LOCATION ${library}
                        INTERFACE_INCLUDE_DIRECTORIES ${sources})
endfunction()

find_package(TIFF QUIET)
if(NOT TIFF_FOUND)
  mivora_compile_tiff()
  if(NOT TARGET TIFF::TIFF)
    add_library(TIFF::TIFF ALIAS tiff)
  endif()
endif()

mivora_find_library(turbojpeg turbojpeg.h turbojpeg)
if(NOT TARGET turbojpeg)
  mivora_compile_turbojpeg()
endif()

# Debian's library has all of its options; what includes the header has to have them, too.
mivora_find_library(httplib httplib.h cpp-httplib httplib)
if(TARGET httplib)
  target_compile_definitions(httplib INTERFACE CPPHTTPLIB_OPENSSL_SUPPORT CPPHTTPLIB_ZLIB_SUPPORT
                             CPPHTTPLIB_BROTLI_SUPPORT)
else()
  # Elsewhere it is a header only.
  if(NOT HTTPLIB_INCLUDE_DIR)
    set(HTTPLIB_INCLUDE_DIR ${MIVORA_THIRD_PARTY}/cpp-httplib)
  endif()
  if(NOT EXISTS ${HTTPLIB_INCLUDE_DIR}/httplib.h)
    message(FATAL_ERROR "There is no package of cpp-httplib for this target and no "
                        "${HTTPLIB_INCLUDE_DIR}/httplib.h: run './dev setup windows' or set "
                        "MIVORA_THIRD_PARTY")
  endif()
  add_library(httplib INTERFACE IMPORTED)
  target_include_directories(httplib SYSTEM INTERFACE ${HTTPLIB_INCLUDE_DIR})
  target_link_libraries(httplib INTERFACE ws2_32 crypt32)
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
