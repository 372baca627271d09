# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Every library of src/ is included by its folder's name ("files/filepaths.h",
# "convert/convert.h"), so one include root serves them all. Each library
# names the headers other targets may include; brevio_check_includes holds the
# front ends to that list.

# brevio_library_headers(TARGET FOLDER HEADER...)
function(brevio_library_headers target folder)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    set(public "")
    foreach(header IN LISTS ARGN)
        list(APPEND public "${folder}/${header}")
    endforeach()
    set_property(GLOBAL APPEND PROPERTY BREVIO_PUBLIC_HEADERS ${public})
    set_property(GLOBAL APPEND PROPERTY BREVIO_LIBRARY_FOLDERS ${folder})
endfunction()
