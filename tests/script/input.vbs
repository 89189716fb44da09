' The keyboard and the mouse pointer, as a script meets them.
Option Explicit
Dim zepkit, keyboard, pointer, here, delay
Set zepkit = CreateObject("Zepkit10.Global")
Set keyboard = zepkit.Keyboard

Check "one keyboard", keyboard Is zepkit.Zep.Keyboard, True
Check "its parent", keyboard.Parent Is zepkit.Zep, True
Check "shift", keyboard.KeyDown(16), keyboard.Shift
Check "caps lock", keyboard.KeyOn(20), keyboard.CapsLock
Check "no key", keyboard.KeyDown(0), False
Check "changes are told", keyboard.Notify, True
Check "changes are saved", keyboard.SaveChanges, True

keyboard.Notify = False
keyboard.SaveChanges = False
delay = keyboard.Delay
keyboard.Delay = 3 - delay
Check "a delay", keyboard.Delay, 3 - delay
keyboard.Delay = CStr(delay)
Check "the delay before", keyboard.Delay, delay
keyboard.Preference = keyboard.Preference
keyboard.Notify = True
keyboard.SaveChanges = True

On Error Resume Next
keyboard.Delay = 4
Check "no such delay", Err.Number, -2147220466
Check "no such delay: source", Err.Source, "Zepkit10.Keyboard"
Err.Clear
On Error GoTo 0
Check "the delay stays", keyboard.Delay, delay

Set here = zepkit.ZepMousePointer
Set pointer = CreateObject("Zepkit10.MousePointer")
Check "another object", pointer Is here, False
Check "the same position", pointer.PosX & " " & pointer.PosY, here.PosX & " " & here.PosY
pointer.PosX = 25
Check "edited", pointer.Changed, True
pointer.SetPos
Check "written", pointer.Changed, False
pointer.SetPos "12"
Check "one is the stored", zepkit.ZepMousePointer.PosX & " " & zepkit.ZepMousePointer.PosY, _
    "12 " & here.PosY
pointer.SetPos , 14
Check "the other is", zepkit.ZepMousePointer.PosX & " " & zepkit.ZepMousePointer.PosY, "25 14"
pointer.GetPos
Check "read", pointer.PosX & " " & pointer.PosY & " " & pointer.Changed, "25 14 False"

On Error Resume Next
pointer.SetPos 1, "abc"
Check "no number", Err.Number, -2147220479
Check "no number: source", Err.Source, "Zepkit10.MousePointer"
Err.Clear
On Error GoTo 0
Check "the pointer stays", zepkit.ZepMousePointer.PosX, 25
here.SetPos
WScript.Echo "end of script"

Sub Check(what, actual, expected)
    If actual = expected Then
        WScript.Echo "ok " & what
    Else
        WScript.Echo "FAILED " & what & ": " & actual & " instead of " & expected
    End If
End Sub
