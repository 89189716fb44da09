{ The conversation in Free Pascal, early bound through the unit that it imports from the type library:
      importtl zepkit10.dll
      fpc -Twin64 early_bound.pas }
program EarlyBound;
{$mode delphi}{$H+}
uses
  SysUtils, Variants, ActiveX, ComObj, Zepkit10_1_0_TLB;

type
  { What is heard of a counter, a buffer and a letter. }
  TListener = class
    procedure CounterValueChanged(Sender: TObject; Now, Before: Integer);
    procedure BufferBeforeROChange(Sender: TObject; Now: WordBool; var Cancel: WordBool);
    procedure LetterStatusChange(Sender: TObject; Status: ZepDocHandStat);
  end;

var
  Zepkit: _Global;
  Circle: _VarSet;
  Listener: TListener;

procedure TListener.CounterValueChanged(Sender: TObject; Now, Before: Integer);
begin
  WriteLn('  event: the counter goes from ', Before, ' to ', Now);
end;

procedure TListener.BufferBeforeROChange(Sender: TObject; Now: WordBool; var Cancel: WordBool);
begin
  WriteLn('  event: may the buffer be protected? No.');
  Cancel := True;
end;

procedure TListener.LetterStatusChange(Sender: TObject; Status: ZepDocHandStat);
begin
  WriteLn('  event: the status is ', Status);
end;

{ The lower half of the number is that of ZepErrors or of the runtime error. }
procedure ShowError(Error: EOleException);
begin
  WriteLn('  error ', Error.ErrorCode and $FFFF, ': ', Error.Message);
  WriteLn('    raised by ', Error.Source);
end;

function AddSet(const Name: string): _VarSet;
var
  Key: OleVariant;
begin
  Key := Name;
  Result := Zepkit.VarSets.Add(Key);
end;

procedure Terms;
var
  Letters: _VarSet;
  Term: _Expression;
begin
  WriteLn('Terms');
  WriteLn('  2*SIN(0)^2+|1-3| is ', FloatToStr(Zepkit.Compute('2*SIN(0)^2+|1-3|')));
  Letters := AddSet('letters');
  Letters['x'].Value := 3;
  Term := CoExpression.Create;
  Term.VarSet := Letters;
  Term.EString := 'x^2/4';
  WriteLn('  x^2/4 is ', FloatToStr(Term.Value), ' where x is 3');
  Letters.Delete;
end;

{ A variable holds a number or a term, which follows the variables that it names. }
procedure Variables;
begin
  WriteLn('Variables');
  Circle['r'].Value := 2;
  Circle['d'].Expression.EString := '2*r';
  WriteLn('  radius 2, diameter ', FloatToStr(Circle['d'].Value));
  Circle['r'].Value := 5;
  WriteLn('  radius 5, diameter ', FloatToStr(Circle['d'].Value));
end;

procedure Collections;
var
  Items: IEnumVARIANT;
  Item: OleVariant;
  Variable: _Variable;
  Fetched: LongWord;
begin
  WriteLn('Collections');
  Items := Circle.NewEnum as IEnumVARIANT;
  while Items.Next(1, Item, Fetched) = S_OK do
  begin
    Variable := IDispatch(Item) as _Variable;
    WriteLn('  ', Variable.Name, ' = ', Variable.Expression.EString);
  end;
  WriteLn('  ', Circle.Count, ' variables, the first is ', Circle[Integer(1)].Name);
end;

{ A class of the unit that begins with TEvs makes an object, its ComServer, and hears its events. }
procedure Events;
var
  Counter: TEvsCounter;
  Buffer: TEvsZepVariant;
begin
  WriteLn('Events');
  Counter := TEvsCounter.Create(nil);
  Counter.OnValueChanged := Listener.CounterValueChanged;
  Counter.ComServer.Increment(3);
  Counter.ComServer.Decrement(1);
  WriteLn('  the counter is at ', Counter.ComServer.Value);
  Counter.Free;

  Buffer := TEvsZepVariant.Create(nil);
  Buffer.OnBeforeROChange := Listener.BufferBeforeROChange;
  try
    Buffer.ComServer.ReadOnly := True;
  except
    on Error: EOleException do ShowError(Error);
  end;
  Buffer.Free;
