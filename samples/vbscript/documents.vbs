' A document: a file that is opened, changed through a view of its content, saved, saved under
' another name and closed.
'     cscript //nologo documents.vbs
' samples/cpp/document.cpp does the same in a compiled program, which hears every event.
Option Explicit

Dim document, word, system, folder
Set document = CreateObject("Zepkit10.DocHand")
Set system = CreateObject("Scripting.FileSystemObject")
folder = system.GetSpecialFolder(2) & "\" & system.GetTempName
system.CreateFolder folder
system.CreateTextFile(folder & "\letter.txt").Write "Dear Ada"
ListenToEvents

document.OpenFile folder & "\letter.txt"
Tell "opened"
Set word = document.Content.Range(6, 3)
word.DataString = "Grace"
Tell "changed"
document.Save
Tell "saved"
word.DataString = "Mary"
document.SaveAs folder & "\other.txt"
Tell "saved as"
document.CloseFile
Tell "closed"
WScript.Echo "letter.txt: " & system.OpenTextFile(folder & "\letter.txt").ReadAll
WScript.Echo "other.txt: " & system.OpenTextFile(folder & "\other.txt").ReadAll
system.DeleteFolder folder

Sub Tell(what)
    WScript.Echo what & ": " & document.FileTitle & ", status " & document.Status & ", " & document.Content
End Sub

' The script hosts of Windows call the procedures below; that of Wine refuses to.
Sub ListenToEvents
    On Error Resume Next
    WScript.ConnectObject document, "document_"
    If Err.Number <> 0 Then WScript.Echo "This script host passes no events on."
End Sub

Sub document_FileOpen(name)
    WScript.Echo "    FileOpen " & system.GetFileName(name)
End Sub

Sub document_StatusChange(status)
    WScript.Echo "    StatusChange " & status
End Sub

Sub document_ContentChange
    WScript.Echo "    ContentChange"
End Sub

Sub document_FilePartlyRead(length, read, percentage)
    WScript.Echo "    FilePartlyRead " & read & " of " & length & " bytes, " & percentage & " %"
End Sub

Sub document_FilePartlyWritten(length, written, percentage)
    WScript.Echo "    FilePartlyWritten " & written & " of " & length & " bytes, " & percentage & " %"
End Sub

Sub document_FileSaved
    WScript.Echo "    FileSaved"
End Sub

Sub document_FileClose
    WScript.Echo "    FileClose"
End Sub
