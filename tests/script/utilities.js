// Lists, arrays, values, messages and trace output from JScript.
var zepkit = new ActiveXObject("Zepkit10.Global");

var items = zepkit.ListToCollection("a,\"b,c\"", ",", "\"", "\"");
check("items of a text", items.Count, 2);
check("an item", items(2), "b,c");
var joined = "";
for (var all = new Enumerator(items); !all.atEnd(); all.moveNext()) joined += "[" + all.item() + "]";
check("an Enumerator over a collection", joined, "[a][b,c]");
var list = new ActiveXObject("Zepkit10.List");
list.ListString = "x y";
list.Items = items;
check("a list takes a collection", list.ListString, "a b,c");
list.AddItem("z", 1);
check("an item before the first", list.Item(1), "z");
list.Items = null;
check("a list takes nothing", list.Count, 0);
var pair = { Count: 2, Item: function (position) { return "item " + position; } };
check("a collection of the script's", zepkit.CollectionToList(pair, ","), "item 1,item 2");

// JScript passes copies: what a member changes comes back as its result.
check("Incr", zepkit.Incr(5), 6);
check("Incr of a text", zepkit.Incr("5", 2), 7);
check("Max", zepkit.Max(1, 2, 3), 3);
check("Min of texts", zepkit.Min("10", "9"), "9");
check("FinalizeString", zepkit.FinalizeString("dir", "\\"), "dir\\");
check("a text as bytes and back", zepkit.ByteArrayToString(zepkit.StringToByteArray("Hi", 0), 0), "Hi");

// Arrays of Variants can be read through VBArray.
var texts = new VBArray(zepkit.TransformPArray(zepkit.ListToStringArray("a b c"))).toArray();
check("an array of texts", texts.length + texts.join(""), "3abc");

var board = new ActiveXObject("Zepkit10.Messages");
board.Add("hello", "A");
board.Add(1, "B");
check("a message", board(0).Message, "hello");
check("the number 1", board.GetMessages(1).First.Source, "B");
check("the others stay", board.Count, 1);

var target = { text: "", print: function (line) { this.text += line; } };
zepkit.DebugPrintOuts.Add(target, "print", 2);
target.text = "";
zepkit.DebugPrint("+ a");
zepkit.DebugPrint("b");
zepkit.DebugPrint("- c");
check("trace output", target.text, "+ a\r\n  b\r\n- c\r\n");
zepkit.DebugPrintOuts.Clear();

checkError("no message", function () { board.Add(null); }, -2147220466, "Bad property or method call");
checkError("Max of a word", function () { zepkit.Max(1, "x"); }, -2147220466, "Bad property or method call");
WScript.Echo("end of script");

function check(what, actual, expected) {
  WScript.Echo(actual === expected ? "ok " + what : "FAILED " + what + ": " + actual + " instead of " + expected);
}

function checkError(what, run, number, description) {
  try {
    run();
  } catch (error) {
    check(what, error.number, number);
    check(what + ": text", error.description, description);
    return;
  }
  check(what, "no error", number);
}
