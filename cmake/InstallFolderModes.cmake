# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Folders "cmake --install" creates are open to everyone (0755) whatever the
# installing user's umask. CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS alone
# does not do it: CMake creates the folders with mkdir(), which the umask
# still narrows (0700 under umask 077). So the first install rule notes which
# of the install's folders do not exist yet, and the last one opens exactly
# those; folders that were there before keep their modes.
#
# brevio_note_new_install_folders(FOLDER...)  first, before any other rule
# brevio_open_new_install_folders()           last, after every other rule
# FOLDER is relative to the install prefix.

function(brevio_note_new_install_folders)
    install(CODE "
        set(_brevio_new_folders)
        foreach(_folder ${ARGN})
            set(_path \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${_folder}\")
            while(NOT EXISTS \"\${_path}\" AND NOT _path STREQUAL \"/\" AND NOT _path STREQUAL \"\")
                list(APPEND _brevio_new_folders \"\${_path}\")
                get_filename_component(_path \"\${_path}\" DIRECTORY)
            endwhile()
        endforeach()
        list(REMOVE_DUPLICATES _brevio_new_folders)
    ")
endfunction()

function(brevio_open_new_install_folders)
    install(CODE "
        foreach(_path IN LISTS _brevio_new_folders)
            if(IS_DIRECTORY \"\${_path}\")
                file(CHMOD \"\${_path}\" DIRECTORY_PERMISSIONS
                     OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                     WORLD_READ WORLD_EXECUTE)
            endif()
        endforeach()
    ")
endfunction()
