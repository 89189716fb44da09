' Trace output into objects of a script.
Option Explicit
Dim zepkit, outs, page, printer, out
Set zepkit = CreateObject("Zepkit10.Global")
Set outs = zepkit.DebugPrintOuts

Class Page_
    Public Text
End Class

Class Printer_
    Public Lines
    Public Sub PrintLine(line)
        Lines = Lines & "[" & line & "]"
    End Sub
End Class

Set page = New Page_
page.Text = "start" & vbCrLf
Set printer = New Printer_
outs.Add page, "Text", 0
Set out = outs.Add(printer, "PrintLine", 2)
Check "two targets", outs.Count, 2
printer.Lines = ""

zepkit.DebugPrint "+ load"
zepkit.DebugPrint "read"
zepkit.DebugPrint "- done"
Check "the text grows", page.Text, _
    "start" & vbCrLf & "+ load" & vbCrLf & "  read" & vbCrLf & "- done" & vbCrLf
Check "the method is called", printer.Lines, _
    "[+ load" & vbCrLf & "][  read" & vbCrLf & "][- done" & vbCrLf & "]"

printer.Lines = ""
out.Delete
zepkit.Zep.DebugPrint "x", True
zepkit.DebugPrint "y"
Check "a deleted target hears nothing", printer.Lines, ""
Check "a line in two calls", Right(page.Text, 4), "xy" & vbCrLf

outs.Enabled = False
zepkit.DebugPrint "+ silent"
Check "disabled", Right(page.Text, 4), "xy" & vbCrLf
outs.Enabled = True
zepkit.DebugPrint "- heard"
Check "enabled again", Right(page.Text, 9), "- heard" & vbCrLf
Check "a target tells what it is", outs(1).LinkedCall & outs(1).LinkedCallType, "Text0"
Check "a target is usable", outs(1).Usable, True

On Error Resume Next
outs.Add page, "NoSuchMember", 0
Check "an unusable target", Err.Number, -2147220466
Check "an unusable target: source", Err.Source, "Zepkit10.DebugPrintOuts"
Check "it is not added", outs.Count, 1
Err.Clear
On Error GoTo 0
outs.Clear
WScript.Echo "end of script"

Sub Check(what, actual, expected)
    If actual = expected Then
        WScript.Echo "ok " & what
    Else
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub
