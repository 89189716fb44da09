' Variables from a script: sets, default members, For Each, errors.
Option Explicit
Dim zepkit, sets, variables, variable, names, held
Set zepkit = CreateObject("Zepkit10.Global")
Set sets = zepkit.VarSets
Check "no sets at first", sets.Count, 0
Set variables = sets.Add("first")
sets.Add
sets.Add 3
Check "three sets", sets.Count, 3
Check "by position", sets(1).Name, "first"
Check "by name", sets.Item("3").Name, "3"
Check "through the property", zepkit.VarSets("first").Name, "first"
Check "one collection for all", zepkit.Zep.VarSets.Count, 3

variables.Add("x").Value = 3
variables("y").Value = 4
variables("y") = 5
Check "the default member of an item is assigned", variables("y").Value, 5
Check "the default member of an item is read", variables("x") + variables("y"), 8
variables("z").Expression.EString = "SQR(x^2+(y-1)^2)"
Check "a variable follows others", variables("z").Value, 5
variables("x").Value = 0
Check "a variable follows changes", variables("z").Value, 4

names = ""
For Each variable In variables
    names = names & variable.Name
Next
Check "For Each in order of insertion", names, "xyz"

Set held = variables("x")
variables.Remove "x"
Check "Remove by name", variables.Count, 2
variables.Remove 1
Check "Remove by position", variables("z").Parent.Count, 1

On Error Resume Next
names = held.Name
Check "a deleted variable: number", Err.Number, -2147220480
Check "a deleted variable: source", Err.Source, "Zepkit10.Variable"
Check "a deleted variable: text", Err.Description, "Description for err #-2147220480 not found"
Err.Clear
names = variables.Item(1.5).Name
Check "a fraction is no index", Err.Number, -2147220479
Err.Clear
names = variables.Item(99).Name
Check "a position outside", Err.Number, 9
Check "a position outside: text", Err.Description, "Subscript out of range"
Err.Clear
names = sets.Item("nowhere").Name
Check "an unknown set", Err.Number, -2147220476
Err.Clear
names = sets(2).Name
Check "an unnamed set", Err.Number, -2147220470
Err.Clear
sets.Add "first"
Check "a name in use", Err.Number, -2147220475
Check "a name in use: source", Err.Source, "Zepkit10.VarSets"
Err.Clear
variables.Add "ab"
Check "a name of two letters", Err.Number, -2147220466
Err.Clear
Set variables("z").Expression = Nothing
Check "no expression", Err.Number, -2147220478
Err.Clear
variables.Explicit = True
names = variables.Item("q").Name
Check "an explicit set adds nothing", Err.Number, -2147220476
Err.Clear
variables("z").Expression.EString = "z+1"
names = variables("z").Value
Check "a variable that names itself", Err.Number, 28
Err.Clear
On Error GoTo 0

sets.Clear
Check "Clear", sets.Count, 0
WScript.Echo "end of script"

Sub Check(what, actual, expected)
    If actual = expected Then
        WScript.Echo "ok " & what
    Else
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub
