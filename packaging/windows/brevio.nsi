; SPDX-FileCopyrightText: 2026 The Brevio developers
; SPDX-License-Identifier: GPL-3.0-or-later
; The Windows setup program: both programs into a folder of the user's own
; (no administrator rights), a Start-menu entry for the window, the licence
; page, an uninstaller named uninstall.exe in the installation folder, and
; on request brevio-convert on the user's PATH. package-windows.sh runs
;   makensis -DVERSION=... -DPROGRAMS=... -DLICENSE=... -DREADME=... -DICON=...
;            -DOUTFILE=... brevio.nsi
; Silent: setup.exe /S [/PATH] [/D=FOLDER], and uninstall.exe /S.
; A 64-bit installer, so that wine64 alone can run it.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma

!include "MUI2.nsh"
!include "WordFunc.nsh"
!include "WinMessages.nsh"
!include "FileFunc.nsh"
!include "Sections.nsh"

Name "Brevio ${VERSION}"
OutFile "${OUTFILE}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Brevio"
InstallDirRegKey HKCU "Software\Brevio" "InstallFolder"
BrandingText "Brevio ${VERSION}"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Brevio"
!define ENVIRONMENT_KEY "Environment"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!insertmacro MUI_PAGE_LICENSE "${LICENSE}"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "German"
!insertmacro MUI_LANGUAGE "English"

Section "Brevio" SectionPrograms
    SectionIn RO
    SetShellVarContext current
    SetOutPath "$INSTDIR"
    File "${PROGRAMS}\brevio.exe"
    File "${PROGRAMS}\brevio-convert.exe"
    File "/oname=LICENSE.txt" "${LICENSE}"
    File "/oname=README.md" "${README}"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortcut "$SMPROGRAMS\Brevio.lnk" "$INSTDIR\brevio.exe"
    WriteRegStr HKCU "Software\Brevio" "InstallFolder" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Brevio"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "The Brevio developers"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\brevio.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

; brevio-convert from any console: the installation folder joins the
; user's own PATH (not the machine's, which needs an administrator).
Section /o "brevio-convert im PATH" SectionPath
    ReadRegStr $0 HKCU "${ENVIRONMENT_KEY}" "Path"
    ${WordFind} "$0" ";" "E/$INSTDIR" $1
    IfErrors 0 done
    StrCmp $0 "" 0 +3
    WriteRegExpandStr HKCU "${ENVIRONMENT_KEY}" "Path" "$INSTDIR"
    Goto written
    WriteRegExpandStr HKCU "${ENVIRONMENT_KEY}" "Path" "$0;$INSTDIR"
  written:
    WriteRegDWORD HKCU "Software\Brevio" "OnPath" 1
    SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=2000
  done:
SectionEnd

; A silent installation puts brevio-convert on the PATH when asked with
; /PATH (before /D=..., which has to come last).
Function .onInit
    ${GetParameters} $R0
    ClearErrors
    ${GetOptions} $R0 "/PATH" $R1
    IfErrors +2
    SectionSetFlags ${SectionPath} ${SF_SELECTED}
FunctionEnd

Section "Uninstall"
    SetShellVarContext current
    Delete "$INSTDIR\brevio.exe"
    Delete "$INSTDIR\brevio-convert.exe"
    Delete "$INSTDIR\LICENSE.txt"
    Delete "$INSTDIR\README.md"
    Delete "$SMPROGRAMS\Brevio.lnk"
    ReadRegDWORD $2 HKCU "Software\Brevio" "OnPath"
    StrCmp $2 1 0 path_done
    ReadRegStr $0 HKCU "${ENVIRONMENT_KEY}" "Path"
    ${un.WordReplace} "$0" ";$INSTDIR" "" "+" $1
    ${un.WordReplace} "$1" "$INSTDIR;" "" "+" $1
    StrCmp $1 "$INSTDIR" 0 +2
    StrCpy $1 ""
    WriteRegExpandStr HKCU "${ENVIRONMENT_KEY}" "Path" "$1"
    SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=2000
  path_done:
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    DeleteRegKey HKCU "Software\Brevio"
    Delete "$INSTDIR\uninstall.exe"
    ; Only an empty folder goes: whatever the user put there stays.
    RMDir "$INSTDIR"
SectionEnd
