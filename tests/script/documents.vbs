' Buffers, views and documents from a script.
Option Explicit
Dim buffer, view, other, document, system, folder, path, bytes, text
Set buffer = CreateObject("Zepkit10.ZepVariant")
Check "empty at first", buffer.ByteLength, 0
buffer.DataString = "abcdef"
Check "the default member", buffer, "abcdef"
Check "a byte", buffer.DataByte(1), 97
buffer.DataByte(8) = 104
Check "a byte behind the end", buffer.ByteLength, 8
buffer.ByteLength = 6
buffer.DataBytes = Array(0, 65, 66, 67)
Check "bytes of an array of Variants", buffer.DataString, Chr(0) & "ABC"
buffer.DataString = "abcdef"
Set view = buffer.Range(2, 3)
Check "a view", view.DataString, "bcd"
view.DataString = "-"
Check "written through", buffer.DataString, "a-ef"
buffer.RangeString(1, 1) = "xyz"
Check "seen by the view", view.DataString, "y"
Set other = CreateObject("Zepkit10.ZepVariant")
other.DataString = "new"
Set buffer.Range(1, 1) = other
Check "a slice set to a buffer", buffer.DataString, "newyz-ef"
buffer.ReadOnly = True

On Error Resume Next
buffer.DataString = "no"
Check "read-only", Err.Number, -2147220465
Check "read-only: source", Err.Source, "Zepkit10.ZepVariant"
Err.Clear
text = buffer.DataByte(99)
Check "a byte that is not there", Err.Number, -2147220466
Err.Clear
buffer.ConnectAsRange other, 1, 1
Check "a read-only view", Err.Number, -2147220465
Err.Clear
On Error GoTo 0

Set document = CreateObject("Zepkit10.DocHand")
Set system = CreateObject("Scripting.FileSystemObject")
folder = system.GetSpecialFolder(2) & "\" & system.GetTempName
system.CreateFolder folder
path = folder & "\a.txt"
document.NewFile
Check "a new document", Left(document.FileTitle, 9), "Unbenannt"
document.Content.DataString = "first"
Check "changed", document.Changed, True
document.SaveAs path
Check "saved", document.Status, 2
document.CloseFile
Check "on disk", system.OpenTextFile(path).ReadAll, "first"
document.OpenFile path
document.Content.DataString = "another"
document.Save
document.Content.DataString = "second"
document.Save
document.CloseFile
Check "saved again", system.OpenTextFile(path).ReadAll, "second"
document.OpenFile path, True
Check "opened for reading", document.Status, 3
Check "its title", document.FileTitle, "a.txt"
Check "its content", document.Content.DataString, "second"

On Error Resume Next
document.Save
Check "a read-only document is not saved", Err.Number, -2147220465
Err.Clear
document.Content.ReadOnly = False
Check "its content stays read-only", Err.Number, -2147220462
Err.Clear
document.OpenFile folder & "\no.txt", True
Check "no such file", Err.Number, -2147220464
Check "no such file: source", Err.Source, "Zepkit10.DocHand"
Check "the state tells", document.OpenErr, True
Err.Clear
document.CloseFile
Check "nothing to close", Err.Number, -2147220470
Err.Clear
document.FilterIndex = 40000
Check "a filter beyond", Err.Number, -2147220478
Err.Clear
On Error GoTo 0
Check "the second filter at first", document.FilterIndex, 2
system.DeleteFolder folder
WScript.Echo "end of script"

Sub Check(what, actual, expected)
    If actual = expected Then
        WScript.Echo "ok " & what
    Else
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub
