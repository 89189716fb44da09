' Files, directories, INI entries and the log file from a script.
Option Explicit
Dim zepkit, system, folder, files, count, text
Set zepkit = CreateObject("Zepkit10.Global")
Set system = CreateObject("Scripting.FileSystemObject")
folder = system.GetSpecialFolder(2) & "\" & system.GetTempName

Check "MakeDir", zepkit.MakeDir(folder & "\sub\deeper"), True
Check "MakeDir again", zepkit.MakeDir(folder & "\sub"), True
Check "IsValidDir", zepkit.IsValidDir(folder & "\sub\deeper"), True
Check "IsValidFile of a directory", zepkit.IsValidFile(folder), False
Check "GetSubDir", zepkit.GetSubDir(folder, 1), "sub"
Check "GetSubDir beyond", zepkit.GetSubDir(folder, 2), ""

Write folder & "\a.txt", "a"
Write folder & "\b.log", "b"
Write folder & "\sub\c.txt", "c"
Check "IsValidFile", zepkit.IsValidFile(folder & "\a.txt"), True
Check "IsValidDir of a file", zepkit.IsValidDir(folder & "\a.txt"), False

Check "no file", zepkit.GetFiles(folder, "*.none", files, True), 0
Check "a directory that is not there", zepkit.GetFiles(folder & "\no", "*", files, True), -1
Check "Files stays as it is", IsEmpty(files), True
count = zepkit.GetFiles(folder, "*.txt", files, True)
Check "GetFiles", count, 2
Check "its files", files(0) & ";" & files(1), folder & "\a.txt;" & folder & "\sub\c.txt"
Check "its bounds", LBound(files) & " to " & UBound(files), "0 to 1"
Check "one folder only", zepkit.GetFiles(folder, "*.txt", files, False), 1
Check "one file", UBound(files), 0

zepkit.IniEntry(folder & "\own.ini", "Window", "Width") = "640"
Check "IniEntry", zepkit.IniEntry(folder & "\own.ini", "Window", "Width"), "640"

zepkit.LogFile = folder & "\own.log"
zepkit.LogText "started"
zepkit.LogText
zepkit.Zep.LogText "stopped"
Check "LogFile", zepkit.Zep.LogFile, folder & "\own.log"
text = system.OpenTextFile(folder & "\own.log").ReadAll
Check "a line of the log", InStr(text, ": started" & vbCrLf & vbCrLf) > 0, True
Check "its last line", Right(text, 11), ": stopped" & vbCrLf

On Error Resume Next
text = zepkit.IniEntry(folder & "\own.ini", "Window", "Height")
Check "an entry that is not there", Err.Number, -2147220467
Check "an entry that is not there: text", Err.Description, "Initialization-file entry not existant"
Err.Clear
text = zepkit.IniEntry(folder & "\no.ini", "Window", "Width")
Check "an INI file that is not there", Err.Number, -2147220468
Err.Clear
zepkit.LogFile = folder & "\no\own.log"
zepkit.LogText "lost"
Check "a log file nowhere", Err.Number, -2147220470
Check "a log file nowhere: source", Err.Source, "Zepkit10.Global"
Err.Clear
On Error GoTo 0

system.DeleteFolder folder
WScript.Echo "end of script"

Sub Write(path, content)
    Dim stream
    Set stream = system.CreateTextFile(path)
    stream.Write content
    stream.Close
End Sub

Sub Check(what, actual, expected)
    If actual = expected Then
        WScript.Echo "ok " & what
    Else
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub
