' Files, directories, INI entries and a log file.
'     cscript //nologo files.vbs
Option Explicit

Dim zepkit, system, folder, files, name, count
Set zepkit = CreateObject("Zepkit10.Global")
Set system = CreateObject("Scripting.FileSystemObject")
folder = system.GetSpecialFolder(2) & "\" & system.GetTempName

' All missing directories above are made as well.
If Not zepkit.MakeDir(folder & "\notes\2026") Then WScript.Echo "cannot make " & folder

' A log file grows by a line of date, time and text with every call.
zepkit.LogFile = folder & "\program.log"
zepkit.LogText "started"
zepkit.LogText "stopped"

' An INI file is created when its first entry is written.
zepkit.IniEntry(folder & "\notes\program.ini", "Window", "Width") = "640"
WScript.Echo "Width " & zepkit.IniEntry(folder & "\notes\program.ini", "Window", "Width")

' The full paths of all files, from index 0.
count = zepkit.GetFiles(folder, "program.*", files, True)
WScript.Echo count & " files"
For Each name In files
    WScript.Echo "  " & Mid(name, Len(folder) + 2)
Next
WScript.Echo "The first directory is " & zepkit.GetSubDir(folder, 1)

system.DeleteFolder folder
