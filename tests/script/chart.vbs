' A chart from a script.
Option Explicit
Dim zepkit, chart, variables, fnc
Set zepkit = CreateObject("Zepkit10.Global")
Set chart = zepkit.Charts.Add("curve")
Set variables = zepkit.VarSets.Add("curve")
Set chart.VarSet = variables
chart.CoordMetric = 0.5
chart.PictureWidth = 200
chart.PictureHeight = 100

Set fnc = chart.FncInfos.Add("pole")
fnc.Expression.EString = "1/x"
fnc.XLow = -1
fnc.XHigh = 1
fnc.YLow = -4
fnc.YHigh = 4
fnc.Interval = 0.5
Set fnc = chart.FncInfos.Add("line")
fnc.Expression.EString = "2*x"
fnc.XLow = -3
fnc.XHigh = 2
fnc.Interval = 1

Check "GreatestXLow", chart.FncInfos.GreatestXLow, -3
Check "GreatestXHigh", chart.FncInfos.GreatestXHigh, 2
chart.Draw
Check "one division by zero", chart.Errors(11), 1
Check "no overflow", chart.Errors(6), 0
Check "x keeps its last value", variables("x").Value, 2
Check "y stays bound to the last function", variables("y").Expression.EString, "2*x"
Check "a picture", chart.Picture.Type, 1
Check "the width", chart.PictureWidth, 200
Check "functions by name", chart.FncInfos("pole").Interval, 0.5

On Error Resume Next
chart.FncInfos.Add "line"
Check "a name in use", Err.Number, -2147220475
Err.Clear
chart.FncInfos.Clear
chart.Draw
Check "no function", Err.Number, -2147220470
Check "no function: source", Err.Source, "Zepkit10.FncInfos"
Err.Clear
chart.Delete
chart.Draw
Check "a deleted chart", Err.Number, -2147220480
Err.Clear
On Error GoTo 0
Check "the collection forgot it", zepkit.Charts.Count, 0
variables.Delete
WScript.Echo "end of script"

Sub Check(what, actual, expected)
    If actual = expected Then
        WScript.Echo "ok " & what
    Else
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub
