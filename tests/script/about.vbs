' The library's icon, as a script meets it.
Option Explicit
Dim zepkit, icon
Set zepkit = CreateObject("Zepkit10.Global")

Set icon = zepkit.LoadZepIcon(0)
Check "an icon", icon.Type, 3
Check "as wide as high", icon.Width = icon.Height, True
Check "from the library too", zepkit.Zep.LoadZepIcon(0).Type, 3

On Error Resume Next
zepkit.LoadZepIcon 1
Check "no such icon", Err.Number, -2147220466
Check "no such icon: source", Err.Source, "Zepkit10.Global"
Err.Clear
zepkit.ShowAbout "About", Nothing, "First", Null
Check "a line that is no text", Err.Number, 13
Err.Clear
zepkit.ShowAbout "About", zepkit, "First", "a"
Check "no picture", Err.Number, 13
Err.Clear
On Error GoTo 0
WScript.Echo "end of script"

Sub Check(what, actual, expected)
    If actual = expected Then
        WScript.Echo "ok " & what
    Else
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub
