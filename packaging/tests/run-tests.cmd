@echo off
rem Runs the tests in this folder. Arguments: --yes (do not ask), --quiet (show no folder at the end), names of tests.
cd /d "%~dp0"
tests\run_tests.exe %*
set code=%errorlevel%
if "%~1"=="" pause
exit /b %code%
