; The Windows installer. tools/package.sh calls makensis with
;   VERSION   the product's version, "1.2.3"
;   FOLDER    the folder of files to install, as the zip file holds them
;   FILES     a generated list of instructions: File and Delete lines for exactly those files
;   OUTPUT    where the installer goes
;   ICON      the program's icon
;   STRIP     a picture of 164 x 314 pixels for the first and the last page
;
; Switches of the installer besides NSIS' own (/S silent, /D=FOLDER):
;   /ALLUSERS     for all users of the machine (needs the rights of an administrator); otherwise for this user
;   /ASSOCIATE    project files (*.gmp) open with a double click
;   /DESKTOP      a link on the desktop
; Exit codes: 0 done, 1 cancelled, 2 failed or the program is running.

Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true

!define PRODUCT "Glimmerpad"
!define WINDOWS "Software\Microsoft\Windows\CurrentVersion"
!define UNINSTALL "${WINDOWS}\Uninstall\${PRODUCT}"
!define APP_PATHS "${WINDOWS}\App Paths\glimmerpad.exe"
!define PROJECT_CLASS "Glimmerpad.Project"

Name "${PRODUCT}"
OutFile "${OUTPUT}"
BrandingText "${PRODUCT} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PRODUCT}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "${PRODUCT} Setup"
VIAddVersionKey "LegalCopyright" ""

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${STRIP}"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${STRIP}"
!define MUI_WELCOMEPAGE_TEXT "This installs ${PRODUCT} ${VERSION}: the program, and the library that browser add-ons load.$\r$\n$\r$\nClose browsers that use an earlier version."
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\glimmerpad.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start ${PRODUCT}"

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A file that a program holds open can be neither replaced nor removed: said before anything is touched.
!macro REFUSE_WHILE_IN_USE FILE
    ${If} ${FileExists} "$INSTDIR\${FILE}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${FILE}" a
        ${If} ${Errors}
            MessageBox MB_OK|MB_ICONEXCLAMATION "${PRODUCT} is in use. Close it, and the browsers that use it, and try again." /SD IDOK
            SetErrorLevel 2
            Quit
        ${EndIf}
        FileClose $0
    ${EndIf}
!macroend

Section "${PRODUCT}" program
    SectionIn RO
    SetOutPath "$INSTDIR"
    !insertmacro REFUSE_WHILE_IN_USE "glimmerpad.dll"
    !insertmacro REFUSE_WHILE_IN_USE "glimmerpad.exe"
    ClearErrors
    !define INSTALL_FILES
    !include "${FILES}"
    !undef INSTALL_FILES
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONSTOP "The files cannot be written to $INSTDIR." /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateDirectory "$SMPROGRAMS"
    CreateShortcut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\glimmerpad.exe"

    WriteRegStr SHCTX "${APP_PATHS}" "" "$INSTDIR\glimmerpad.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "${PRODUCT}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "${PRODUCT}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\glimmerpad.exe,0"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
    SectionGetSize ${program} $0
    WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" $0
SectionEnd

Section /o "Link on the desktop" desktop
    CreateShortcut "$DESKTOP\${PRODUCT}.lnk" "$INSTDIR\glimmerpad.exe"
    ; The uninstaller removes the link only if the installer made it.
    WriteRegDWORD SHCTX "${UNINSTALL}" "DesktopLink" 1
SectionEnd

Section /o "Open project files (*.gmp) with ${PRODUCT}" associate
    ReadRegStr $0 SHCTX "Software\Classes\.gmp" ""
    ${If} $0 != "${PROJECT_CLASS}"
        WriteRegStr SHCTX "${UNINSTALL}" "FormerProjectClass" "$0"
    ${EndIf}
    WriteRegStr SHCTX "Software\Classes\.gmp" "" "${PROJECT_CLASS}"
    WriteRegStr SHCTX "Software\Classes\${PROJECT_CLASS}" "" "${PRODUCT} project"
    WriteRegStr SHCTX "Software\Classes\${PROJECT_CLASS}\DefaultIcon" "" "$INSTDIR\glimmerpad.exe,0"
    WriteRegStr SHCTX "Software\Classes\${PROJECT_CLASS}\shell\open\command" "" '"$INSTDIR\glimmerpad.exe" "%1"'
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${program} "The program and the library that browser add-ons load."
    !insertmacro MUI_DESCRIPTION_TEXT ${desktop} "A link to the program on the desktop."
    !insertmacro MUI_DESCRIPTION_TEXT ${associate} "A double click on a project file opens it. Picture files stay with their programs."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

