' A document: a file that is opened, changed, saved under another name and closed.
'     cscript //nologo documents.vbs
' Programs that hear events are told every step, see samples/cpp/document.cpp.
Option Explicit

Dim document, system, folder, stream
Set document = CreateObject("Zepkit10.DocHand")
Set system = CreateObject("Scripting.FileSystemObject")
folder = system.GetSpecialFolder(2) & "\" & system.GetTempName
system.CreateFolder folder
Set stream = system.CreateTextFile(folder & "\letter.txt")
stream.Write "Dear Ada"
stream.Close

document.OpenFile folder & "\letter.txt"
Tell "opened"
document.Content.RangeString(6, 3) = "Grace"
Tell "changed"
document.SaveAs folder & "\other.txt"
Tell "saved"
document.CloseFile
Tell "closed"
WScript.Echo "letter.txt: " & system.OpenTextFile(folder & "\letter.txt").ReadAll
WScript.Echo "other.txt: " & system.OpenTextFile(folder & "\other.txt").ReadAll
system.DeleteFolder folder

Sub Tell(what)
    WScript.Echo what & ": " & document.FileTitle & ", status " & document.Status & ", " & document.Content
End Sub
