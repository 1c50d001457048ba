# settings.cmake - language, warnings, sanitizers and output directories

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Programs expect the module and the camera SDKs beside them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# Installed programs expect them here, relative to the program's own directory.
if(WIN32)
  set(MIVORA_INSTALL_PLUGINDIR ${CMAKE_INSTALL_BINDIR})
else()
  set(MIVORA_INSTALL_PLUGINDIR ${CMAKE_INSTALL_LIBDIR}/mivora)
endif()
file(RELATIVE_PATH MIVORA_PLUGINS_FROM_BIN ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_PREFIX}/${MIVORA_INSTALL_PLUGINDIR})

# Absolute paths are hidden from ccache, so that every checkout shares its results.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT MSVC)
  foreach(language IN ITEMS C CXX)
    set(CMAKE_${language}_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
        ${CCACHE_PROGRAM})
  endforeach()
endif()

find_package(Threads REQUIRED)

if(MIVORA_SANITIZE)
  add_compile_options(-fsanitize=${MIVORA_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${MIVORA_SANITIZE})
endif()
if(MIVORA_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# What makes faults harder to exploit, in whatever is built here; tests/checks/hardening.sh reads it
# from the binaries.
include(CheckPIESupported)
check_pie_supported()
if(MSVC)
  add_compile_options(/guard:cf)
  add_link_options(/guard:cf /DYNAMICBASE /NXCOMPAT /HIGHENTROPYVA)
else()
  add_compile_options(-fstack-protector-strong)
  if(MINGW)
    set(fortify 2) # the highest that its headers know
    add_link_options(-fstack-protector-strong
                     -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
  else()
    set(fortify 3)
    add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
  endif()
  if(NOT MIVORA_SANITIZE)
    # Needs an optimised build. The sanitizers do not watch the checked functions.
    add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${fortify}>")
  endif()
endif()

# What every target of this project is compiled with; sources of other projects are not.
add_library(mivora_settings INTERFACE)
target_include_directories(mivora_settings INTERFACE ${CMAKE_SOURCE_DIR})
if(MSVC)
  target_compile_options(mivora_settings INTERFACE /W4 /utf-8 /permissive-)
  target_compile_definitions(mivora_settings INTERFACE _CRT_SECURE_NO_WARNINGS NOMINMAX)
else()
  target_compile_options(mivora_settings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 sees overlaps in std::string's operator+ that are not there.
    target_compile_options(mivora_settings INTERFACE -Wno-restrict)
    if(CMAKE_UNITY_BUILD)
      # To GCC, sources that are compiled together are headers.
      target_compile_options(mivora_settings INTERFACE -Wno-subobject-linkage)
    endif()
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(mivora_settings INTERFACE -Wthread-safety -Wno-sign-conversion)
  endif()
endif()
if(MIVORA_WERROR)
  target_compile_options(mivora_settings INTERFACE $<IF:$<BOOL:${MSVC}>,/WX,-Werror>)
endif()
if(WIN32)
  target_compile_definitions(mivora_settings INTERFACE
    WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
endif()
if(MIVORA_REAL_MFC)
  set(CMAKE_MFC_FLAG 2) # the shared library; the generators of Visual Studio ask for it here
endif()
if(MINGW)
  # Each binary carries its own run-time library: nothing but the system's DLLs is needed beside it.
  add_link_options(-static)
endif()
target_link_libraries(mivora_settings INTERFACE Threads::Threads)
