; The Windows installer. tools/package.sh calls makensis with
;   VERSION   the product's version, "1.2.3"
;   FOLDER    the folder of files to install, as the zip file holds them
;   FILES     a generated list of instructions: File and Delete lines for exactly those files
;   OUTPUT    where the installer goes
;   ICON      the program's icon
;   STRIP     a picture of 164 x 314 pixels for the first and the last page
;   COPYRIGHT as the programs' own version information has it
;   SIGN      the command that signs a file, if there is a certificate
;   PRETEND_USER  for tests where everybody is an administrator: this one has rights only after having asked for them
;
; Switches of the installer besides NSIS' own (/S silent, /D=FOLDER):
;   /ALLUSERS     for all users of the machine; asks for the rights of an administrator when it has none
;   /ASSOCIATE    project files (*.gmp) open with a double click
;   /DESKTOP      a link on the desktop
;   /ELEVATED     only for itself: rights were asked for
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
VIAddVersionKey "CompanyName" "${PRODUCT}"
VIAddVersionKey "LegalCopyright" "${COPYRIGHT}"
!ifdef SIGN
!uninstfinalize '${SIGN} "%1"'
!endif

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh
!include nsDialogs.nsh
!include "${__FILEDIR__}/elevation.nsh"

!define CAPABILITIES "Software\${PRODUCT}\Capabilities"

Var allUsers     ; "1" or ""
Var givenFolder  ; of /D
Var everybody    ; the button for all users

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${STRIP}"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${STRIP}"
!define MUI_WELCOMEPAGE_TEXT "This installs ${PRODUCT} ${VERSION}: the program, and the library that browser add-ons load.$\r$\n$\r$\nClose browsers that use an earlier version."
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION StartProgram
!define MUI_FINISHPAGE_RUN_TEXT "Start ${PRODUCT}"
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Pictures, settings, copies that were mailed or published and captures kept for a recovery stay: in %APPDATA% and %LOCALAPPDATA%, folders Glimmerpad and Vistrane."

!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipWhenElevated
!insertmacro MUI_PAGE_WELCOME
Page custom ChooseUsers LeaveUsers
!define MUI_PAGE_CUSTOMFUNCTION_SHOW NoWayBackWhenElevated
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE LeaveDirectory
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

!macro FAIL TEXT
    MessageBox MB_OK|MB_ICONEXCLAMATION "${TEXT}" /SD IDOK
    SetErrorLevel 2
    Quit
!macroend

; A file that a program holds open, or that is not ours to change, can be neither replaced nor removed: said before
; anything is touched.
!macro REFUSE_WHAT_CANNOT_BE_CHANGED FILE
    ${If} ${FileExists} "$INSTDIR\${FILE}"
        System::Call 'kernel32::CreateFileW(w "$INSTDIR\${FILE}", i 0x40000000, i 7, p 0, i 3, i 0, p 0) p .r0 ?e'
        Pop $1
        ${If} $0 <> -1
            System::Call 'kernel32::CloseHandle(p r0)'
        ${ElseIf} $1 = 32  ; ERROR_SHARING_VIOLATION
            !insertmacro FAIL "${PRODUCT} is in use. Close it, and the browsers that use it, and try again."
        ${ElseIf} $1 = 5  ; ERROR_ACCESS_DENIED
            !insertmacro FAIL "You may not change the file $INSTDIR\${FILE}. Ask an administrator of this computer."
        ${Else}
            !insertmacro FAIL "The file $INSTDIR\${FILE} cannot be changed (error $1)."
        ${EndIf}
    ${EndIf}
!macroend

!macro REFUSE_FOREIGN FILE
    ${If} ${FileExists} "$INSTDIR\${FILE}"
        !insertmacro FAIL "There is a file $INSTDIR\${FILE} already, which is not ${PRODUCT}'s. Choose another folder."
    ${EndIf}
!macroend

