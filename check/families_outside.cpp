#include "families.h"

namespace zepcheck {
namespace {

void Documents(const Workbench& bench) {
  const std::wstring path = bench.folder + L"\\letter.txt";
  const Object document = Object::Create(L"Zepkit10.DocHand");
  const Object text = Object::Create(L"Zepkit10.ZepVariant");
  text.Put(L"DataString", {L"Dear Grace"});
  document.Get(L"NewFile");
  document.Set(L"Content", {text});
  document.Get(L"SaveAs", {path});
  document.Get(L"CloseFile");
  document.Get(L"OpenFile", {path});
  Expect(L"the title of a document", document.Get(L"FileTitle"), L"letter.txt");
  const Object content = document.Get(L"Content").AsObject();
  Expect(L"the content of a document", content.Get(L"DataString"), L"Dear Grace");
  document.Get(L"CloseFile");
}

void Files(const Workbench& bench) {
  const std::wstring folder = bench.folder + L"\\settings";
  const std::wstring ini = folder + L"\\program.ini";
  Expect(L"making a folder", bench.zepkit.Get(L"MakeDir", {folder}), L"True");
  bench.zepkit.Put(L"IniEntry", {ini, L"Window", L"Width", L"640"});
  Expect(L"an INI entry", bench.zepkit.Get(L"IniEntry", {ini, L"Window", L"Width"}), L"640");
  Value found;
  const std::vector<Value> what = {bench.folder, L"*.ini", Value::Reference(found), true};
  Expect(L"the number of INI files", bench.zepkit.Get(L"GetFiles", what), L"1");
}

void LogFile(const Workbench& bench) {
  const std::wstring log = bench.folder + L"\\program.log";
  bench.zepkit.Put(L"LogFile", {log});
  bench.zepkit.Get(L"LogText", {L"started"});
  Expect(L"whether there is a log file", bench.zepkit.Get(L"IsValidFile", {log}), L"True");
  bench.zepkit.Put(L"LogFile", {L""});
}

/// Only looks, and changes nothing.
void Input(const Workbench& bench) {
  bench.zepkit.Get(L"Keyboard").AsObject().Get(L"CapsLock");
  bench.zepkit.Get(L"ZepMousePointer").AsObject().Get(L"PosX");
}

/// Its window would wait for its reader.
void AboutBox(const Workbench& bench) { bench.zepkit.Get(L"LoadZepIcon", {0}).AsObject(); }

void Dialogs(const Workbench&) {
  const Object dialog = Object::Create(L"Zepkit10.FileDialog");
  dialog.Put(L"DialogTitle", {L"Open"});
  Expect(L"the title of a dialog", dialog.Get(L"DialogTitle"), L"Open");
}

constexpr Family kFamilies[] = {{L"documents", Documents}, {L"files", Files},
                                {L"log file", LogFile},    {L"input", Input},
                                {L"about box", AboutBox},  {L"dialogs", Dialogs}};

}  // namespace

std::span<const Family> OutsideFamilies() { return kFamilies; }

}  // namespace zepcheck
