@echo off
rem Undoes what register-user.cmd did.
call "%~dp0register-user.cmd" /u
