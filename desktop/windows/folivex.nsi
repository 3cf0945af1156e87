; The installer. Made by make-installer, which defines VERSION, STAGE (the tree to install), LISTS (what to lay down and
; what to take away, a line each) and OUTPUT.
;
;   folivex-VERSION-setup.exe [/S] [/AllUsers | /CurrentUser] [/D=FOLDER]
;
; An administrator installs for all users unless told otherwise, anybody else for himself. /S asks nothing; the exit
; code is 0, or 2 when nothing was done. An older version in the same folder is taken away first.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
Name "Folivex"
BrandingText "Folivex ${VERSION}"
OutFile "${OUTPUT}"
ManifestSupportedOS all
ManifestDPIAware true

!define WINDOWS "Software\Microsoft\Windows\CurrentVersion"
!define UNINSTALL "${WINDOWS}\Uninstall\Folivex"
!define APP_PATHS "${WINDOWS}\App Paths\Folivex.exe"
!define CLASSES "Software\Classes"

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR Folivex
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME InstallLocation
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME InstallLocation
!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh

!define MUI_ICON "${__FILEDIR__}/folivex.ico"
!define MUI_UNICON "${__FILEDIR__}/folivex.ico"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\folivex.exe"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${STAGE}\LICENSE.txt"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

!macro RefuseWhileRunning
  ; A program that runs cannot be written.
  ${If} ${FileExists} "$INSTDIR\folivex.exe"
    ClearErrors
    FileOpen $0 "$INSTDIR\folivex.exe" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "Folivex is running, or $INSTDIR cannot be written. Close it and try again." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

!macro TellDesktop
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)' ; SHCNE_ASSOCCHANGED
!macroend

; KIND is what a file is to the desktop: its name, and what opens it.
!macro WriteKind KIND NAME
  WriteRegStr SHCTX "${CLASSES}\${KIND}" "" "${NAME}"
  WriteRegStr SHCTX "${CLASSES}\${KIND}\DefaultIcon" "" '"$INSTDIR\folivex.exe",0'
  WriteRegStr SHCTX "${CLASSES}\${KIND}\shell\open\command" "" '"$INSTDIR\folivex.exe" --open "%1"'
!macroend

Function .onInit
  StrCpy $1 $INSTDIR ; of /D, which what follows forgets
  !insertmacro MULTIUSER_INIT
  ${If} $1 != ""
    StrCpy $INSTDIR $1
  ${EndIf}
FunctionEnd

Function un.onInit
  !insertmacro MULTIUSER_UNINIT
FunctionEnd

Section
  !insertmacro RefuseWhileRunning
  ${If} ${FileExists} "$INSTDIR\uninstall.exe"
    ; With "_?" it waits for its own end, and leaves itself, which is written anew.
    ExecWait '"$INSTDIR\uninstall.exe" /S /$MultiUser.InstallMode _?=$INSTDIR' $0
    ${If} $0 <> 0
      MessageBox MB_OK|MB_ICONSTOP "The older version in $INSTDIR could not be taken away." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
  ${EndIf}

  !include "${LISTS}\lay-down.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortCut "$SMPROGRAMS\Folivex.lnk" "$INSTDIR\folivex.exe" "" "" "" SW_SHOWNORMAL "" "Split a large PDF into one PDF for each document in it"

  WriteRegStr SHCTX "${APP_PATHS}" "" "$INSTDIR\folivex.exe"
  WriteRegStr SHCTX "${APP_PATHS}" "Path" "$INSTDIR"

  !insertmacro WriteKind "Folivex.Setup" "Folivex setup"
  WriteRegStr SHCTX "${CLASSES}\.fxs" "" "Folivex.Setup"
  WriteRegStr SHCTX "${CLASSES}\.fxs\OpenWithProgids" "Folivex.Setup" ""
  ; One of those that a person may choose for a PDF, never the one that opens it unasked.
  !insertmacro WriteKind "Folivex.Pdf" "PDF document"
  WriteRegStr SHCTX "${CLASSES}\.pdf\OpenWithProgids" "Folivex.Pdf" ""
  !insertmacro WriteKind "Applications\folivex.exe" "Folivex"
  WriteRegStr SHCTX "${CLASSES}\Applications\folivex.exe" "FriendlyAppName" "Folivex"
  WriteRegStr SHCTX "${CLASSES}\Applications\folivex.exe\SupportedTypes" ".pdf" ""
  WriteRegStr SHCTX "${CLASSES}\Applications\folivex.exe\SupportedTypes" ".fxs" ""

  WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "Folivex"
  WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" '"$INSTDIR\folivex.exe",0'
  WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "The Folivex developers"
  WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  IntFmt $0 "0x%08X" $0
  WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" "$0"
  WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
  !insertmacro TellDesktop
SectionEnd

; What somebody else put into the folder stays, and the folder with it.
Section un.
  !insertmacro RefuseWhileRunning
  Delete "$SMPROGRAMS\Folivex.lnk"
  Delete "$INSTDIR\uninstall.exe"
  !include "${LISTS}\take-away.nsh"
  RMDir "$INSTDIR"

  DeleteRegKey SHCTX "${APP_PATHS}"
  DeleteRegKey SHCTX "${CLASSES}\Folivex.Setup"
  DeleteRegKey SHCTX "${CLASSES}\Folivex.Pdf"
  DeleteRegKey SHCTX "${CLASSES}\Applications\folivex.exe"
  DeleteRegValue SHCTX "${CLASSES}\.pdf\OpenWithProgids" "Folivex.Pdf"
  DeleteRegKey /ifempty SHCTX "${CLASSES}\.pdf\OpenWithProgids"
  DeleteRegKey /ifempty SHCTX "${CLASSES}\.pdf"
  DeleteRegValue SHCTX "${CLASSES}\.fxs\OpenWithProgids" "Folivex.Setup"
  DeleteRegKey /ifempty SHCTX "${CLASSES}\.fxs\OpenWithProgids"
  ReadRegStr $0 SHCTX "${CLASSES}\.fxs" ""
  ${If} $0 == "Folivex.Setup"
    DeleteRegValue SHCTX "${CLASSES}\.fxs" ""
  ${EndIf}
  DeleteRegKey /ifempty SHCTX "${CLASSES}\.fxs"
  DeleteRegKey SHCTX "${UNINSTALL}"
  ; What every machine has for all users, one user may have had none of.
  ${If} $MultiUser.InstallMode == "CurrentUser"
    DeleteRegKey /ifempty HKCU "${CLASSES}\Applications"
    DeleteRegKey /ifempty HKCU "${WINDOWS}\App Paths"
    DeleteRegKey /ifempty HKCU "${WINDOWS}\Uninstall"
  ${EndIf}
  !insertmacro TellDesktop
SectionEnd
