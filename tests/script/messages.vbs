' The message board from a script.
Option Explicit
Dim zepkit, board, message, taken, order, held, parameters
Set zepkit = CreateObject("Zepkit10.Global")
Set board = CreateObject("Zepkit10.Messages")
Check "nothing posted yet", board.LastIndex, -1
board.Add "hello", "A", "B"
board.Add 5, "A"
board.Add "bye", "C", "B", Array(1, 2)
Check "posted", board.Count, 3
Check "the last index", board.LastIndex, 2
Check "by posting index", board(0).Message, "hello"
Check "by position", board.Item(1, False).Source, "A"
Check "the first", board.First.Destination, "B"
Check "the last", board.Last.Index, 2
parameters = board.Last.Parameters
Check "parameters", parameters(1), 2
Check "today", Int(board.Last.Time), Date
Check "no destination", IsNull(board.Item(1).Destination), True
order = ""
For Each message In board
    order = order & message.Index
Next
Check "For Each in posting order", order, "012"

Set held = board.Item(1)
Set taken = board.Messages(, "A")
Check "a copy of what A posted", taken.Count & " " & board.Count, "2 3"
Set taken = board.GetMessages(, "A")
Check "what A posted, taken out", taken.Count & " " & board.Count, "2 1"
Check "posting indexes stay", taken.First.Index & taken.Last.Index, "01"
Check "a message that is gone", held.Deleted, True
Check "it still tells its index", held.Index, 1
board.First.Delete
Check "deleted", board.Count, 0
board.Add "again"
Check "indexes go on", board.LastIndex, 3
zepkit.GlobalMessages.Add "for all"
Check "the board of all", zepkit.Zep.GlobalMessages.First.Message, "for all"

On Error Resume Next
board.Add ""
Check "an empty message", Err.Number, -2147220466
Check "an empty message: source", Err.Source, "Zepkit10.Messages"
Err.Clear
order = held.Message
Check "a deleted message", Err.Number, -2147220480
Check "a deleted message: source", Err.Source, "Zepkit10.Message"
Err.Clear
Set message = board.Item(99)
Check "an unknown posting index", Err.Number, -2147220466
Err.Clear
Set taken = board.GetMessages()
Check "no criterion", Err.Number, -2147220466
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
