; Asking for an administrator's rights, for the installer and, with the prefix "un.", for the uninstaller: the same
; program is started once more with the verb "runas", which makes the system ask. Programs start without those rights
; (RequestExecutionLevel user), so that who installs for himself is asked nothing.

Var elevated  ; "1": this is the one that was started with rights
Var process   ; handle of the one that was; "" when there is none

; What a process that was started with rights answers when all is done and the program shall be started, which is left
; to the one without rights.
!define DONE_AND_START 3

!macro ELEVATION_FUNCTIONS UN
; Whether this process has the rights: "1" on the stack, else "".
Function ${UN}HasRights
    Push $0
!ifdef PRETEND_USER
    StrCpy $0 $elevated
!else
    UserInfo::GetAccountType
    Pop $0
!endif
    ${If} $0 == "Admin"
    ${OrIf} $0 == 1
        StrCpy $0 1
    ${Else}
        StrCpy $0 ""
    ${EndIf}
    Exch $0
FunctionEnd

; Whether it was started by the next one: $elevated.
Function ${UN}NoteElevation
    Push $0
    Push $1
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/ELEVATED" $1
    ${IfNot} ${Errors}
        StrCpy $elevated 1
    ${EndIf}
    Pop $1
    Pop $0
FunctionEnd

; Starts the program on the stack's top with the parameters below it; sets $process. None when the user declines.
Function ${UN}StartElevated
    Exch $8
    Exch
    Exch $9
    Push $0
    Push $1
    StrCpy $process ""
    ; SHELLEXECUTEINFO, with the flags for the process' handle, for no return before it runs, for no box of the system's.
    System::Call '*(i 60, i 0x540, p $HWNDPARENT, w "runas", w r8, w r9, p 0, i 1, p 0, p 0, p 0, p 0, i 0, p 0, p 0) p .r1'
    System::Call 'shell32::ShellExecuteExW(p r1) i .r0'
    ${If} $0 <> 0
        System::Call '*$1(i, i, p, p, p, p, p, i, p, p, p, p, i, p, p .r0)'
        StrCpy $process $0
    ${EndIf}
    System::Free $1
    Pop $1
    Pop $0
    Pop $9
    Pop $8
FunctionEnd
!macroend
