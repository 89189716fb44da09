; The conversation in AutoHotkey 2, late bound. Not run by the tests.
;     AutoHotkey64.exe autohotkey.ahk | more
#Requires AutoHotkey v2.0

zepkit := ComObject("Zepkit10.Global")
circle := zepkit.VarSets.Add("circle")
Terms()
Variables()
Collections()
Events()
Buffers()
Document()
Lists()
Arrays()
Errors()
circle.Delete()

Print(line) {
    FileAppend(line "`n", "*")
}

Terms() {
    Print("Terms")
    Print("  2*SIN(0)^2+|1-3| is " Format("{:g}", zepkit.Compute("2*SIN(0)^2+|1-3|")))
    letters := zepkit.VarSets.Add("letters")
    letters.Item("x").Value := 3
    term := ComObject("Zepkit10.Expression")
    term.VarSet := letters
    term.EString := "x^2/4"
    Print("  x^2/4 is " Format("{:g}", term.Value) " where x is 3")
    letters.Delete()
}

; A variable holds a number or a term, which follows the variables that it names.
Variables() {
    Print("Variables")
    circle.Item("r").Value := 2
    circle.Item("d").Expression.EString := "2*r"
    Print("  radius 2, diameter " Format("{:g}", circle.Item("d").Value))
    circle.Item("r").Value := 5
    Print("  radius 5, diameter " Format("{:g}", circle.Item("d").Value))
}

Collections() {
    Print("Collections")
    for variable in circle
        Print("  " variable.Name " = " variable.Expression.EString)
    Print("  " circle.Count " variables, the first is " circle.Item(1).Name)
}

Events() {
    Print("Events")
    counter := ComObject("Zepkit10.Counter")
    ComObjConnect(counter, "Counter_")
    counter.Increment(3)
    counter.Decrement()
    Print("  the counter is at " counter.Value)

    buffer := ComObject("Zepkit10.ZepVariant")
    ComObjConnect(buffer, "Buffer_")
    try
        buffer.ReadOnly := true
    catch OSError as failure
        ShowError(failure)
}

Counter_ValueChanged(now, before, *) {
    Print("  event: the counter goes from " before " to " now)
}

Buffer_BeforeROChange(now, cancel, *) {
    Print("  event: may the buffer be protected? No.")
    cancel[] := true
}

; A view shows a part of a buffer; both follow each other.
Buffers() {
    Print("Buffers")
    buffer := ComObject("Zepkit10.ZepVariant")
    buffer.DataString := "Dear Ada"
    view := buffer.Range(6, 3)
    view.DataString := "Grace"
    Print("  " buffer.DataString)
    buffer.RangeString[6, 5] := "GRACE"
    Print("  " view.DataString ", " view.RangeLength " bytes from byte " view.RangeStart)
    Print("  the first byte is " buffer.DataByte[1])
}

Document() {
    Print("Document")
    path := A_Temp "\zepkit10-letter.txt"
    letter := ComObject("Zepkit10.DocHand")
    letter.NewFile()
    letter.Content.DataString := "Dear Ada"
    letter.SaveAs(path)
    ComObjConnect(letter, "Letter_")
    letter.Content.RangeString[6, 3] := "Grace"
    letter.Save()
    letter.CloseFile()
    letter.OpenFile(path)
    Print("  " letter.FileTitle ": " letter.Content.DataString)
    letter.CloseFile()
    FileDelete(path)
}

Letter_StatusChange(status, *) {
    Print("  event: the status is " status)
}

Lists() {
    Print("Lists")
    list := ComObject("Zepkit10.List")
    list.ListString := "red green blue"
    list.AddItem("black", 1)
    list.RemoveItem(3)
    Print("  " list.Count " colours: " list.ListString)
}

Arrays() {
    Print("Arrays")
    words := zepkit.ListToStringArray("one two three")
    last := words.MaxIndex()
    Print("  word " last " is " words[last])
    both := zepkit.MergeArrays(zepkit.CutArray(words, 2, 2), words, 1)
    Print("  " zepkit.StringArrayToList(both, "-"))
    Print("  the greatest is " zepkit.Max(3, 12, 7))

    ; What a member changes is passed as a Variant by reference.
    memory := Buffer(24, 0)
    number := ComValue(0x400C, memory.Ptr)
    number[] := 5
    zepkit.Incr(number, 2)
    Print("  5 and 2 more are " number[])
}

Errors() {
    Print("Errors")
    term := ComObject("Zepkit10.Expression")
    term.EString := "1/0"
    try
        value := term.Value
    catch OSError as failure
        ShowError(failure)
    try
        set := zepkit.VarSets.Item("nowhere")
    catch OSError as failure
        ShowError(failure)
}

; The message holds several lines. The lower half of the number is that of ZepErrors or of the runtime error.
ShowError(failure) {
    RegExMatch(failure.Message, "m)^Description:\s*(.*?)\s*$", &text)
    RegExMatch(failure.Message, "m)^Source:\s*(.*?)\s*$", &source)
    Print("  error " (failure.Number & 0xFFFF) ": " text[1])
    Print("    raised by " source[1])
}
