' What a late-bound call costs from a script, beside one of the script host's own dictionary. All
' take turns; the figures are medians.
Option Explicit

Const calls = 50000, turns = 15

Dim global, counter, variable, dictionary
Set global = CreateObject("Zepkit10.Global")
Set counter = CreateObject("Zepkit10.Counter")
Set variable = global.VarSets.Add.Add("x")
Set dictionary = CreateObject("Scripting.Dictionary")

Dim empty_loop(14), dictionary_count(14), counter_value(14), variable_value(14), increment(14)
Dim turn, start, i, read
For turn = 0 To turns - 1
    start = Timer
    For i = 1 To calls
    Next
    empty_loop(turn) = Timer - start
    start = Timer
    For i = 1 To calls
        read = dictionary.Count
    Next
    dictionary_count(turn) = Timer - start
    start = Timer
    For i = 1 To calls
        read = counter.Value
    Next
    counter_value(turn) = Timer - start
    start = Timer
    For i = 1 To calls
        read = variable.Value
    Next
    variable_value(turn) = Timer - start
    start = Timer
    For i = 1 To calls
        counter.Increment 1
    Next
    increment(turn) = Timer - start
Next

WScript.Echo "Late-bound calls from VBScript, as multiples of Scripting.Dictionary.Count"
Report "Counter.Value", counter_value
Report "Variable.Value", variable_value
Report "Counter.Increment 1", increment
variable.Parent.Delete

Sub Report(name, seconds)
    Dim ours, theirs, around
    ours = Median(seconds)
    theirs = Median(dictionary_count)
    around = Median(empty_loop)
    WScript.Echo "  " & Left(name & Space(28), 28) & FormatNumber(ours / theirs, 2) & _
        " with the loop, " & FormatNumber((ours - around) / (theirs - around), 2) & " without"
End Sub

Function Median(ByVal values)
    Dim i, j, value
    For i = 1 To UBound(values)
        value = values(i)
        For j = i - 1 To 0 Step -1
            If values(j) <= value Then Exit For
            values(j + 1) = values(j)
        Next
        values(j + 1) = value
    Next
    Median = values(UBound(values) \ 2)
End Function
