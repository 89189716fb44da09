// The conversation in JScript, late bound:
//     cscript //nologo jscript.js
// JScript passes copies: it cannot answer an event, and sees no source of an error.
var zepkit = new ActiveXObject("Zepkit10.Global");
var circle = zepkit.VarSets.Add("circle");
terms();
variables();
collections();
events();
buffers();
document();
lists();
arrays();
errors();
circle.Delete();

function terms() {
  WScript.Echo("Terms");
  WScript.Echo("  2*SIN(0)^2+|1-3| is " + zepkit.Compute("2*SIN(0)^2+|1-3|"));
  var letters = zepkit.VarSets.Add("letters");
  letters.Item("x").Value = 3;
  var term = new ActiveXObject("Zepkit10.Expression");
  term.VarSet = letters;
  term.EString = "x^2/4";
  WScript.Echo("  x^2/4 is " + term.Value + " where x is 3");
  letters.Delete();
}

// A variable holds a number or a term, which follows the variables that it names.
function variables() {
  WScript.Echo("Variables");
  circle.Item("r").Value = 2;
  circle.Item("d").Expression.EString = "2*r";
  WScript.Echo("  radius 2, diameter " + circle.Item("d").Value);
  circle.Item("r").Value = 5;
  WScript.Echo("  radius 5, diameter " + circle.Item("d").Value);
}

function collections() {
  WScript.Echo("Collections");
  for (var each = new Enumerator(circle); !each.atEnd(); each.moveNext()) {
    WScript.Echo("  " + each.item().Name + " = " + each.item().Expression.EString);
  }
  WScript.Echo("  " + circle.Count + " variables, the first is " + circle.Item(1).Name);
}

function events() {
  WScript.Echo("Events");
  var counter = new ActiveXObject("Zepkit10.Counter");
  listen(counter, "counter_");
  counter.Increment(3);
  counter.Decrement();
  WScript.Echo("  the counter is at " + counter.Value);
}

// The script hosts of Windows pass events on, Wine's does not.
function listen(source, prefix) {
  try {
    WScript.ConnectObject(source, prefix);
  } catch (error) {
  }
}

function counter_ValueChanged(now, before) {
  WScript.Echo("  event: the counter goes from " + before + " to " + now);
}

// A view shows a part of a buffer; both follow each other.
function buffers() {
  WScript.Echo("Buffers");
  var buffer = new ActiveXObject("Zepkit10.ZepVariant");
  buffer.DataString = "Dear Ada";
  var view = buffer.Range(6, 3);
  view.DataString = "Grace";
  WScript.Echo("  " + buffer.DataString);
  buffer.RangeString(6, 5) = "GRACE";
  WScript.Echo("  " + view.DataString + ", " + view.RangeLength + " bytes from byte " + view.RangeStart);
  WScript.Echo("  the first byte is " + buffer.DataByte(1));
}

function document() {
  WScript.Echo("Document");
  var system = new ActiveXObject("Scripting.FileSystemObject");
  var path = system.GetSpecialFolder(2) + "\\zepkit10-letter.txt";
  var letter = new ActiveXObject("Zepkit10.DocHand");
  letter.NewFile();
  letter.Content.DataString = "Dear Ada";
  letter.SaveAs(path);
  listen(letter, "letter_");
  letter.Content.RangeString(6, 3) = "Grace";
  letter.Save();
  letter.CloseFile();
  letter.OpenFile(path);
  WScript.Echo("  " + letter.FileTitle + ": " + letter.Content.DataString);
  letter.CloseFile();
  system.DeleteFile(path);
}

function letter_StatusChange(status) {
  WScript.Echo("  event: the status is " + status);
}

function lists() {
  WScript.Echo("Lists");
  var list = new ActiveXObject("Zepkit10.List");
  list.ListString = "red green blue";
  list.AddItem("black", 1);
  list.RemoveItem(3);
  WScript.Echo("  " + list.Count + " colours: " + list.ListString);
}

// Scripts index arrays of Variants only, which TransformPArray makes of any other array.
function arrays() {
  WScript.Echo("Arrays");
  var words = zepkit.ListToStringArray("one two three");
  var variants = new VBArray(zepkit.TransformPArray(words));
  WScript.Echo("  word " + variants.ubound() + " is " + variants.getItem(variants.ubound()));
  WScript.Echo("  " + zepkit.StringArrayToList(zepkit.MergeArrays(zepkit.CutArray(words, 2, 2), words, 1), "-"));
  WScript.Echo("  the greatest is " + zepkit.Max(3, 12, 7));
  WScript.Echo("  5 and 2 more are " + zepkit.Incr(5, 2));
}

function errors() {
  WScript.Echo("Errors");
  var term = new ActiveXObject("Zepkit10.Expression");
  term.EString = "1/0";
  showError(function () { return term.Value; });
  showError(function () { return zepkit.VarSets.Item("nowhere"); });
}

// The lower half of the number is that of ZepErrors or of the runtime error.
function showError(call) {
  try {
    call();
  } catch (error) {
    WScript.Echo("  error " + (error.number & 0xFFFF) + ": " + error.description);
  }
}
