# uninstall.cmake - takes away what was installed from a build directory
#
# cmake -DBUILD_DIRECTORY=DIR -P uninstall.cmake: all files that DIR/installed_files.txt lists, and
# the directories that are empty without them.
cmake_minimum_required(VERSION 3.25)

set(record ${BUILD_DIRECTORY}/installed_files.txt)
if(NOT EXISTS ${record})
  message(FATAL_ERROR "Nothing has been installed from ${BUILD_DIRECTORY}")
endif()

file(STRINGS ${record} files)
set(directories)
foreach(file IN LISTS files)
  if(EXISTS ${file} OR IS_SYMLINK ${file})
    message(STATUS "Removing: ${file}")
    file(REMOVE ${file})
  endif()
  cmake_path(GET file PARENT_PATH directory)
  list(APPEND directories ${directory})
endforeach()

# Those that others install to stay, empty or not.
set(shared bin lib lib64 include share cmake pkgconfig doc man man1 bash-completion completions
    ${CMAKE_LIBRARY_ARCHITECTURE})
list(REMOVE_DUPLICATES directories)
foreach(directory IN LISTS directories)
  while(EXISTS ${directory})
    cmake_path(GET directory FILENAME name)
    file(GLOB left LIST_DIRECTORIES true ${directory}/* ${directory}/.*)
    if(left OR name IN_LIST shared)
      break()
    endif()
    file(REMOVE_RECURSE ${directory})
    cmake_path(GET directory PARENT_PATH directory)
  endwhile()
endforeach()
file(REMOVE ${record})
