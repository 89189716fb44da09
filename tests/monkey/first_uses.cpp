#include "monkey/first_uses.h"

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <functional>
#include <random>

#include "Zepkit10.h"
#include "monkey/stand_ins.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** result);

namespace monkey {
namespace {

using Microsoft::WRL::ComPtr;

template <class Interface>
ComPtr<Interface> Create(REFCLSID clsid) {
  ComPtr<IClassFactory> factory;
  ComPtr<Interface> made;
  DllGetClassObject(clsid, IID_PPV_ARGS(&factory));
  factory->CreateInstance(nullptr, IID_PPV_ARGS(&made));
  return made;
}

/// The platform keeps drawing contexts for their next use. How many are in use at a time depends on
/// when the timer of a window strikes.
void FillContextCache() {
  HDC contexts[8];
  for (HDC& context : contexts) context = GetDC(nullptr);
  for (const HDC context : contexts) ReleaseDC(nullptr, context);
}

/// A document that goes without closing its file leaves it to the library, which has a list.
void LeaveFileOpen() {
  const BSTR name = SysAllocString(L"a.txt");
  Create<_DocHand>(CLSID_DocHand)->OpenFile(name, VARIANT_TRUE);
  SysFreeString(name);
}

/// An about window, with more lines than a screen has room for or with none.
void ShowAbout(_Global& global, IPictureDisp* icon, ULONG lines) {
  SAFEARRAY* additional = SafeArrayCreateVector(VT_VARIANT, 0, lines);
  for (ULONG i = 0; i < lines; ++i) {
    VARIANT& line = static_cast<VARIANT*>(additional->pvData)[i];
    line.vt = VT_BSTR;
    line.bstrVal = SysAllocString(L"A line");
  }
  const BSTR text = SysAllocString(L"Text");
  global.ShowAbout(text, icon, text, &additional);
  SysFreeString(text);
  SafeArrayDestroy(additional);
}

}  // namespace

void MakeFirstUses() {
  for (int colour = 0; colour <= COLOR_MENUBAR; ++colour) GetSysColorBrush(colour);
  FillContextCache();
  std::mt19937 random;
  const std::function<void()> nothing = [] {};
  const StandIns stand_ins(random, nothing, true);
  const ComPtr<_Global> global = Create<_Global>(CLSID_Global);
  ComPtr<IPictureDisp> icon;
  global->LoadZepIcon(zepIcoZepkit, &icon);
  for (const ULONG lines : {0, 1, 1000}) {
    ShowAbout(*global.Get(), nullptr, lines);
    ShowAbout(*global.Get(), icon.Get(), lines);
  }
  LeaveFileOpen();
}

}  // namespace monkey
