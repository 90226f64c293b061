; Installs Brackwell for one user, or with /ALLUSERS, started by an administrator, for all. /S asks nothing and /D=FOLDER,
; last and without quotes, says where. tools/windows/pack gives VERSION, HOMEPAGE, STAGE (the files), ICON and
; OUTPUT.
;
; Stylesheets are the user's to change: one that was changed is kept beside the new one as NAME.old, and stays when the
; program goes. Whatever else is in the folder is not the installer's.

Target amd64-unicode
Unicode true
Name "Brackwell"
OutFile "${OUTPUT}"
SetCompressor /SOLID lzma
RequestExecutionLevel user
InstallDir ""
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Brackwell"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileDescription "Brackwell Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "Copyright 2026 The Brackwell developers"

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include TextFunc.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Brackwell"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\brackwell.exe"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Functions of the installer, and with another name of the uninstaller.
!macro FUNCTIONS UN
  ; Whether the files $R0 and $R1 have the same lines: $R2 is 1, else 0.
  Function ${UN}CompareFiles
    StrCpy $R2 0
    ${If} ${FileExists} "$R0"
    ${AndIf} ${FileExists} "$R1"
      StrCpy $R2 1
      ${TextCompareS} "$R0" "$R1" "FastDiff" "${UN}FoundDifference"
      ${TextCompareS} "$R1" "$R0" "FastDiff" "${UN}FoundDifference"
    ${EndIf}
  FunctionEnd
  Function ${UN}FoundDifference
    StrCpy $R2 0
    StrCpy $0 "StopTextCompare"
    Push $0
  FunctionEnd

  ; A program that runs can be neither replaced nor removed: said before anything is changed.
  Function ${UN}RemoveProgram
    ClearErrors
    Delete "$INSTDIR\brackwell.exe"
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "Brackwell is running. Please close it and try again." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
  FunctionEnd
!macroend
!insertmacro FUNCTIONS ""
!insertmacro FUNCTIONS "un."

Function .onInit
  SetShellVarContext current
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/ALLUSERS" $1
  ${IfNot} ${Errors}
    UserInfo::GetAccountType
    Pop $1
    ${If} $1 != "Admin"
      MessageBox MB_OK|MB_ICONSTOP "Only an administrator can install Brackwell for all users." /SD IDOK
      SetErrorLevel 1
      Quit
    ${EndIf}
    SetShellVarContext all
    StrCpy $1 "$PROGRAMFILES64\Brackwell"
  ${Else}
    StrCpy $1 "$LOCALAPPDATA\Programs\Brackwell"
  ${EndIf}
  ; Where it is told to go, else where the program is already.
  ${If} $INSTDIR == ""
    ReadRegStr $INSTDIR SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${EndIf}
  ${If} $INSTDIR == ""
    StrCpy $INSTDIR $1
  ${EndIf}
FunctionEnd

; The new one takes the place of an older one that may have been changed.
!macro INSTALL_STYLESHEET NAME
  InitPluginsDir
  File "/oname=$PLUGINSDIR\${NAME}" "${STAGE}\xml\${NAME}"
  StrCpy $R0 "$INSTDIR\xml\${NAME}"
  StrCpy $R1 "$PLUGINSDIR\${NAME}"
  Call CompareFiles
  ${If} ${FileExists} "$INSTDIR\xml\${NAME}"
  ${AndIf} $R2 = 0
    Delete "$INSTDIR\xml\${NAME}.old"
    Rename "$INSTDIR\xml\${NAME}" "$INSTDIR\xml\${NAME}.old"
    DetailPrint "The stylesheet that was there is now ${NAME}.old"
  ${EndIf}
  SetOutPath "$INSTDIR\xml"
  File "${STAGE}\xml\${NAME}"
!macroend

!macro REMOVE_STYLESHEET NAME
  InitPluginsDir
  File "/oname=$PLUGINSDIR\${NAME}" "${STAGE}\xml\${NAME}"
  StrCpy $R0 "$INSTDIR\xml\${NAME}"
  StrCpy $R1 "$PLUGINSDIR\${NAME}"
  Call un.CompareFiles
  ${If} $R2 = 1
    Delete "$INSTDIR\xml\${NAME}"
  ${EndIf}
!macroend

Section
  Call RemoveProgram
  SetOutPath "$INSTDIR"
  File "${STAGE}\brackwell.exe"
  File "${STAGE}\Brackwell.chm"
  SetOutPath "$INSTDIR\images"
  File "${STAGE}\images\*.gif"
  SetOutPath "$INSTDIR\licenses"
  File "${STAGE}\licenses\*.txt"
  !insertmacro INSTALL_STYLESHEET dir_display_html.xsl
  !insertmacro INSTALL_STYLESHEET dir_display_text.xsl
  SetOutPath "$INSTDIR"
  CreateShortcut "$SMPROGRAMS\Brackwell.lnk" "$INSTDIR\brackwell.exe"

  WriteUninstaller "$INSTDIR\uninstall.exe"
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "Brackwell"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "The Brackwell developers"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "URLInfoAbout" "${HOMEPAGE}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\brackwell.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" "$0"
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Function un.onInit
  SetShellVarContext all
  ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 != $INSTDIR
    SetShellVarContext current
  ${EndIf}
FunctionEnd

Section Uninstall
  Call un.RemoveProgram
  Delete "$INSTDIR\Brackwell.chm"
  !insertmacro REMOVE_STYLESHEET dir_display_html.xsl
  !insertmacro REMOVE_STYLESHEET dir_display_text.xsl
  Delete "$INSTDIR\images\ico*.gif"
  Delete "$INSTDIR\licenses\*.txt"
  SetOutPath "$TEMP"  ; a folder in which somebody stands cannot be removed
  RMDir "$INSTDIR\xml"
  RMDir "$INSTDIR\images"
  RMDir "$INSTDIR\licenses"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Brackwell.lnk"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
SectionEnd
