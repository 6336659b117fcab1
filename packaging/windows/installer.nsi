; build.sh runs it: makensis -DVERSION= -DKILOBYTES= -DOUT= -DFILES= -DDATA= installer.nsi
; FILES has the macros InstallFiles and RemoveFiles, DATA the icon and filetypes.nsh.
Target amd64-unicode
Unicode true
ManifestDPIAware true
SetCompressor /SOLID lzma
RequestExecutionLevel admin

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include x64.nsh
!include "${FILES}"
!include "${DATA}/filetypes.nsh"

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Spectrane"

Name "Spectrane ${VERSION}"
OutFile "${OUT}"
BrandingText " "
InstallDir "$PROGRAMFILES64\Spectrane"
InstallDirRegKey HKLM "Software\Spectrane" "InstallDir"

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Spectrane"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Spectrane setup"
VIAddVersionKey CompanyName "The Spectrane developers"
VIAddVersionKey LegalCopyright "2026 the Spectrane developers"

!define MUI_ICON "${DATA}/spectrane.ico"
!define MUI_UNICON "${DATA}/spectrane.ico"
!define MUI_FINISHPAGE_NOAUTOCLOSE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; A program that runs cannot be written over. In silence there is nobody to close it.
!macro WaitForProgram
  ${Do}
    ${IfNot} ${FileExists} "$INSTDIR\spectrane.exe"
      ${ExitDo}
    ${EndIf}
    ClearErrors
    FileOpen $0 "$INSTDIR\spectrane.exe" a
    ${IfNot} ${Errors}
      FileClose $0
      ${ExitDo}
    ${EndIf}
    ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Spectrane is running. Close it, then choose Retry." /SD IDCANCEL IDCANCEL`
      SetErrorLevel 2
      Abort "Spectrane is running."
    ${EndIf}
  ${Loop}
!macroend

; For all users. The program says the same for its own user at every start.
!macro AddType EXTENSION TYPE WORDS INDEX
  WriteRegStr HKLM "Software\Classes\${EXTENSION}" "" "${TYPE}"
  WriteRegStr HKLM "Software\Classes\${TYPE}" "" "${WORDS}"
  WriteRegStr HKLM "Software\Classes\${TYPE}\DefaultIcon" "" "$INSTDIR\icon.dll,${INDEX}"
  WriteRegStr HKLM "Software\Classes\${TYPE}\shell\open\command" "" '"$INSTDIR\spectrane.exe" "%1"'
!macroend

; Only what still leads to this program, in $1: another copy may have claimed the type since.
!macro RemoveTypeBelow ROOT EXTENSION TYPE
  ReadRegStr $0 ${ROOT} "Software\Classes\${TYPE}\shell\open\command" ""
  ${If} $0 == '"$1\spectrane.exe" "%1"'
    DeleteRegKey ${ROOT} "Software\Classes\${TYPE}"
    ReadRegStr $0 ${ROOT} "Software\Classes\${EXTENSION}" ""
    ${If} $0 == "${TYPE}"
      DeleteRegValue ${ROOT} "Software\Classes\${EXTENSION}" ""
      DeleteRegKey /ifempty ${ROOT} "Software\Classes\${EXTENSION}"
    ${EndIf}
  ${EndIf}
!macroend

!macro RemoveType EXTENSION TYPE WORDS INDEX
  !insertmacro RemoveTypeBelow HKLM "${EXTENSION}" "${TYPE}"
  !insertmacro RemoveTypeBelow HKCU "${EXTENSION}" "${TYPE}"
!macroend

Function .onInit
  SetRegView 64
FunctionEnd

Function un.onInit
  SetRegView 64
FunctionEnd

Section
  SetShellVarContext all
  !insertmacro WaitForProgram
  ; What an older version had and this one has not.
  ${If} ${FileExists} "$INSTDIR\uninstall.exe"
    ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
  ${EndIf}
  !insertmacro InstallFiles
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\Spectrane.lnk" "$INSTDIR\spectrane.exe"
  !insertmacro FileTypes AddType
  WriteRegStr HKLM "Software\Spectrane" "InstallDir" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "Spectrane"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayIcon" "$INSTDIR\spectrane.exe"
  WriteRegStr HKLM "${UNINSTALL}" "Publisher" "The Spectrane developers"
  WriteRegStr HKLM "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
  ${RefreshShellIcons}
SectionEnd

; Takes away what the installer brought, and folders that are empty then. What users keep stays: settings, journals and
; layouts in their own folders, and data files wherever they are.
Section Uninstall
  SetShellVarContext all
  !insertmacro WaitForProgram
  ; The folder as it was called then; the uninstaller may have been started by another name of it.
  ReadRegStr $1 HKLM "Software\Spectrane" "InstallDir"
  !insertmacro FileTypes RemoveType
  !insertmacro RemoveFiles
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Spectrane.lnk"
  DeleteRegKey HKLM "${UNINSTALL}"
  DeleteRegValue HKLM "Software\Spectrane" "InstallDir"
  DeleteRegKey /ifempty HKLM "Software\Spectrane"
  ${RefreshShellIcons}
SectionEnd
