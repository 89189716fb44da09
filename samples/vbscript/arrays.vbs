' Arrays and variables: cut, merged, compared, counted, exchanged.
'     cscript //nologo arrays.vbs
Option Explicit

Dim zepkit, words, merged, total, first, second, i
Set zepkit = CreateObject("Zepkit10.Global")

' Scripts can index arrays of Variants only. TransformPArray makes one of any other array.
words = zepkit.TransformPArray(zepkit.ListToStringArray("one two three four"))
WScript.Echo "The last of " & zepkit.ZepUBound(words) & " words is " & words(zepkit.ZepUBound(words))

' A part of one array and all of another, counted from 0.
merged = zepkit.MergeArrays(zepkit.CutArray(words, 2, 2), Array("five", "six"), 0)
For i = 0 To UBound(merged)
    WScript.Echo "  " & i & ": " & merged(i)
Next

' Numbers, texts that read as numbers, and arrays of them are compared by their values.
WScript.Echo "The greatest is " & zepkit.Max(3, "12", Array(7, 9)) & ", the least " & zepkit.Min(3, "12", 7)

total = 10
zepkit.Incr total, 5
zepkit.Decr total
first = "left"
second = "right"
zepkit.SwapVars first, second
WScript.Echo "Total " & total & ", first " & first & ", second " & second
