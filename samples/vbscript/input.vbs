' The keyboard and the mouse pointer: what is pressed, a setting for a while, and a way on the screen.
'     cscript //nologo input.vbs
Option Explicit
Dim zepkit, keyboard, delay, start, pointer, i
Set zepkit = CreateObject("Zepkit10.Global")

' Whether keys are down and toggles on.
Set keyboard = zepkit.Keyboard
If keyboard.Shift Or keyboard.Control Then WScript.Echo "Started with a key held down."
WScript.Echo "Any key by its code, 27 is Escape: " & keyboard.KeyDown(27)

' A longer delay before keys repeat, for this session only.
keyboard.SaveChanges = False
delay = keyboard.Delay
keyboard.Delay = 3
WScript.Echo "Keys repeat after about " & (keyboard.Delay + 1) * 250 & " ms."
keyboard.Delay = delay

' The pointer moves when SetPos is called, not before.
Set start = zepkit.ZepMousePointer
Set pointer = zepkit.ZepMousePointer
pointer.PosX = 100
pointer.PosY = 100
WScript.Echo "Edited, not moved yet: " & pointer.Changed
For i = 1 To 3
    pointer.SetPos
    WScript.Echo "The pointer is at " & zepkit.ZepMousePointer.PosX & ", " & zepkit.ZepMousePointer.PosY
    pointer.PosX = pointer.PosX + 50
Next
start.SetPos
