' Terms, variables that follow each other, and errors, from a script.
'     cscript //nologo terms.vbs
Option Explicit

Dim zepkit, expression, variables, variable, term
Set zepkit = CreateObject("Zepkit10.Global")

' A term without variables needs nothing but Compute.
WScript.Echo "Compute"
For Each term In Array("1+2*3", "(1+2)*3", "2^3^2", "SQR(2)", "|3-5|", "4*ATN(1)")
    WScript.Echo "  " & Left(term & Space(12), 12) & "= " & zepkit.Compute(term)
Next

' Letters are looked up in a set of variables; a set adds the ones it does not know.
Set variables = zepkit.VarSets.Add("circle")
Set expression = CreateObject("Zepkit10.Expression")
Set expression.VarSet = variables
expression.EString = "2*SIN(x)^2+|y-1|"
WScript.Echo ""
WScript.Echo expression.EString
Dim x
For x = 0 To 3
    variables("x").Value = x
    variables("y").Value = x / 2
    WScript.Echo "  x = " & x & ", y = " & x / 2 & ": " & FormatNumber(expression.Value, 6)
Next

' A variable's value is its Expression's, so variables may follow others.
variables("r").Value = 2
variables("p").Expression.EString = "4*ATN(1)"
variables("c").Expression.EString = "2*p*r"
variables("a").Expression.EString = "c*r/2"
WScript.Echo ""
WScript.Echo "A circle of radius r"
ShowCircle
variables("r").Value = 10
ShowCircle
WScript.Echo "  the set holds " & variables.Count & " variables:"
For Each variable In variables
    WScript.Echo "    " & variable.Name & " = " & variable.Expression.EString
Next

' Errors have a number, a source and a text.
WScript.Echo ""
WScript.Echo "Errors"
For Each term In Array("1/0", "SQR(0-1)", "EXP(1000)", "2*(3+4", "1+", "2 + 3")
    ShowError term
Next

variables.Delete

Sub ShowCircle()
    WScript.Echo "  r = " & variables("r").Value & ": circumference " & _
        FormatNumber(variables("c").Value, 4) & ", area " & FormatNumber(variables("a").Value, 4)
End Sub

Sub ShowError(term)
    Dim result
    On Error Resume Next
    expression.EString = term
    If Err.Number = 0 Then result = expression.Value
    If Err.Number = 0 Then
        WScript.Echo "  " & Left(term & Space(12), 12) & "= " & result
    Else
        WScript.Echo "  " & Left(term & Space(12), 12) & Err.Number & ", " & Err.Source & ": " & Err.Description
    End If
    On Error GoTo 0
End Sub
