# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# The resource collection as rcc generated it for this build: its data is
# registered in format version 2.
#   cmake -DAUTOGEN_DIR=<brevio_rsc_autogen folder> -P check-rcc-format.cmake
file(GLOB_RECURSE generated "${AUTOGEN_DIR}/qrc_rsc.cpp")
list(LENGTH generated count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "expected one qrc_rsc.cpp under ${AUTOGEN_DIR}, found: ${generated}")
endif()
file(STRINGS "${generated}" versions REGEX "^ *int version = [0-9]+;")
if(NOT versions)
    message(FATAL_ERROR "no registration with a format version in ${generated}")
endif()
foreach(line IN LISTS versions)
    if(NOT line MATCHES "int version = 2;")
        message(FATAL_ERROR "resources registered as \"${line}\", not format version 2")
    endif()
endforeach()
message(STATUS "resource data in format version 2 (${generated})")
