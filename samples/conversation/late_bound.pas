{ The conversation in Free Pascal, late bound through Variants:
      fpc -Twin64 late_bound.pas
  Texts are passed as WideString, and positions as Integer: a bare 1 would be passed as a byte. }
program LateBound;
{$mode delphi}{$H+}
uses
  SysUtils, Variants, ActiveX, ComObj, EventSink;

type
  { What is heard of a counter, a buffer and a letter. Arguments arrive last first. }
  TListener = class
    procedure HearCounter(Sender: TObject; Event: Integer; const IID: TGUID; Locale: Integer; Flags: Word;
      Given: TDispParams; Outcome, ExcepInfo, ArgErr: Pointer);
    procedure HearBuffer(Sender: TObject; Event: Integer; const IID: TGUID; Locale: Integer; Flags: Word;
      Given: TDispParams; Outcome, ExcepInfo, ArgErr: Pointer);
    procedure HearLetter(Sender: TObject; Event: Integer; const IID: TGUID; Locale: Integer; Flags: Word;
      Given: TDispParams; Outcome, ExcepInfo, ArgErr: Pointer);
  end;

var
  Zepkit, Circle: OleVariant;
  Listener: TListener;

procedure TListener.HearCounter(Sender: TObject; Event: Integer; const IID: TGUID; Locale: Integer; Flags: Word;
  Given: TDispParams; Outcome, ExcepInfo, ArgErr: Pointer);
begin
  WriteLn('  event: the counter goes from ', Given.rgvarg[0].lVal, ' to ', Given.rgvarg[1].lVal);
end;

procedure TListener.HearBuffer(Sender: TObject; Event: Integer; const IID: TGUID; Locale: Integer; Flags: Word;
  Given: TDispParams; Outcome, ExcepInfo, ArgErr: Pointer);
begin
  if Event <> 1 then Exit; { BeforeROChange }
  WriteLn('  event: may the buffer be protected? No.');
  Given.rgvarg[0].pbool^ := True;
end;

procedure TListener.HearLetter(Sender: TObject; Event: Integer; const IID: TGUID; Locale: Integer; Flags: Word;
  Given: TDispParams; Outcome, ExcepInfo, ArgErr: Pointer);
begin
  if Event = 12 then WriteLn('  event: the status is ', Given.rgvarg[0].lVal); { StatusChange }
end;

{ Connects a handler to the events of a source, until the result is freed. }
function Listen(const Source: OleVariant; Handler: TInvokeEvent): TEventSink;
const
  DefaultSource = 1;
var
  Events: TGUID;
begin
  OleCheck((IDispatch(Source) as IProvideClassInfo2).GetGUID(DefaultSource, Events));
  Result := TEventSink.Create(nil);
  Result.OnInvoke := Handler;
  Result.Connect(IDispatch(Source), Events);
end;

{ The lower half of the number is that of ZepErrors or of the runtime error. }
procedure ShowError(Error: EOleException);
begin
  WriteLn('  error ', Error.ErrorCode and $FFFF, ': ', Error.Message);
  WriteLn('    raised by ', Error.Source);
end;

procedure Terms;
var
  Letters, Term: OleVariant;
begin
  WriteLn('Terms');
  WriteLn('  2*SIN(0)^2+|1-3| is ', Zepkit.Compute(WideString('2*SIN(0)^2+|1-3|')));
  Letters := Zepkit.VarSets.Add(WideString('letters'));
  Letters.Item(WideString('x')).Value := 3;
  Term := CreateOleObject('Zepkit10.Expression');
  Term.VarSet := Letters;
  Term.EString := WideString('x^2/4');
  WriteLn('  x^2/4 is ', Term.Value, ' where x is 3');
  Letters.Delete;
end;

{ A variable holds a number or a term, which follows the variables that it names. }
procedure Variables;
begin
  WriteLn('Variables');
  Circle.Item(WideString('r')).Value := 2;
  Circle.Item(WideString('d')).Expression.EString := WideString('2*r');
  WriteLn('  radius 2, diameter ', Circle.Item(WideString('d')).Value);
  Circle.Item(WideString('r')).Value := 5;
  WriteLn('  radius 5, diameter ', Circle.Item(WideString('d')).Value);
end;

procedure Collections;
var
  Items: IEnumVARIANT;
  Variable: OleVariant;
  Fetched: LongWord;
