// The conversation in C++, late bound through IDispatch: all that it knows are names of members.
//     x86_64-w64-mingw32-g++ -std=c++20 -static late_bound.cpp -lole32 -loleaut32 -luuid
#include <windows.h>
#include <comdef.h>
#include <wrl/client.h>

#include <cstdio>
#include <functional>
#include <vector>

namespace {

using Microsoft::WRL::ComPtr;
using std::printf;

struct Error {
  HRESULT number;
  _bstr_t source, text;
};

/// Prints the error of a call; its lower half is the number of ZepErrors or of a runtime error.
void ShowError(const std::function<void()>& call) {
  try {
    call();
  } catch (Error& error) {
    printf("  error %ld: %ls\n", HRESULT_CODE(error.number), error.text.GetBSTR());
    printf("    raised by %ls\n", error.source.GetBSTR());
  }
}

void Check(HRESULT result) {
  if (FAILED(result)) throw Error{result, L"the system", L"Automation error"};
}

/// An object whose members are called by name.
class Object {
 public:
  explicit Object(const wchar_t* program_id) {
    CLSID clsid;
    Check(CLSIDFromProgID(program_id, &clsid));
    Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object_)));
  }
  explicit Object(const VARIANT& object) : object_(V_DISPATCH(&object)) {}

  template <typename... Arguments>
  _variant_t Call(const wchar_t* name, Arguments&&... arguments) const {
    return Invoke(DISPATCH_METHOD | DISPATCH_PROPERTYGET, name, {_variant_t(arguments)...});
  }
  /// The object that a member returns.
  template <typename... Arguments>
  Object Child(const wchar_t* name, Arguments&&... arguments) const {
    return Object(Call(name, arguments...));
  }
  /// The new value is the last argument.
  template <typename... Arguments>
  void Put(const wchar_t* name, Arguments&&... arguments) const {
    Invoke(DISPATCH_PROPERTYPUT, name, {_variant_t(arguments)...});
  }
  void PutReference(const wchar_t* name, const Object& object) const {
    Invoke(DISPATCH_PROPERTYPUTREF, name, {_variant_t(object.object_.Get())});
  }
  _variant_t Items() const { return InvokeMember(DISPATCH_PROPERTYGET, DISPID_NEWENUM, {}); }
  IDispatch* get() const { return object_.Get(); }

 private:
  _variant_t Invoke(WORD kind, const wchar_t* name, std::vector<_variant_t> arguments) const {
    DISPID member;
    Check(object_->GetIDsOfNames(IID_NULL, const_cast<wchar_t**>(&name), 1, LOCALE_USER_DEFAULT,
                                 &member));
    return InvokeMember(kind, member, {arguments.rbegin(), arguments.rend()});
  }

  /// Arguments are given last first.
  _variant_t InvokeMember(WORD kind, DISPID member, std::vector<_variant_t> arguments) const {
    DISPID value = DISPID_PROPERTYPUT;
    DISPPARAMS given{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
      given.rgdispidNamedArgs = &value;
      given.cNamedArgs = 1;
    }
    _variant_t result;
    EXCEPINFO error{};
    const HRESULT done = object_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &given,
                                         &result, &error, nullptr);
    if (done == DISP_E_EXCEPTION) {
      throw Error{error.scode, _bstr_t(error.bstrSource, false),
                  _bstr_t(error.bstrDescription, false)};
    }
    Check(done);
    return result;
  }

  ComPtr<IDispatch> object_;
};

/// Hears the events of a source for as long as it lives. Arguments arrive last first.
class Sink final : public IDispatch {
 public:
  using Handler = std::function<void(DISPID event, VARIANT* arguments)>;

  Sink(const Object& source, Handler handler) : handler_(handler) {
    ComPtr<IProvideClassInfo2> info;
    ComPtr<IConnectionPointContainer> container;
    Check(source.get()->QueryInterface(IID_PPV_ARGS(&info)));
    Check(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events_));
    Check(source.get()->QueryInterface(IID_PPV_ARGS(&container)));
    Check(container->FindConnectionPoint(events_, &point_));
    Check(point_->Advise(this, &cookie_));
  }
  ~Sink() { point_->Unadvise(cookie_); }

  STDMETHODIMP QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == events_;
    *result = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    handler_(event, given->rgvarg);
    return S_OK;
  }

 private:
  IID events_;
  Handler handler_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

/// Prints values as the user's system writes them.
void Print(const auto&... values) {
  (printf("%ls", _bstr_t(_variant_t(values)).GetBSTR()), ...);
  printf("\n");
}

void Terms(const Object& zepkit) {
  Print(L"Terms");
  Print(L"  2*SIN(0)^2+|1-3| is ", zepkit.Call(L"Compute", L"2*SIN(0)^2+|1-3|"));
  const Object letters = zepkit.Child(L"VarSets").Child(L"Add", L"letters");
  letters.Child(L"Item", L"x").Put(L"Value", 3);
  const Object term(L"Zepkit10.Expression");
  term.PutReference(L"VarSet", letters);
  term.Put(L"EString", L"x^2/4");
  Print(L"  x^2/4 is ", term.Call(L"Value"), L" where x is 3");
  letters.Call(L"Delete");
}

/// A variable holds a number or a term, which follows the variables that it names.
void Variables(const Object& circle) {
  Print(L"Variables");
  const Object radius = circle.Child(L"Item", L"r"), diameter = circle.Child(L"Item", L"d");
  diameter.Child(L"Expression").Put(L"EString", L"2*r");
  radius.Put(L"Value", 2);
  Print(L"  radius 2, diameter ", diameter.Call(L"Value"));
  radius.Put(L"Value", 5);
  Print(L"  radius 5, diameter ", diameter.Call(L"Value"));
}

