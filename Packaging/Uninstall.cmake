# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# Removes what the last installation from a build directory put there: the files that `manifest`
# lists, and directories of the program's own that they leave empty.

# Takes each file away, as long as it is there.
function(remove_files)
  foreach(file IN LISTS ARGN)
    set(path "$ENV{DESTDIR}${file}")
    if(EXISTS "${path}" OR IS_SYMLINK "${path}")
      message(STATUS "Removing ${path}")
      file(REMOVE "${path}")
    endif()
    if(EXISTS "${path}" OR IS_SYMLINK "${path}")
      message(FATAL_ERROR "${path} cannot be removed")
    endif()
  endforeach()
endfunction()

# Takes away what is called as the program is and has nothing in it.
function(remove_empty_directories)
  foreach(file IN LISTS ARGN)
    cmake_path(GET file PARENT_PATH directory)
    cmake_path(GET directory FILENAME name)
    file(GLOB others LIST_DIRECTORIES true "$ENV{DESTDIR}${directory}/*"
      "$ENV{DESTDIR}${directory}/.*")
    list(FILTER others EXCLUDE REGEX "/\\.\\.?$")
    if(name STREQUAL "sallowmere" AND NOT others)
      file(REMOVE_RECURSE "$ENV{DESTDIR}${directory}")
    endif()
  endforeach()
endfunction()

if(NOT EXISTS "${manifest}")
  message(FATAL_ERROR "Nothing is installed from here: there is no ${manifest}")
endif()
file(STRINGS "${manifest}" installed)
remove_files(${installed})
remove_empty_directories(${installed})
file(REMOVE "${manifest}")
