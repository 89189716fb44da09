// A counter and a variable set from JScript.
var counter = new ActiveXObject("Zepkit10.Counter");
check("starts at 0", counter.Value, 0);
counter.Increment();
counter.Increment(4);
counter.Decrement(2);
check("counts", counter.Value, 3);
counter.Value = "12";
check("text is converted", counter.Value, 12);
counter.Value = 2147483647;
checkError("overflow", function () { counter.Increment(); }, 6, "Overflow");
check("the value stays", counter.Value, 2147483647);

var zepkit = new ActiveXObject("Zepkit10.Global");
var variables = zepkit.VarSets.Add();
variables.Item("r").Value = 2;
var expression = new ActiveXObject("Zepkit10.Expression");
expression.VarSet = variables;
expression.EString = "4*ATN(1)*r^2";
check("an object is assigned without Set", expression.Value, Math.PI * 4);
check("one variable", variables.Count, 1);
variables.Add("x");
var names = "";
for (var all = new Enumerator(variables); !all.atEnd(); all.moveNext()) names += all.item().Name;
check("an Enumerator in order of insertion", names, "rx");
check("the default member of a collection", variables("r").Name, "r");
check("the default member of a variable", variables("r") * 3, 6);
checkError("an unnamed set", function () { return variables.Name; }, -2147220470,
           "Procedural call in bad context");
checkError("a foreign object", function () { expression.VarSet = counter; });
expression.VarSet = null;
checkError("no set", function () { return expression.Value; }, -2147220470,
           "Procedural call in bad context");
variables.Delete();
WScript.Echo("end of script");

function check(what, actual, expected) {
    WScript.Echo(actual === expected ? "ok " + what
                                     : "FAILED " + what + ": " + actual + " instead of " + expected);
}

function checkError(what, body, number, description) {
    try {
        body();
        WScript.Echo("FAILED " + what + ": no error");
    } catch (e) {
        // Runtime errors carry the facility in their upper half.
        var read = number > 0 ? e.number & 0xFFFF : e.number;
        if (number) check(what + ": number", read, number);
        else check(what, true, true);
        if (description) check(what + ": description", e.description, description);
    }
}
