' Terms from a script: values, texts, conversions, errors.
Option Explicit
Dim zepkit, expression
Set zepkit = CreateObject("Zepkit10.Global")
Set expression = CreateObject("Zepkit10.Expression")

Check "a new expression is 0", expression.Value, 0
Check "the value is the default member", expression + 1, 1
Check "Compute", zepkit.Compute("2*SIN(0)^2+|0-3|"), 3
Check "Compute takes a number as a term", zepkit.Compute(42), 42
Check "powers associate to the left", zepkit.Compute("2^3^2"), 64
Check "no unary minus", zepkit.Compute("2*-3"), -3

expression.EString = "  ((1+2)*3)  "
Check "the text comes without brackets", expression.EString, "1+2*3"
Check "the brackets counted", expression.Value, 9
expression.Value = 2.5
Check "a number becomes the term", expression.EString, "2.5"
expression.Value = -2.5
Check "a negative number reads back", expression.Value, -2.5
expression.Clear
Check "Clear", expression.Value, 0

Check "Transform operation to priority", expression.Transform(CLng(5), 0), 3
Check "Transform operation to text", expression.Transform(CLng(16), 1), "("
Check "Transform text to token", expression.Transform("sin(x)+1", 4), "sin"
Check "Transform text to operation", expression.Transform("cos", 2), 10

CheckError "a division by zero", "1/0", 11, "Zepkit10.Expression", "Division by zero"
CheckError "an overflow", "EXP(1000)", 6, "Zepkit10.Expression", "Overflow"
CheckError "a negative root", "SQR(0-1)", 5, "Zepkit10.Expression", "Invalid procedure call or argument"
CheckError "a bracket never closed", "(1+2", -2147220479, "Zepkit10.Expression", "Bad parameter (e. g. a string of wrong length)"
CheckError "a bad first character", "$", -2147220478, "Zepkit10.Expression", "Bad Value assigned to property (e. g. a string of wrong length)"
CheckError "a blank inside", "1 +2", -2147220466, "Zepkit10.Expression", "Bad property or method call"
CheckError "operands in a row", "(1+2)(3+4)", -2147220471, "Zepkit10.Expression", "Error while extracting a subterm"
CheckError "a variable without a set", "x+1", -2147220470, "Zepkit10.Expression", "Procedural call in bad context"

On Error Resume Next
zepkit.Compute "1/0"
Check "Compute folds errors: number", Err.Number, -2147220474
Check "Compute folds errors: source", Err.Source, "Zepkit10"
Check "Compute folds errors: text", Err.Description, "Bad character in function term"
Err.Clear
zepkit.Compute
Check "an argument is required", Err.Number, 450
Err.Clear
zepkit.Compute "1", "2"
Check "one argument is enough", Err.Number, 450
Err.Clear
zepkit.NoSuchMember
Check "unknown members are refused", Err.Number, 438
Err.Clear
expression.Value = "abc"
Check "text is no number", Err.Number, 13
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

Sub CheckError(what, term, number, source, description)
    Dim value
    On Error Resume Next
    expression.EString = term
    If Err.Number = 0 Then value = expression.Value
    Check what & ": number", Err.Number, number
    Check what & ": source", Err.Source, source
    Check what & ": description", Err.Description, description
    Err.Clear
    On Error GoTo 0
End Sub
