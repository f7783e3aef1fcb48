@echo off
rem Runs in the sandbox: works on a copy, since the package can only be read there.
xcopy /e /i /q C:\package C:\gp-tests
call C:\gp-tests\run-tests.cmd --yes --quiet
copy /y C:\gp-tests\results.zip C:\results
echo Done. This window and the sandbox can be closed.
