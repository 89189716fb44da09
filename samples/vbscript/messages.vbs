' A message board: parts of a program that do not know each other leave messages for each other.
'     cscript //nologo messages.vbs
Option Explicit

Dim zepkit, board, message
Set zepkit = CreateObject("Zepkit10.Global")
Set board = zepkit.GlobalMessages

board.Add "printer out of paper", "printer", "operator"
board.Add 42, "sensor"
board.Add "door open", "sensor", "operator", Array("front", 2)

' Messages keeps what it finds on the board, GetMessages takes it out.
WScript.Echo "For the operator"
For Each message In board.GetMessages(, , "operator")
    WScript.Echo "  " & message.Index & " from " & message.Source & ": " & message.Message
Next
WScript.Echo board.Count & " message left, the next one has the number " & board.LastIndex + 1