Section "${PRODUCT}" program
    SectionIn RO
    !insertmacro REFUSE_WHAT_CANNOT_BE_CHANGED "glimmerpad.dll"
    !insertmacro REFUSE_WHAT_CANNOT_BE_CHANGED "glimmerpad.exe"
    !insertmacro REFUSE_WHAT_CANNOT_BE_CHANGED "uninstall.exe"
    ; What lies in a folder that is not ours yet is somebody else's.
    Call IsOurs
    Pop $0
    ${If} $0 == ""
        !define FOREIGN_FILES
        !include "${FILES}"
        !undef FOREIGN_FILES
        !insertmacro REFUSE_FOREIGN "uninstall.exe"
    ${EndIf}
    ${If} $allUsers == 1
        Call CloseToOthers
    ${EndIf}
    SetOutPath "$INSTDIR"
    ; First, so that what is interrupted can be removed or done again.
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    ClearErrors
    ; Here as with the other files: a file that is written over keeps its owner and rights, a new one has the folder's.
    Delete "$INSTDIR\uninstall.exe"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    !define INSTALL_FILES
    !include "${FILES}"
    !undef INSTALL_FILES
    ${If} ${Errors}
        !insertmacro FAIL "The files cannot be written to $INSTDIR."
    ${EndIf}
    SetOutPath "$INSTDIR"
    CreateDirectory "$SMPROGRAMS"
    CreateShortcut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\glimmerpad.exe"

    WriteRegStr SHCTX "${APP_PATHS}" "" "$INSTDIR\glimmerpad.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "${PRODUCT}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "${PRODUCT}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\glimmerpad.exe,0"
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
    ; Where another program has a claim too, the system lets the user choose: here, and in the settings' default apps.
    WriteRegStr SHCTX "Software\Classes\.gmp\OpenWithProgids" "${PROJECT_CLASS}" ""
    WriteRegStr SHCTX "${CAPABILITIES}" "ApplicationName" "${PRODUCT}"
    WriteRegStr SHCTX "${CAPABILITIES}" "ApplicationDescription" "Captures pages and draws on them"
    WriteRegStr SHCTX "${CAPABILITIES}" "ApplicationIcon" "$INSTDIR\glimmerpad.exe,0"
    WriteRegStr SHCTX "${CAPABILITIES}\FileAssociations" ".gmp" "${PROJECT_CLASS}"
    WriteRegStr SHCTX "Software\RegisteredApplications" "${PRODUCT}" "${CAPABILITIES}"
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

!insertmacro ELEVATION_FUNCTIONS ""
!insertmacro ELEVATION_FUNCTIONS "un."

; Whose registry and menus, and which folder.
Function UseContext
    StrCpy $INSTDIR $givenFolder
    ${If} $allUsers == 1
        SetShellVarContext all
        StrCpy $R2 "$PROGRAMFILES32\${PRODUCT}"
    ${Else}
        SetShellVarContext current
        StrCpy $R2 "$LOCALAPPDATA\Programs\${PRODUCT}"
    ${EndIf}
    ; A folder given with /D, or the place of the version that is there, wins.
    ${If} $INSTDIR == ""
        ReadRegStr $INSTDIR SHCTX "${UNINSTALL}" "InstallLocation"
    ${EndIf}
    ${If} $INSTDIR == ""
        StrCpy $INSTDIR $R2
    ${EndIf}
    Call UseOwnFolder
FunctionEnd

; Whether $INSTDIR holds an earlier version: "1" on the stack, else "". Any user can put files of our names into a folder;
; for all users only what an administrator has noted down counts.
Function IsOurs
    Push $0
    ReadRegStr $0 SHCTX "${UNINSTALL}" "InstallLocation"
    ${If} $0 == $INSTDIR
    ${AndIf} $INSTDIR != ""
        StrCpy $0 1
    ${ElseIf} $allUsers != 1
    ${AndIf} ${FileExists} "$INSTDIR\uninstall.exe"
    ${AndIf} ${FileExists} "$INSTDIR\glimmerpad.dll"
        StrCpy $0 1
    ${Else}
        StrCpy $0 ""
    ${EndIf}
    Exch $0
FunctionEnd

