Target amd64-unicode
; Installs per user, without elevation. /S installs and uninstalls silently. /D=FOLDER (last, unquoted) sets the folder.
; The uninstaller removes the program, its shortcut, its window settings and its session marker. It keeps the database
; key under the local application data, because the interface's database can't be opened without it.

!include "${FILES}"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vantro"

Name "Vantro ${VERSION}"
OutFile "${OUTPUT}"
Icon "${ICON}"
UninstallIcon "${ICON}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Vantro"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
SetCompressor /SOLID lzma
SetDateSave off
ShowInstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Vantro"
VIAddVersionKey "FileDescription" "Vantro installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "The Vantro developers"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section "Vantro"
  SetShellVarContext current
  !insertmacro InstallFiles
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\Vantro.lnk" "$INSTDIR\vantro.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Vantro"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\vantro.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  SetShellVarContext current
  !insertmacro RemoveFiles
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Vantro.lnk"
  Delete "$TEMP\vantro_windows_fullscreen_native_marker.txt"
  DeleteRegKey HKCU "Software\Vantro"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd
