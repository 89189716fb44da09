@echo off
rem Registers Zepkit10 for the current user alone; needs no administrator.
rem     register-user.cmd [/u]      /u undoes it
setlocal
set system=%SystemRoot%\System32
if defined PROCESSOR_ARCHITEW6432 set system=%SystemRoot%\Sysnative
set native=x64
if "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" set native=x86
set failed=0
call :register "%system%\regsvr32.exe" "%~dp0%native%\zepkit10.dll" %1
if "%native%"=="x64" if exist "%SystemRoot%\SysWOW64\regsvr32.exe" call :register "%SystemRoot%\SysWOW64\regsvr32.exe" "%~dp0x86\zepkit10.dll" %1
exit /b %failed%

:register
%1 /s %3 /n /i:user %2
if errorlevel 1 (
  echo %2 could not be registered or unregistered.
  set failed=1
)
exit /b 0