; A folder with something in it that is not ours: a folder of our own in it.
Function UseOwnFolder
    Push $0
    Push $1
    Call IsOurs
    Pop $0
    ${GetFileName} "$INSTDIR" $1
    ${If} $0 == ""
    ${AndIf} $1 != "${PRODUCT}"
        ${DirState} "$INSTDIR" $0
        ${If} $0 = 1    ; full; 0: empty, -1: none
        ${OrIf} $1 == ""  ; a drive
            StrCpy $0 $INSTDIR 1 -1
            ${If} $0 == "\"
                StrCpy $INSTDIR $INSTDIR -1
            ${EndIf}
            StrCpy $INSTDIR "$INSTDIR\${PRODUCT}"
        ${EndIf}
    ${EndIf}
    Pop $1
    Pop $0
FunctionEnd

Function LeaveDirectory
    StrCpy $R2 $INSTDIR
    Call UseOwnFolder
    ${If} $R2 != $INSTDIR
        MessageBox MB_OKCANCEL|MB_ICONINFORMATION "There are other files in $R2.$\r$\n$\r$\n${PRODUCT} will be installed in a folder of its own:$\r$\n$INSTDIR" IDOK own
        StrCpy $INSTDIR $R2
        Abort
    own:
        ; The page takes the folder from its field once more.
        FindWindow $0 "#32770" "" $HWNDPARENT
        GetDlgItem $0 $0 1019
        SendMessage $0 ${WM_SETTEXT} 0 "STR:$INSTDIR"
    ${EndIf}
FunctionEnd

; In a folder that all users may write to somebody could have put a library for our program to load.
!macro REFUSE_FILLED_FOLDER
    ${DirState} "$INSTDIR" $0
    ${If} $2 == ""
    ${AndIf} $0 = 1
        !insertmacro FAIL "There are files in $INSTDIR already, and other users may have put them there. Choose another folder, or an empty one."
    ${EndIf}
!macroend

; What is for everybody nobody but an administrator may change. Below Program Files that is so; a folder elsewhere
; may inherit that all users write to it, and would make one user's files the program of another.
Function CloseToOthers
    StrLen $0 "$PROGRAMFILES32\"
    StrCpy $1 $INSTDIR $0
    ${If} $1 == "$PROGRAMFILES32\"
        Return
    ${EndIf}
    Call IsOurs
    Pop $2
    !insertmacro REFUSE_FILLED_FOLDER
    CreateDirectory "$INSTDIR"
    ; Administrators and the system: everything; users: reading and running. Nothing is inherited.
    System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorW(w "O:BAD:PAI(A;OICI;FA;;;BA)(A;OICI;FA;;;SY)(A;OICI;0x1200a9;;;BU)", i 1, *p .r1, p 0) i .r0 ?e'
    Pop $3
    ${If} $0 <> 0
        ; OWNER, DACL and PROTECTED_DACL_SECURITY_INFORMATION
        System::Call 'advapi32::SetFileSecurityW(w "$INSTDIR", i 0x80000005, p r1) i .r0 ?e'
        Pop $3
        System::Call 'kernel32::LocalFree(p r1)'
    ${EndIf}
    ${If} $0 = 0
        !insertmacro FAIL "Other users cannot be kept from changing the files in $INSTDIR (error $3). Choose another folder, or install for yourself only."
    ${EndIf}
    ; From here on nobody else adds to it. What came in between counts as well.
    !insertmacro REFUSE_FILLED_FOLDER
FunctionEnd

Function .onInit
    StrCpy $givenFolder $INSTDIR
    StrCpy $process ""
    Call NoteElevation
    ${GetParameters} $R0
    ClearErrors
    ${GetOptions} $R0 "/ALLUSERS" $R1
    ${IfNot} ${Errors}
        StrCpy $allUsers 1
        Call AskForRights
        ${If} $process != ""
            Call EndWithProcess
            Quit
        ${EndIf}
    ${EndIf}
    Call UseContext
    !insertmacro SWITCH_SELECTS "/DESKTOP" ${desktop}
    !insertmacro SWITCH_SELECTS "/ASSOCIATE" ${associate}
FunctionEnd

; Installing for all users: without the rights for it, $process is one that has them, or this one ends.
Function AskForRights
    Call HasRights
    Pop $0
    ${If} $0 == 1
        Return
    ${EndIf}
    ${If} $elevated == 1
        !insertmacro FAIL "Installing for all users needs the rights of an administrator."
    ${EndIf}
    ${GetParameters} $R0
    StrCpy $R0 "$R0 /ALLUSERS /ELEVATED"
    ${If} $givenFolder != ""
        StrCpy $R0 "$R0 /D=$givenFolder"
    ${EndIf}
    Push $R0
    Push $EXEPATH
    Call StartElevated
    ${If} $process == ""
    ${AndIf} $HWNDPARENT = 0
        SetErrorLevel 1
        Quit
    ${EndIf}
FunctionEnd

; Waits for the one with rights and answers what it answers.
Function EndWithProcess
    System::Call 'kernel32::WaitForSingleObject(p $process, i -1)'
    System::Call 'kernel32::GetExitCodeProcess(p $process, *i .r0)'
    ${If} $0 = ${DONE_AND_START}
        SetShellVarContext all
        ReadRegStr $1 SHCTX "${UNINSTALL}" "InstallLocation"
        Exec '"$1\glimmerpad.exe"'
        StrCpy $0 0
    ${EndIf}
    SetErrorLevel $0
FunctionEnd

Function .onGUIEnd
    ${If} $process != ""
        Call EndWithProcess
    ${EndIf}
FunctionEnd

Function SkipWhenElevated
    ${If} $elevated == 1
        Abort
    ${EndIf}
FunctionEnd

; Its first page.
Function NoWayBackWhenElevated
    ${If} $elevated == 1
        GetDlgItem $0 $HWNDPARENT 3
        EnableWindow $0 0
    ${EndIf}
FunctionEnd

Function ChooseUsers
    Call SkipWhenElevated
    !insertmacro MUI_HEADER_TEXT "Choose Users" "Choose for whom ${PRODUCT} is installed."
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateRadioButton} 0 10u 100% 12u "For &me only"
    Pop $0
    ${NSD_CreateRadioButton} 0 28u 100% 12u "For &all users of this computer"
    Pop $everybody
    ${NSD_CreateLabel} 12u 42u 90% 20u "The system asks for the consent of an administrator."
    Pop $1
    ${If} $allUsers == 1
        StrCpy $0 $everybody
    ${EndIf}
    ${NSD_Check} $0
    nsDialogs::Show
FunctionEnd

Function LeaveUsers
    ${NSD_GetState} $everybody $0
    StrCpy $allUsers ""
    ${If} $0 = ${BST_CHECKED}
        StrCpy $allUsers 1
        Call AskForRights
        Call HasRights
        Pop $0
        ${If} $process != ""
            HideWindow
            Quit
        ${ElseIf} $0 == ""  ; declined: the page stays
            Abort
        ${EndIf}
    ${EndIf}
    Call UseContext
FunctionEnd

; Without an administrator's rights, whatever this process has: pictures could not be dropped on it from the user's
; programs otherwise. The shell's process is the user's; without one there is nobody to ask.
Function StartProgram
    ${If} $elevated == 1
        SetErrorLevel ${DONE_AND_START}
        Return
    ${EndIf}
    Call HasRights
    Pop $0
    System::Call 'user32::GetShellWindow() p .r1'
    ${If} $0 == 1
    ${AndIf} $1 <> 0
        Exec '"$WINDIR\explorer.exe" "$INSTDIR\glimmerpad.exe"'
    ${Else}
        Exec '"$INSTDIR\glimmerpad.exe"'
    ${EndIf}
FunctionEnd

