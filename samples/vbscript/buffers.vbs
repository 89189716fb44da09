' A byte buffer: bytes, text in three encodings, and live views of its parts.
'     cscript //nologo buffers.vbs
Option Explicit

Dim buffer, view, i, codes
Set buffer = CreateObject("Zepkit10.ZepVariant")

' The same bytes read as text of one or of two bytes a character.
buffer.StringType = 2
buffer.DataString = "Hello world"
WScript.Echo buffer.StringLength & " characters in " & buffer.ByteLength & " bytes"
buffer.StringType = 1
buffer.DataString = "Hello world"
For i = 1 To 5
    codes = codes & " " & buffer.DataByte(i)
Next
WScript.Echo "The first bytes are" & codes

' A view and its buffer follow each other.
Set view = buffer.Range(7, 5)
view.DataString = "there, world"
WScript.Echo buffer
buffer.RangeString(7, 5) = "THERE"
WScript.Echo view & ", " & view.RangeLength & " bytes from " & view.RangeStart
view.DisconnectAsRange
view.DataString = "alone"
WScript.Echo buffer
