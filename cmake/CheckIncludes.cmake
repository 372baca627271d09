# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when a front end or a benchmark includes a header that its library
# keeps to itself, or when a library includes one from a library above it.
#   cmake -DSOURCE_DIR=... -DINTERFACES=FILE -P CheckIncludes.cmake
# FILE sets PUBLIC_HEADERS ("files/filepaths.h", ...) and LIBRARY_FOLDERS,
# ordered from the bottom up: a library may include only from itself and the
# libraries before it.

include("${INTERFACES}")
set(failures "")

function(check_file file allowed_private_folder allowed_folders)
    file(STRINGS "${file}" lines REGEX "^#include \"[^\"]+\"")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" header "${line}")
        if(NOT header MATCHES "^([a-z]+)/")
            continue()
        endif()
        set(folder "${CMAKE_MATCH_1}")
        if(folder STREQUAL allowed_private_folder)
            continue()
        endif()
        list(FIND LIBRARY_FOLDERS "${folder}" is_library)
        if(is_library EQUAL -1)
            continue()
        endif()
        list(FIND allowed_folders "${folder}" reachable)
        list(FIND PUBLIC_HEADERS "${header}" public)
        if(reachable EQUAL -1)
            set(failures "${failures}\n  ${file}: ${header} (a library above this one)" PARENT_SCOPE)
        elseif(public EQUAL -1)
            set(failures "${failures}\n  ${file}: ${header} (private to ${folder})" PARENT_SCOPE)
        endif()
    endforeach()
endfunction()

# Libraries, each above the ones before it.
set(below "")
foreach(folder IN LISTS LIBRARY_FOLDERS)
    file(GLOB sources "${SOURCE_DIR}/src/${folder}/*.h" "${SOURCE_DIR}/src/${folder}/*.cpp")
    foreach(source IN LISTS sources)
        check_file("${source}" "${folder}" "${below}")
    endforeach()
    list(APPEND below "${folder}")
endforeach()

# Front ends, and the benchmarks, which measure the libraries as the front
# ends use them: every library is below them, only through its public
# headers.
foreach(front_end IN ITEMS src/app src/cli bench)
    file(GLOB sources "${SOURCE_DIR}/${front_end}/*.h" "${SOURCE_DIR}/${front_end}/*.cpp")
    get_filename_component(own_folder "${front_end}" NAME)
    foreach(source IN LISTS sources)
        check_file("${source}" "${own_folder}" "${LIBRARY_FOLDERS}")
    endforeach()
endforeach()

if(failures)
    message(FATAL_ERROR "Headers included past their library's interface:${failures}")
endif()
message(STATUS "Every include of a library header goes through its public headers.")