begin
  WriteLn('Collections');
  Items := IUnknown(Circle.NewEnum) as IEnumVARIANT;
  while Items.Next(1, Variable, Fetched) = S_OK do
    WriteLn('  ', Variable.Name, ' = ', Variable.Expression.EString);
  WriteLn('  ', Circle.Count, ' variables, the first is ', Circle.Item(Integer(1)).Name);
end;

procedure Events;
var
  Counter, Buffer: OleVariant;
  Counting, Guarding: TEventSink;
begin
  WriteLn('Events');
  Counter := CreateOleObject('Zepkit10.Counter');
  Counting := Listen(Counter, Listener.HearCounter);
  Counter.Increment(3);
  Counter.Decrement;
  WriteLn('  the counter is at ', Counter.Value);
  Counting.Free;

  Buffer := CreateOleObject('Zepkit10.ZepVariant');
  Guarding := Listen(Buffer, Listener.HearBuffer);
  try
    Buffer.ReadOnly := True;
  except
    on Error: EOleException do ShowError(Error);
  end;
  Guarding.Free;
end;

{ A view shows a part of a buffer; both follow each other. }
procedure Buffers;
var
  Buffer, View: OleVariant;
begin
  WriteLn('Buffers');
  Buffer := CreateOleObject('Zepkit10.ZepVariant');
  Buffer.DataString := WideString('Dear Ada');
  View := Buffer.Range(6, 3);
  View.DataString := WideString('Grace');
  WriteLn('  ', Buffer.DataString);
  Buffer.RangeString[6, 5] := WideString('GRACE');
  WriteLn('  ', View.DataString, ', ', View.RangeLength, ' bytes from byte ', View.RangeStart);
  WriteLn('  the first byte is ', Buffer.DataByte(1));
end;

procedure Document;
var
  Letter: OleVariant;
  Path: WideString;
  Listening: TEventSink;
begin
  WriteLn('Document');
  Path := WideString(GetTempDir + 'zepkit10-letter.txt');
  Letter := CreateOleObject('Zepkit10.DocHand');
  Letter.NewFile;
  Letter.Content.DataString := WideString('Dear Ada');
  Letter.SaveAs(Path);
  Listening := Listen(Letter, Listener.HearLetter);
  Letter.Content.RangeString[6, 3] := WideString('Grace');
  Letter.Save;
  Letter.CloseFile;
  Letter.OpenFile(Path);
  WriteLn('  ', Letter.FileTitle, ': ', Letter.Content.DataString);
  Letter.CloseFile;
  Listening.Free;
  DeleteFile(Path);
end;

procedure Lists;
var
  List: OleVariant;
begin
  WriteLn('Lists');
  List := CreateOleObject('Zepkit10.List');
  List.ListString := WideString('red green blue');
  List.AddItem(WideString('black'), 1);
  List.RemoveItem(3);
  WriteLn('  ', List.Count, ' colours: ', List.ListString);
end;

procedure Arrays;
var
  Words, Both, Number: OleVariant;
  Last: Integer;
begin
  WriteLn('Arrays');
  Words := Zepkit.ListToStringArray(WideString('one two three'));
  Last := VarArrayHighBound(Words, 1);
  WriteLn('  word ', Last, ' is ', Words[Last]);
  Both := Zepkit.MergeArrays(Zepkit.CutArray(Words, 2, 2), Words, 1);
  WriteLn('  ', Zepkit.StringArrayToList(Both, WideString('-')));
  WriteLn('  the greatest is ', Zepkit.Max(3, 12, 7));
  Number := 5;
  Zepkit.Incr(Number, 2);
  WriteLn('  5 and 2 more are ', Number);
end;

procedure Errors;
var
  Term, Found: OleVariant;
begin
  WriteLn('Errors');
  Term := CreateOleObject('Zepkit10.Expression');
  Term.EString := WideString('1/0');
  try
    Found := Term.Value;
  except
    on Error: EOleException do ShowError(Error);
  end;
  try
    Found := Zepkit.VarSets.Item(WideString('nowhere'));
  except
    on Error: EOleException do ShowError(Error);
  end;
end;

begin
  CoInitialize(nil);
  Zepkit := CreateOleObject('Zepkit10.Global');
  Circle := Zepkit.VarSets.Add(WideString('circle'));
  Terms;
  Variables;
  Collections;
  Events;
  Buffers;
  Document;
  Lists;
  Arrays;
  Errors;
  Circle.Delete;
  { Every object must be gone before COM is. }
  Circle := Unassigned;
  Zepkit := Unassigned;
  CoUninitialize;
end.