!macro SWITCH_SELECTS SWITCH SECTION
    ClearErrors
    ${GetOptions} $R0 "${SWITCH}" $R1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${SECTION}
    ${EndIf}
!macroend

Function .onInit
    ${GetParameters} $R0
    ClearErrors
    ${GetOptions} $R0 "/ALLUSERS" $R1
    ${If} ${Errors}
        SetShellVarContext current
        StrCpy $R2 "$LOCALAPPDATA\Programs\${PRODUCT}"
    ${Else}
        UserInfo::GetAccountType
        Pop $R1
        ${If} $R1 != "Admin"
            MessageBox MB_OK|MB_ICONSTOP "Installing for all users needs the rights of an administrator." /SD IDOK
            SetErrorLevel 2
            Quit
        ${EndIf}
        SetShellVarContext all
        StrCpy $R2 "$PROGRAMFILES32\${PRODUCT}"
    ${EndIf}
    ; A folder given with /D, or the place of the version that is there, wins.
    ${If} $INSTDIR == ""
        ReadRegStr $INSTDIR SHCTX "${UNINSTALL}" "InstallLocation"
    ${EndIf}
    ${If} $INSTDIR == ""
        StrCpy $INSTDIR $R2
    ${EndIf}
    !insertmacro SWITCH_SELECTS "/DESKTOP" ${desktop}
    !insertmacro SWITCH_SELECTS "/ASSOCIATE" ${associate}
FunctionEnd

Function un.onInit
    ; Whose installation this is, its registry entry tells.
    SetShellVarContext current
    ReadRegStr $R0 SHCTX "${UNINSTALL}" "InstallLocation"
    ${If} $R0 != $INSTDIR
        SetShellVarContext all
    ${EndIf}
FunctionEnd

Section "Uninstall"
    !insertmacro REFUSE_WHILE_IN_USE "glimmerpad.dll"
    !insertmacro REFUSE_WHILE_IN_USE "glimmerpad.exe"

    ReadRegStr $0 SHCTX "Software\Classes\.gmp" ""
    ${If} $0 == "${PROJECT_CLASS}"
        ReadRegStr $1 SHCTX "${UNINSTALL}" "FormerProjectClass"
        ${If} $1 == ""
            DeleteRegValue SHCTX "Software\Classes\.gmp" ""
            DeleteRegKey /ifempty SHCTX "Software\Classes\.gmp"
        ${Else}
            WriteRegStr SHCTX "Software\Classes\.gmp" "" "$1"
        ${EndIf}
        System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
    ${EndIf}
    DeleteRegKey SHCTX "Software\Classes\${PROJECT_CLASS}"
    ReadRegDWORD $0 SHCTX "${UNINSTALL}" "DesktopLink"
    ${If} $0 = 1
        Delete "$DESKTOP\${PRODUCT}.lnk"
    ${EndIf}
    Delete "$SMPROGRAMS\${PRODUCT}.lnk"
    DeleteRegKey SHCTX "${APP_PATHS}"
    DeleteRegKey SHCTX "${UNINSTALL}"
    ; A user's registry has these two only once a program was installed for that user.
    DeleteRegKey /ifempty HKCU "${WINDOWS}\App Paths"
    DeleteRegKey /ifempty HKCU "${WINDOWS}\Uninstall"

    !define UNINSTALL_FILES
    !include "${FILES}"
    !undef UNINSTALL_FILES
    Delete "$INSTDIR\uninstall.exe"
    ; Only when empty: what the user put there stays.
    RMDir "$INSTDIR"
SectionEnd
