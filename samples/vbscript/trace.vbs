' Trace output: indented lines, delivered to members of a program's own objects.
'     cscript //nologo trace.vbs
Option Explicit

Class Page_
    Public Text
End Class

Dim zepkit, page
Set zepkit = CreateObject("Zepkit10.Global")
Set page = New Page_

' 0: the text is appended to a property. 1 assigns it, 2 calls a method with it.
zepkit.DebugPrintOuts.Add page, "Text", 0

zepkit.DebugPrint "+ Load"
zepkit.DebugPrint "+ Read file"
zepkit.DebugPrint "100 lines"
zepkit.DebugPrint "- Read file"
zepkit.DebugPrint "Check ", True
zepkit.DebugPrint "passed"
zepkit.DebugPrint "~ a remark at the margin"
zepkit.DebugPrint "- Load"
WScript.Echo page.Text
zepkit.DebugPrintOuts.Clear
