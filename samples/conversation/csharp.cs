// The conversation in C#, early bound through the COM reference "Zepkit10 1.0" of Visual Studio. Not run by the tests.
// Build for the bitness of the DLL: x64 or x86.
using System;
using System.IO;
using Zepkit10;

static class Conversation
{
    static readonly Global zepkit = new Global();

    [STAThread]
    static void Main()
    {
        VarSet circle = zepkit.VarSets.Add("circle");
        Terms();
        Variables(circle);
        Collections(circle);
        Events();
        Buffers();
        Document();
        Lists();
        Arrays();
        Errors();
        circle.Delete();
    }

    static void Terms()
    {
        Console.WriteLine("Terms");
        Console.WriteLine($"  2*SIN(0)^2+|1-3| is {zepkit.Compute("2*SIN(0)^2+|1-3|")}");
        VarSet letters = zepkit.VarSets.Add("letters");
        letters["x"].Value = 3;
        var term = new Expression { VarSet = letters, EString = "x^2/4" };
        Console.WriteLine($"  x^2/4 is {term.Value} where x is 3");
        letters.Delete();
    }

    // A variable holds a number or a term, which follows the variables that it names.
    static void Variables(VarSet circle)
    {
        Console.WriteLine("Variables");
        circle["r"].Value = 2;
        circle["d"].Expression.EString = "2*r";
        Console.WriteLine($"  radius 2, diameter {circle["d"].Value}");
        circle["r"].Value = 5;
        Console.WriteLine($"  radius 5, diameter {circle["d"].Value}");
    }

    static void Collections(VarSet circle)
    {
        Console.WriteLine("Collections");
        foreach (Variable variable in circle)
            Console.WriteLine($"  {variable.Name} = {variable.Expression.EString}");
        Console.WriteLine($"  {circle.Count} variables, the first is {circle[1].Name}");
    }

    static void Events()
    {
        Console.WriteLine("Events");
        var counter = new Counter();
        counter.ValueChanged += (now, before) =>
            Console.WriteLine($"  event: the counter goes from {before} to {now}");
        counter.Increment(3);
        counter.Decrement();
        Console.WriteLine($"  the counter is at {counter.Value}");

        var buffer = new ZepVariant();
        buffer.BeforeROChange += (bool now, ref bool cancel) =>
        {
            Console.WriteLine("  event: may the buffer be protected? No.");
            cancel = true;
        };
        ShowError(() => buffer.ReadOnly = true);
    }

    // A view shows a part of a buffer; both follow each other.
    static void Buffers()
    {
        Console.WriteLine("Buffers");
        var buffer = new ZepVariant { DataString = "Dear Ada" };
        ZepVariant view = buffer.Range[6, 3];
        view.DataString = "Grace";
        Console.WriteLine($"  {buffer.DataString}");
        buffer.RangeString[6, 5] = "GRACE";
        Console.WriteLine($"  {view.DataString}, {view.RangeLength} bytes from byte {view.RangeStart}");
        Console.WriteLine($"  the first byte is {buffer.DataByte[1]}");
    }

    static void Document()
    {
        Console.WriteLine("Document");
        string path = Path.Combine(Path.GetTempPath(), "zepkit10-letter.txt");
        var source = new DocHand();
        _DocHand letter = source;  // NewFile is a method of _DocHand, and an event of DocHand as well
        letter.NewFile();
        letter.Content.DataString = "Dear Ada";
        letter.SaveAs(path);
        source.StatusChange += status => Console.WriteLine($"  event: the status is {(int)status}");
        letter.Content.RangeString[6, 3] = "Grace";
        letter.Save();
        letter.CloseFile();
        letter.OpenFile(path);
        Console.WriteLine($"  {letter.FileTitle}: {letter.Content.DataString}");
        letter.CloseFile();
        File.Delete(path);
    }

    static void Lists()
    {
        Console.WriteLine("Lists");
        var list = new List { ListString = "red green blue" };
        list.AddItem("black", 1);
        list.RemoveItem(3);
        Console.WriteLine($"  {list.Count} colours: {list.ListString}");
    }

    static void Arrays()
    {
        Console.WriteLine("Arrays");
        Array words = zepkit.ListToStringArray("one two three");  // from index 1
        int last = words.GetUpperBound(0);
        Console.WriteLine($"  word {last} is {words.GetValue(last)}");
        object both = zepkit.MergeArrays(zepkit.CutArray(words, 2, 2), words, 1);
        Console.WriteLine($"  {zepkit.StringArrayToList(both, "-")}");
        Array numbers = new object[] { 3, 12, 7 };
        Console.WriteLine($"  the greatest is {zepkit.Max(ref numbers)}");
        object number = 5;
        zepkit.Incr(ref number, 2);
        Console.WriteLine($"  5 and 2 more are {number}");
    }

    static void Errors()
    {
        Console.WriteLine("Errors");
        var term = new Expression { EString = "1/0" };
        ShowError(() => { double value = term.Value; });
        ShowError(() => { VarSet set = zepkit.VarSets["nowhere"]; });
    }

    // The lower half of the number is that of ZepErrors or of the runtime error. Some errors arrive as an exception of
    // .NET's own, such as a DivideByZeroException; most as a COMException.
    static void ShowError(Action call)
    {
        try
        {
            call();
        }
        catch (Exception error)
        {
            Console.WriteLine($"  error {error.HResult & 0xFFFF}: {error.Message}");
            Console.WriteLine($"    raised by {error.Source}");
        }
    }
}
