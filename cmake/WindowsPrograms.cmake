# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# What a Windows program of Brevio's needs beyond its sources: a version
# resource (and the icon for the window's program), the C and C++ runtimes
# linked in, and the static Qt's plugins it loads.

# brevio_windows_program(TARGET DESCRIPTION [ICON])
function(brevio_windows_program target description)
    set(BREVIO_RC_NAME ${target})
    set(BREVIO_RC_DESCRIPTION "${description}")
    if(ARGV2)
        set(BREVIO_RC_ICON "1 ICON \"${ARGV2}\"")
    else()
        set(BREVIO_RC_ICON "")
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/resources/windows/brevio.rc.in
                   ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    # No DLL beside the program: libgcc, libstdc++ and winpthread are in it.
    target_link_options(${target} PRIVATE -static -static-libgcc -static-libstdc++)
    # The windows plugin comes with a static Qt by default; offscreen is
    # what brevio-convert and the headless checks draw with.
    qt5_import_plugins(${target} INCLUDE Qt5::QWindowsIntegrationPlugin
                       Qt5::QOffscreenIntegrationPlugin Qt5::QWindowsPrinterSupportPlugin)
endfunction()
