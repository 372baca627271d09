# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Run after the window's suites: they ran with HOME at this folder, and the
# configuration folder there must hold nothing. Settings of a test (the file
# dialogs' history) belong in QStandardPaths' test folder (~/.qttest).
#   cmake -DHOME=FOLDER -P check-window-home.cmake
file(GLOB_RECURSE written LIST_DIRECTORIES false "${HOME}/.config/*")
if(written)
    string(REPLACE ";" "\n  " listed "${written}")
    message(FATAL_ERROR "the window's tests wrote into the user's configuration:\n  ${listed}")
endif()
message(STATUS "nothing written into ${HOME}/.config")
