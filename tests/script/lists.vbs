' Lists, collections and arrays from a script.
Option Explicit
Dim zepkit, list, items, item, texts, joined, empties, merged, cut, found, i
Set zepkit = CreateObject("Zepkit10.Global")

Set items = zepkit.ListToCollection("one ""two three"" four", " ", """", """")
Check "items of a text", items.Count, 3
Check "by position", items(2), "two three"
joined = ""
For Each item In items
    joined = joined & "[" & item & "]"
Next
Check "For Each over a collection", joined, "[one][two three][four]"
Check "back to a text", zepkit.CollectionToList(items, ",", "(", ")"), "one,two three,four"
items.Add "five", "key"
Check "by key", items("KEY"), "five"
items.Remove 1
Check "the rest", zepkit.CollectionToList(items, ","), "two three,four,five"

Set list = CreateObject("Zepkit10.List")
list.Delimiter = ";"
list.ListString = "a;b;;c"
Check "items of a list", list.Count, 4
list.AddItem "d"
list.AddItem "start", 1
list.RemoveItem 4
list.Item(2) = "A"
Check "a changed list", list.ListString, "start;A;b;c;d"
joined = ""
For Each item In list
    joined = joined & item
Next
Check "For Each over a list", joined, "startAbcd"
Set list.Items = items
Check "a list takes a collection", list.ListString, "two three;four;five"

' A collection of the script's own: Count and Item are enough.
Class Pair
    Public Property Get Count
        Count = 2
    End Property
    Public Function Item(position)
        Item = "item " & position
    End Function
End Class
Check "a collection of the script's", zepkit.CollectionToList(New Pair, ","), "item 1,item 2"
Set list.Items = New Pair
Check "a list takes it", list.ListString, "item 1;item 2"
Set list.Items = Nothing
Check "a list takes nothing", list.Count, 0

' A script cannot index an array of strings; TransformPArray makes one of Variants.
texts = zepkit.ListToStringArray("a b c")
texts = zepkit.TransformPArray(texts)
Check "an array of Variants", TypeName(texts), "Variant()"
Check "its lower bound", LBound(texts), 1
Check "its elements", texts(1) & texts(2) & texts(3), "abc"

merged = zepkit.MergeArrays(Array(1, 2), Array(3), 1)
Check "merged from 1", LBound(merged) & " to " & UBound(merged), "1 to 3"
Check "merged elements", merged(1) & merged(2) & merged(3), "123"
cut = zepkit.CutArray(Array(0, 1, 2, 3, 4, 5, 6, 7, 8, 9), 3, 2)
Check "a cut keeps its indexes", LBound(cut) & " to " & UBound(cut), "3 to 4"
Check "a cut's elements", cut(3) & cut(4), "34"
cut = zepkit.TransformArray(cut, 0)
Check "from another index", cut(0) & cut(1), "34"
found = False
merged = zepkit.TransformPArray(Array(1, Array(2, 3), 4), found)
Check "inner arrays found", found, True
Check "inner arrays flattened", UBound(merged) & ":" & merged(1) & merged(2) & merged(3), "3:234"
Check "an array without elements", zepkit.IsArrayEmpty(Array()), True
Check "an array with elements", zepkit.IsArrayEmpty(Array(1)), False
Dim fixed(3)
Check "upper bound", zepkit.ZepUBound(fixed), 3
Check "lower bound of none", zepkit.ZepLBound(5), 0
Check "upper bound of none", zepkit.ZepUBound(5), -1
Check "upper bound of none, chosen", zepkit.ZepUBound(5, 7), 7

Check "Max", zepkit.Max(1, 2, 3), 3
Check "Min", zepkit.Min(3, 1, 2), 1
Check "Max of texts", zepkit.Max(3, "12", 7), "12"
Check "Max of arrays", zepkit.Max(1, Array(2, Array(9, 4)), 3), 9

On Error Resume Next
i = zepkit.Max()
Check "Max of nothing", Err.Number, -2147220466
Check "Max of nothing: source", Err.Source, "Zepkit10.Global"
Err.Clear
i = zepkit.Max(1, "x")
Check "Max of a word", Err.Number, -2147220466
Err.Clear
i = list.Item(1)
Check "an item outside", Err.Number, -2147220461
Check "an item outside: text", Err.Description, "Index out of range"
Err.Clear
list.Delimiter = ""
Check "no delimiter", Err.Number, -2147220478
Err.Clear
items.Add 5
i = zepkit.CollectionToList(items)
Check "a number in a list", Err.Number, -2147220466
Err.Clear
i = items.Item("nowhere")
Check "an unknown key", Err.Number, 5
Err.Clear
i = zepkit.CutArray(Array(1, 2), 1, 2)
Check "a cut outside", Err.Number, -2147220466
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
