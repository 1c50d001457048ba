# pxnc_sdk_library.cmake - name and place of a camera SDK's library

# pxnc_sdk_library(TARGET HOME [VERSION])
#
# Has TARGET, a shared library, built as HOME/Bin/PxnC.dll or HOME/Bin/libPxnC.so: what PYXEN_HOME
# or --sdk names is HOME. VERSION has four parts; on Linux it ends the file's name, on Windows the
# caller adds a version resource.
function(pxnc_sdk_library target home)
  set(directory $<1:${home}/Bin>) # the same for every configuration
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME PxnC RUNTIME_OUTPUT_DIRECTORY ${directory} LIBRARY_OUTPUT_DIRECTORY ${directory})
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")
  endif()
  if(ARGC GREATER 2)
    string(REGEX MATCH "^[0-9]+" major ${ARGV2})
    set_target_properties(${target} PROPERTIES VERSION ${ARGV2} SOVERSION ${major})
  endif()
endfunction()
