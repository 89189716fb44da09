# The conversation in PowerShell, late bound. Not run by the tests.
#     powershell -File powershell.ps1        (PowerShell 7: pwsh -STA -File powershell.ps1)
# Handlers of events run between the statements, and cannot answer: BeforeROChange is left out.
$zepkit = New-Object -ComObject Zepkit10.Global
$circle = $zepkit.VarSets.Add('circle')

# The lower half of the number is that of ZepErrors or of the runtime error.
function Show-Error($record) {
    $cause = $record.Exception.GetBaseException()
    "  error $($cause.HResult -band 0xFFFF): $($cause.Message)"
    "    raised by $($cause.Source)"
}

'Terms'
"  2*SIN(0)^2+|1-3| is $($zepkit.Compute('2*SIN(0)^2+|1-3|'))"
$letters = $zepkit.VarSets.Add('letters')
$letters.Item('x').Value = 3
$term = New-Object -ComObject Zepkit10.Expression
$term.VarSet = $letters
$term.EString = 'x^2/4'
"  x^2/4 is $($term.Value) where x is 3"
$letters.Delete()

# A variable holds a number or a term, which follows the variables that it names.
'Variables'
$circle.Item('r').Value = 2
$circle.Item('d').Expression.EString = '2*r'
"  radius 2, diameter $($circle.Item('d').Value)"
$circle.Item('r').Value = 5
"  radius 5, diameter $($circle.Item('d').Value)"

'Collections'
foreach ($variable in $circle) { "  $($variable.Name) = $($variable.Expression.EString)" }
"  $($circle.Count) variables, the first is $($circle.Item(1).Name)"

'Events'
$counter = New-Object -ComObject Zepkit10.Counter
[void](Register-ObjectEvent $counter ValueChanged -Action {
    Write-Host "  event: the counter goes from $($args[1]) to $($args[0])"
})
$counter.Increment(3)
$counter.Decrement()
"  the counter is at $($counter.Value)"

# A view shows a part of a buffer; both follow each other.
'Buffers'
$buffer = New-Object -ComObject Zepkit10.ZepVariant
$buffer.DataString = 'Dear Ada'
$view = $buffer.Range(6, 3)
$view.DataString = 'Grace'
"  $($buffer.DataString)"
$buffer.RangeString(6, 5) = 'GRACE'
"  $($view.DataString), $($view.RangeLength) bytes from byte $($view.RangeStart)"
"  the first byte is $($buffer.DataByte(1))"

'Document'
$path = Join-Path $env:TEMP 'zepkit10-letter.txt'
$letter = New-Object -ComObject Zepkit10.DocHand
$letter.NewFile()
$letter.Content.DataString = 'Dear Ada'
$letter.SaveAs($path)
[void](Register-ObjectEvent $letter StatusChange -Action { Write-Host "  event: the status is $($args[0])" })
$letter.Content.RangeString(6, 3) = 'Grace'
$letter.Save()
$letter.CloseFile()
$letter.OpenFile($path)
"  $($letter.FileTitle): $($letter.Content.DataString)"
$letter.CloseFile()
Remove-Item $path

'Lists'
$list = New-Object -ComObject Zepkit10.List
$list.ListString = 'red green blue'
$list.AddItem('black', 1)
$list.RemoveItem(3)
"  $($list.Count) colours: $($list.ListString)"

'Arrays'
$words = $zepkit.ListToStringArray('one two three')
$last = $words.GetUpperBound(0)
"  word $last is $($words.GetValue($last))"
$both = $zepkit.MergeArrays($zepkit.CutArray($words, 2, 2), $words, 1)
"  $($zepkit.StringArrayToList($both, '-'))"
"  the greatest is $($zepkit.Max(3, 12, 7))"
[object]$number = 5
[void]$zepkit.Incr([ref]$number, 2)
"  5 and 2 more are $number"

'Errors'
$term = New-Object -ComObject Zepkit10.Expression
$term.EString = '1/0'
try { $zero = $term.Value } catch { Show-Error $_ }
try { $set = $zepkit.VarSets.Item('nowhere') } catch { Show-Error $_ }

$circle.Delete()
