# mivora_add_module.cmake - how a grabber module is built

# mivora_add_module(NAME SOURCES FILE...)
#
# Adds the grabber module NAME: a library NAME.dll or libNAME.so that hosts load at run time. Of its
# own it shows nothing but what is marked for export. More is set by the usual commands:
# target_link_libraries(NAME PRIVATE ...), install(TARGETS NAME ...).
function(mivora_add_module name)
  cmake_parse_arguments(PARSE_ARGV 1 module "" "" "SOURCES")
  if(module_UNPARSED_ARGUMENTS OR NOT module_SOURCES)
    message(FATAL_ERROR "mivora_add_module(NAME SOURCES FILE...): wrong arguments for ${name}")
  endif()
  add_library(${name} MODULE ${module_SOURCES})
  target_link_libraries(${name} PRIVATE Mivora::Module)
  if(PROJECT_VERSION)
    target_compile_definitions(${name} PRIVATE MIVORA_MODULE_VERSION="${PROJECT_VERSION}")
  endif()
  set_target_properties(${name} PROPERTIES
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "")
  endif()
  if(MINGW)
    # Hosts load it from anywhere, where the compiler's run-time libraries are not found.
    target_link_options(${name} PRIVATE -static)
  endif()
endfunction()