Function un.onInit
    ; Whose installation this is, its registry entry tells.
    SetShellVarContext current
    ReadRegStr $R0 SHCTX "${UNINSTALL}" "InstallLocation"
    ${If} $R0 != $INSTDIR
        SetShellVarContext all
        ; The system starts it without rights, from wherever the user asks for it.
        Call un.NoteElevation
        Call un.HasRights
        Pop $0
        ${If} $0 == ""
        ${AndIf} $elevated == ""
            StrCpy $R1 "/ELEVATED"
            ${If} ${Silent}
                StrCpy $R1 "/S /ELEVATED"
            ${EndIf}
            Push $R1
            Push "$INSTDIR\uninstall.exe"
            Call un.StartElevated
            ${If} $process == ""
                SetErrorLevel 1
            ${EndIf}
            Quit
        ${EndIf}
    ${EndIf}
FunctionEnd

; The entries that let the program start when a user signs in, of all users whose registry is there.
Function un.RemoveStartEntries
    StrCpy $R3 '"$INSTDIR\glimmerpad.exe"'
    StrLen $R4 $R3
    StrCpy $R5 0
    ${Do}
        EnumRegKey $R6 HKU "" $R5
        ${If} $R6 == ""
            ${ExitDo}
        ${EndIf}
        IntOp $R5 $R5 + 1
        ReadRegStr $R7 HKU "$R6\${WINDOWS}\Run" "${PRODUCT}"
        StrCpy $R7 $R7 $R4
        ${If} $R7 == $R3
            DeleteRegValue HKU "$R6\${WINDOWS}\Run" "${PRODUCT}"
            ; Whether the user switched it off.
            DeleteRegValue HKU "$R6\${WINDOWS}\Explorer\StartupApproved\Run" "${PRODUCT}"
        ${EndIf}
    ${Loop}
FunctionEnd

Section "Uninstall"
    !insertmacro REFUSE_WHAT_CANNOT_BE_CHANGED "glimmerpad.dll"
    !insertmacro REFUSE_WHAT_CANNOT_BE_CHANGED "glimmerpad.exe"

    ReadRegStr $0 SHCTX "Software\Classes\.gmp" ""
    ${If} $0 == "${PROJECT_CLASS}"
        ReadRegStr $1 SHCTX "${UNINSTALL}" "FormerProjectClass"
        ${If} $1 == ""
            DeleteRegValue SHCTX "Software\Classes\.gmp" ""
        ${Else}
            WriteRegStr SHCTX "Software\Classes\.gmp" "" "$1"
        ${EndIf}
        System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
    ${EndIf}
    DeleteRegValue SHCTX "Software\Classes\.gmp\OpenWithProgids" "${PROJECT_CLASS}"
    DeleteRegKey /ifempty SHCTX "Software\Classes\.gmp\OpenWithProgids"
    DeleteRegKey /ifempty SHCTX "Software\Classes\.gmp"
    DeleteRegKey SHCTX "Software\Classes\${PROJECT_CLASS}"
    DeleteRegValue SHCTX "Software\RegisteredApplications" "${PRODUCT}"
    DeleteRegKey /ifempty SHCTX "Software\RegisteredApplications"
    DeleteRegKey SHCTX "${CAPABILITIES}"
    DeleteRegKey /ifempty SHCTX "Software\${PRODUCT}"
    Call un.RemoveStartEntries
    ReadRegDWORD $0 SHCTX "${UNINSTALL}" "DesktopLink"
    ${If} $0 = 1
        Delete "$DESKTOP\${PRODUCT}.lnk"
    ${EndIf}
    Delete "$SMPROGRAMS\${PRODUCT}.lnk"
    DeleteRegKey SHCTX "${APP_PATHS}"
    DeleteRegKey SHCTX "${UNINSTALL}"
    ; A user's registry has these only once a program was installed for that user.
    DeleteRegKey /ifempty HKCU "${WINDOWS}\App Paths"
    DeleteRegKey /ifempty HKCU "${WINDOWS}\Uninstall"

    !define UNINSTALL_FILES
    !include "${FILES}"
    !undef UNINSTALL_FILES
    Delete "$INSTDIR\uninstall.exe"
    ; Only when empty: what the user put there stays.
    RMDir "$INSTDIR"
SectionEnd
