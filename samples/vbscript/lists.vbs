' Delimited lists: split, changed and joined.
'     cscript //nologo lists.vbs
Option Explicit

Dim zepkit, item, list
Set zepkit = CreateObject("Zepkit10.Global")

' What stands between quotes is one item, whatever it holds.
WScript.Echo "Items"
For Each item In zepkit.ListToCollection("Ada ""Grace Murray"" Edsger", " ", """", """")
    WScript.Echo "  " & item
Next

' A List keeps its items and reads as one text; quotes come by themselves.
Set list = CreateObject("Zepkit10.List")
list.Delimiter = ","
list.QuoteBegin = """"
list.QuoteEnd = """"
list.ListString = "red,green,blue"
list.AddItem "black, white", 1
list.RemoveItem 3
WScript.Echo "List with " & list.Count & " items: " & list.ListString
