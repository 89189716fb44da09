' Uses Zepkit10 without registration, with the system's Microsoft.Windows.ActCtx.
' Beside this script lie script.manifest and, of the script host's bitness (C:\Windows\System32\cscript.exe is
' 64-bit, C:\Windows\SysWOW64\cscript.exe 32-bit), zepkit10.dll and Zepkit10.Classes.manifest.
' Wine has no Microsoft.Windows.ActCtx.
Set files = CreateObject("Scripting.FileSystemObject")
Set context = CreateObject("Microsoft.Windows.ActCtx")
context.Manifest = files.GetParentFolderName(WScript.ScriptFullName) & "\script.manifest"
Set zepkit = context.CreateObject("Zepkit10.Global")
WScript.Echo zepkit.Compute("2*SIN(0)^2+|1-3|")  ' 2
