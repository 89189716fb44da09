' The conversation in VBScript, late bound:
'     cscript //nologo vbscript.vbs
Option Explicit

Dim zepkit, circle
Set zepkit = CreateObject("Zepkit10.Global")
Set circle = zepkit.VarSets.Add("circle")
Terms
Variables
Collections
Events
Buffers
Document
Lists
Arrays
Errors
circle.Delete

Sub Terms
    Dim term, letters
    WScript.Echo "Terms"
    WScript.Echo "  2*SIN(0)^2+|1-3| is " & zepkit.Compute("2*SIN(0)^2+|1-3|")
    Set letters = zepkit.VarSets.Add("letters")
    letters("x").Value = 3
    Set term = CreateObject("Zepkit10.Expression")
    Set term.VarSet = letters
    term.EString = "x^2/4"
    WScript.Echo "  x^2/4 is " & term.Value & " where x is 3"
    letters.Delete
End Sub

' A variable holds a number or a term, which follows the variables that it names.
Sub Variables
    WScript.Echo "Variables"
    circle("r").Value = 2
    circle("d").Expression.EString = "2*r"
    WScript.Echo "  radius 2, diameter " & circle("d").Value
    circle("r").Value = 5
    WScript.Echo "  radius 5, diameter " & circle("d").Value
End Sub

Sub Collections
    Dim variable
    WScript.Echo "Collections"
    For Each variable In circle
        WScript.Echo "  " & variable.Name & " = " & variable.Expression.EString
    Next
    WScript.Echo "  " & circle.Count & " variables, the first is " & circle(1).Name
End Sub

Sub Events
    Dim counter, buffer
    WScript.Echo "Events"
    Set counter = CreateObject("Zepkit10.Counter")
    Listen counter, "counter_"
    counter.Increment 3
    counter.Decrement
    WScript.Echo "  the counter is at " & counter.Value

    Set buffer = CreateObject("Zepkit10.ZepVariant")
    If Not Listen(buffer, "buffer_") Then Exit Sub
    On Error Resume Next
    buffer.ReadOnly = True
    ShowError
End Sub

' Whether the script host passes events on: those of Windows do, Wine's does not.
Function Listen(source, prefix)
    On Error Resume Next
    WScript.ConnectObject source, prefix
    Listen = (Err.Number = 0)
End Function

Sub counter_ValueChanged(now, before)
    WScript.Echo "  event: the counter goes from " & before & " to " & now
End Sub

Sub buffer_BeforeROChange(now, cancel)
    WScript.Echo "  event: may the buffer be protected? No."
    cancel = True
End Sub

' A view shows a part of a buffer; both follow each other.
Sub Buffers
    Dim buffer, view
    WScript.Echo "Buffers"
    Set buffer = CreateObject("Zepkit10.ZepVariant")
    buffer.DataString = "Dear Ada"
    Set view = buffer.Range(6, 3)
    view.DataString = "Grace"
    WScript.Echo "  " & buffer.DataString
    buffer.RangeString(6, 5) = "GRACE"
    WScript.Echo "  " & view.DataString & ", " & view.RangeLength & " bytes from byte " & view.RangeStart
    WScript.Echo "  the first byte is " & buffer.DataByte(1)
End Sub

Sub Document
    Dim system, path, letter
    WScript.Echo "Document"
    Set system = CreateObject("Scripting.FileSystemObject")
    path = system.GetSpecialFolder(2) & "\zepkit10-letter.txt"
    Set letter = CreateObject("Zepkit10.DocHand")
    letter.NewFile
    letter.Content.DataString = "Dear Ada"
    letter.SaveAs path
    Listen letter, "letter_"
    letter.Content.RangeString(6, 3) = "Grace"
    letter.Save
    letter.CloseFile
    letter.OpenFile path
    WScript.Echo "  " & letter.FileTitle & ": " & letter.Content.DataString
    letter.CloseFile
    system.DeleteFile path
End Sub

Sub letter_StatusChange(status)
    WScript.Echo "  event: the status is " & status
End Sub

Sub Lists
    Dim list
    WScript.Echo "Lists"
    Set list = CreateObject("Zepkit10.List")
    list.ListString = "red green blue"
    list.AddItem "black", 1
    list.RemoveItem 3
    WScript.Echo "  " & list.Count & " colours: " & list.ListString
End Sub

' Scripts index arrays of Variants only, which TransformPArray makes of any other array.
Sub Arrays
    Dim words, variants, number
    WScript.Echo "Arrays"
    words = zepkit.ListToStringArray("one two three")
    variants = zepkit.TransformPArray(words)
    WScript.Echo "  word " & UBound(variants) & " is " & variants(UBound(variants))
    WScript.Echo "  " & zepkit.StringArrayToList(zepkit.MergeArrays(zepkit.CutArray(words, 2, 2), words, 1), "-")
    WScript.Echo "  the greatest is " & zepkit.Max(3, 12, 7)
    number = 5
    zepkit.Incr number, 2
    WScript.Echo "  5 and 2 more are " & number
End Sub

Sub Errors
    Dim term, found
    WScript.Echo "Errors"
    Set term = CreateObject("Zepkit10.Expression")
    term.EString = "1/0"
    On Error Resume Next
    found = term.Value
    ShowError
    Set found = zepkit.VarSets("nowhere")
    ShowError
End Sub

' The lower half of the number is that of ZepErrors or of the runtime error.
Sub ShowError
    WScript.Echo "  error " & (Err.Number And 65535) & ": " & Err.Description
    WScript.Echo "    raised by " & Err.Source
    Err.Clear
End Sub