end;

{ A view shows a part of a buffer; both follow each other. The importer of Free Pascal loses all but the
  first argument of a property: properties with more, as RangeString here, are late bound. }
procedure Buffers;
var
  Buffer, View: _ZepVariant;
begin
  WriteLn('Buffers');
  Buffer := CoZepVariant.Create;
  Buffer.DataString := 'Dear Ada';
  View := CoZepVariant.Create;
  View.ConnectAsRange(Buffer, 6, 3, False);
  View.DataString := 'Grace';
  WriteLn('  ', Buffer.DataString);
  OleVariant(Buffer).RangeString[6, 5] := WideString('GRACE');
  WriteLn('  ', View.DataString, ', ', View.RangeLength, ' bytes from byte ', View.RangeStart);
  WriteLn('  the first byte is ', Buffer.DataByte[1]);
end;

procedure Document;
var
  Sink: TEvsDocHand;
  Letter: _DocHand;
  Path: string;
begin
  WriteLn('Document');
  Path := GetTempDir + 'zepkit10-letter.txt';
  Sink := TEvsDocHand.Create(nil);
  Letter := Sink.ComServer;
  Letter.NewFile;
  Letter.Content.DataString := 'Dear Ada';
  Letter.SaveAs(Path);
  Sink.OnStatusChange := Listener.LetterStatusChange;
  OleVariant(Letter.Content).RangeString[6, 3] := WideString('Grace');
  Letter.Save;
  Letter.CloseFile;
  Letter.OpenFile(Path, False);
  WriteLn('  ', Letter.FileTitle, ': ', Letter.Content.DataString);
  Letter.CloseFile;
  Sink.Free;
  DeleteFile(Path);
end;

procedure Lists;
var
  List: _List;
begin
  WriteLn('Lists');
  List := CoList.Create;
  List.ListString := 'red green blue';
  List.AddItem('black', 1);
  List.RemoveItem(3);
  WriteLn('  ', List.Count, ' colours: ', List.ListString);
end;

{ Arrays of one type come and go as PSafeArray, which a Variant takes over. }
procedure Arrays;
var
  Words, Both, Number, Numbers: OleVariant;
  Several: PSafeArray;
  Last: Integer;
begin
  WriteLn('Arrays');
  TVarData(Words).vArray := Pointer(Zepkit.ListToStringArray('one two three', ' ', '', ''));
  TVarData(Words).vType := varArray or varOleStr;
  Last := VarArrayHighBound(Words, 1);
  WriteLn('  word ', Last, ' is ', Words[Last]);
  Both := Zepkit.MergeArrays(Zepkit.CutArray(Words, 2, 2), Words, 1);
  WriteLn('  ', Zepkit.StringArrayToList(Both, '-', '', ''));
  Numbers := VarArrayOf([3, 12, 7]);
  Several := PSafeArray(TVarData(Numbers).vArray);
  WriteLn('  the greatest is ', Zepkit.Max(Several));
  Number := 5;
  Zepkit.Incr(Number, 2);
  WriteLn('  5 and 2 more are ', Number);
end;

procedure Errors;
var
  Term: _Expression;
begin
  WriteLn('Errors');
  Term := CoExpression.Create;
  Term.EString := '1/0';
  try
    Term.Value;
  except
    on Error: EOleException do ShowError(Error);
  end;
  try
    Zepkit.VarSets['nowhere'];
  except
    on Error: EOleException do ShowError(Error);
  end;
end;

begin
  CoInitialize(nil);
  Zepkit := CoGlobal.Create;
  Circle := AddSet('circle');
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
  Circle := nil;
  Zepkit := nil;
  CoUninitialize;
end.
