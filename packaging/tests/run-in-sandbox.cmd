@echo off
rem Writes sandbox.wsb for this folder and opens it. The sandbox reads this folder and writes to one in it.
setlocal
cd /d "%~dp0"
set "here=%CD%"
rem These mean something to this command interpreter and to the sandbox; no quotes keep them from it there.
if not "%here:&=%"=="%here%" goto elsewhere
if not "%here:^=%"=="%here%" goto elsewhere
rem The sandbox reads its file as UTF-8.
chcp 65001 >nul
if not exist results-of-the-sandbox mkdir results-of-the-sandbox
>sandbox.wsb echo ^<Configuration^>
>>sandbox.wsb echo ^<Networking^>Disable^</Networking^>
>>sandbox.wsb echo ^<MappedFolders^>
>>sandbox.wsb echo ^<MappedFolder^>^<HostFolder^>%here%^</HostFolder^>^<SandboxFolder^>C:\package^</SandboxFolder^>^<ReadOnly^>true^</ReadOnly^>^</MappedFolder^>
>>sandbox.wsb echo ^<MappedFolder^>^<HostFolder^>%here%\results-of-the-sandbox^</HostFolder^>^<SandboxFolder^>C:\results^</SandboxFolder^>^<ReadOnly^>false^</ReadOnly^>^</MappedFolder^>
>>sandbox.wsb echo ^</MappedFolders^>
>>sandbox.wsb echo ^<LogonCommand^>^<Command^>cmd.exe /c start cmd.exe /k C:\package\in-sandbox.cmd^</Command^>^</LogonCommand^>
>>sandbox.wsb echo ^</Configuration^>
if exist "%SystemRoot%\System32\WindowsSandbox.exe" (
    start "" sandbox.wsb
    exit /b 0
)
echo "Windows Sandbox" is not there. It is one of Windows' optional features (not of Home).
if "%~1"=="" pause
exit /b 1

:elsewhere
echo The sandbox cannot be given a folder with ^& or ^^ in its name. Move this one, for instance to C:\glimmerpad.
if "%~1"=="" pause
exit /b 1
