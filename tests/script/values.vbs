' Variables, texts and bytes from a script.
Option Explicit
Dim zepkit, x, y, bytes, object, first
Set zepkit = CreateObject("Zepkit10.Global")

x = 5
Check "Incr", zepkit.Incr(x), 6
Check "Incr changes the variable", x, 6
zepkit.Incr x, 10
Check "Incr by ten", x, 16
zepkit.Decr x
Check "Decr", x, 15
x = "5"
zepkit.Incr x
Check "Incr of a text", x, 6
Check "a number then", VarType(x) = vbString, False
x = 32767
zepkit.Incr x
Check "Incr widens", x, 32768

x = "a"
y = "b"
zepkit.SwapVars x, y
Check "SwapVars", x & y, "ba"
Set x = CreateObject("Zepkit10.Counter")
Set y = CreateObject("Zepkit10.Counter")
x.Value = 1
y.Value = 2
zepkit.SwapVars x, y
Check "SwapVars of objects", x.Value & " " & y.Value, "2 1"

Check "FinalizeString", zepkit.FinalizeString("C:\dir", "\"), "C:\dir\"
Check "FinalizeString of what ends so", zepkit.FinalizeString("C:\dir\", "\"), "C:\dir\"
first = CLng(zepkit.NewTag)
Check "NewTag", zepkit.NewTag, CStr(first + 1)

' Bytes are an array that scripts cannot index; TransformPArray makes one of Variants.
bytes = zepkit.StringToByteArray("AB", 2)
Check "a text again", zepkit.ByteArrayToString(bytes, 2), "AB"
bytes = zepkit.TransformPArray(bytes)
Check "bytes from 1", LBound(bytes) & " to " & UBound(bytes), "1 to 4"
Check "the bytes", bytes(1) & " " & bytes(2) & " " & bytes(3) & " " & bytes(4), "65 0 66 0"
Check "a script's own bytes", zepkit.ByteArrayToString(Array(0, 72, 105), 1), "Hi"
zepkit.MessageBeep 0
Check "MessageBeep", True, True

On Error Resume Next
x = "x"
zepkit.Incr x
Check "Incr of a word", Err.Number, -2147220479
Check "Incr of a word: source", Err.Source, "Zepkit10.Global"
Check "the word stays", x, "x"
Err.Clear
y = 1
zepkit.SwapVars x, y
Check "SwapVars of two types", Err.Number, -2147220479
Check "they stay", x & y, "x1"
Err.Clear
x = zepkit.StringToByteArray("a", 3)
Check "an unknown encoding", Err.Number, -2147220466
Err.Clear
x = zepkit.ByteArrayToString(Array(0, 0, 128), 2)
Check "a character from U+8000", Err.Number, 6
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
