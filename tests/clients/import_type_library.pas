{ Writes the unit that Free Pascal imports from a type library, as its importtl does, which Debian lacks:
      import_type_library LIBRARY FOLDER }
program ImportTypeLibrary;
{$mode delphi}{$H+}
uses
  SysUtils, ActiveX, TypeLib;
begin
  CoInitialize(nil);
  with TTypeLibImporter.Create(nil) do
  begin
    InputFileName := WideString(ParamStr(1));
    Execute;
    { The importer of 3.2 writes a property that the compiler refuses: one with an argument that is an array. }
    UnitSource.Text := StringReplace(UnitSource.Text, ':PSafeArray dispid', ':OleVariant dispid', [rfReplaceAll]);
    UnitSource.SaveToFile(ParamStr(2) + '\' + UnitName + '.pas');
  end;
end.