void Collections(const Object& circle) {
  Print(L"Collections");
  ComPtr<IEnumVARIANT> items;
  const _variant_t all = circle.Items();
  Check(V_UNKNOWN(&all)->QueryInterface(IID_PPV_ARGS(&items)));
  for (_variant_t item; items->Next(1, &item, nullptr) == S_OK; item.Clear()) {
    const Object variable(item);
    Print(L"  ", variable.Call(L"Name"), L" = ", variable.Child(L"Expression").Call(L"EString"));
  }
  const Object first = circle.Child(L"Item", 1);
  Print(L"  ", circle.Call(L"Count"), L" variables, the first is ", first.Call(L"Name"));
}

void Events() {
  Print(L"Events");
  const Object counter(L"Zepkit10.Counter");
  const Sink counting(counter, [](DISPID, VARIANT* arguments) {
    Print(L"  event: the counter goes from ", arguments[0], L" to ", arguments[1]);
  });
  counter.Call(L"Increment", 3);
  counter.Call(L"Decrement");
  Print(L"  the counter is at ", counter.Call(L"Value"));

  const Object buffer(L"Zepkit10.ZepVariant");
  const Sink guarding(buffer, [](DISPID event, VARIANT* arguments) {
    if (event != 1) return;  // BeforeROChange
    Print(L"  event: may the buffer be protected? No.");
    *V_BOOLREF(&arguments[0]) = VARIANT_TRUE;
  });
  ShowError([&] { buffer.Put(L"ReadOnly", true); });
}

/// A view shows a part of a buffer; both follow each other.
void Buffers() {
  Print(L"Buffers");
  const Object buffer(L"Zepkit10.ZepVariant");
  buffer.Put(L"DataString", L"Dear Ada");
  const Object view = buffer.Child(L"Range", 6, 3);
  view.Put(L"DataString", L"Grace");
  Print(L"  ", buffer.Call(L"DataString"));
  buffer.Put(L"RangeString", 6, 5, L"GRACE");
  Print(L"  ", view.Call(L"DataString"), L", ", view.Call(L"RangeLength"), L" bytes from byte ",
        view.Call(L"RangeStart"));
  Print(L"  the first byte is ", buffer.Call(L"DataByte", 1));
}

void Document() {
  Print(L"Document");
  wchar_t path[MAX_PATH];
  GetTempPathW(MAX_PATH, path);
  lstrcatW(path, L"zepkit10-letter.txt");
  const Object letter(L"Zepkit10.DocHand");
  letter.Call(L"NewFile");
  letter.Child(L"Content").Put(L"DataString", L"Dear Ada");
  letter.Call(L"SaveAs", path);
  const Sink listening(letter, [](DISPID event, VARIANT* arguments) {
    if (event == 12) Print(L"  event: the status is ", arguments[0]);  // StatusChange
  });
  letter.Child(L"Content").Put(L"RangeString", 6, 3, L"Grace");
  letter.Call(L"Save");
  letter.Call(L"CloseFile");
  letter.Call(L"OpenFile", path);
  Print(L"  ", letter.Call(L"FileTitle"), L": ", letter.Child(L"Content").Call(L"DataString"));
  letter.Call(L"CloseFile");
  DeleteFileW(path);
}

void Lists() {
  Print(L"Lists");
  const Object list(L"Zepkit10.List");
  list.Put(L"ListString", L"red green blue");
  list.Call(L"AddItem", L"black", 1);
  list.Call(L"RemoveItem", 3);
  Print(L"  ", list.Call(L"Count"), L" colours: ", list.Call(L"ListString"));
}

void Arrays(const Object& zepkit) {
  Print(L"Arrays");
  const _variant_t words = zepkit.Call(L"ListToStringArray", L"one two three");
  LONG last = 0;
  _bstr_t word;
  SafeArrayGetUBound(V_ARRAY(&words), 1, &last);
  SafeArrayGetElement(V_ARRAY(&words), &last, word.GetAddress());
  Print(L"  word ", last, L" is ", word);
  const _variant_t both =
      zepkit.Call(L"MergeArrays", zepkit.Call(L"CutArray", words, 2, 2), words, 1);
  Print(L"  ", zepkit.Call(L"StringArrayToList", both, L"-"));
  Print(L"  the greatest is ", zepkit.Call(L"Max", 3, 12, 7));

  // What a member changes is passed by reference.
  _variant_t number(5), reference;
  V_VT(&reference) = VT_VARIANT | VT_BYREF;
  V_VARIANTREF(&reference) = &number;
  zepkit.Call(L"Incr", reference, 2);
  Print(L"  5 and 2 more are ", number);
}

void Errors(const Object& zepkit) {
  Print(L"Errors");
  const Object term(L"Zepkit10.Expression");
  term.Put(L"EString", L"1/0");
  ShowError([&] { term.Call(L"Value"); });
  ShowError([&] { zepkit.Child(L"VarSets").Call(L"Item", L"nowhere"); });
}

void Converse() {
  const Object zepkit(L"Zepkit10.Global");
  const Object circle = zepkit.Child(L"VarSets").Child(L"Add", L"circle");
  Terms(zepkit);
  Variables(circle);
  Collections(circle);
  Events();
  Buffers();
  Document();
  Lists();
  Arrays(zepkit);
  Errors(zepkit);
  circle.Call(L"Delete");
}

}  // namespace

int main() {
  CoInitialize(nullptr);
  ShowError(Converse);
  CoUninitialize();
}
