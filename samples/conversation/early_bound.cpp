// The conversation in C++, early bound through the component's header:
//     x86_64-w64-mingw32-g++ -std=c++20 -static early_bound.cpp Zepkit10_i.c -lole32 -loleaut32
//     -luuid
#include <windows.h>
#include <comdef.h>
#include <wrl/client.h>

#include <cstdio>
#include <functional>
#include <tuple>
#include <type_traits>

#include "Zepkit10.h"

namespace {

using Microsoft::WRL::ComPtr;
using std::printf;

/// Throws what the component tells about a call that failed.
void Check(HRESULT result) {
  if (SUCCEEDED(result)) return;
  IErrorInfo* info = nullptr;
  GetErrorInfo(0, &info);
  throw _com_error(result, info);
}

/// Prints the error of a call; its lower half is the number of ZepErrors or of a runtime error.
void ShowError(const std::function<void()>& call) {
  try {
    call();
  } catch (const _com_error& error) {
    printf("  error %ld: %ls\n", HRESULT_CODE(error.Error()), error.Description().GetBSTR());
    printf("    raised by %ls\n", error.Source().GetBSTR());
  }
}

template <typename Interface>
ComPtr<Interface> Create(const CLSID& clsid) {
  ComPtr<Interface> object;
  Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object)));
  return object;
}

/// Calls a member and returns its result, owned: Get(counter, &_Counter::get_Value).
template <typename Interface, typename... Parameters, typename... Arguments>
auto Get(const ComPtr<Interface>& object,
         HRESULT (STDMETHODCALLTYPE Interface::*member)(Parameters...), Arguments... arguments) {
  std::remove_pointer_t<std::tuple_element_t<sizeof...(arguments), std::tuple<Parameters...>>>
      result{};
  using Result = decltype(result);
  Check((object.Get()->*member)(arguments..., &result));
  if constexpr (std::is_same_v<Result, BSTR>) {
    return _bstr_t(result, false);
  } else if constexpr (std::is_same_v<Result, VARIANT>) {
    return _variant_t(result, false);
  } else if constexpr (std::is_convertible_v<Result, IUnknown*>) {
    ComPtr<std::remove_pointer_t<Result>> owner;
    owner.Attach(result);
    return owner;
  } else {
    return result;
  }
}

/// Hears the events of a source for as long as it lives. Arguments arrive last first.
class Sink final : public IDispatch {
 public:
  using Handler = std::function<void(DISPID event, VARIANT* arguments)>;

  Sink(IUnknown* source, const IID& events, Handler handler) : events_(events), handler_(handler) {
    ComPtr<IConnectionPointContainer> container;
    Check(source->QueryInterface(IID_PPV_ARGS(&container)));
    Check(container->FindConnectionPoint(events, &point_));
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

void Terms(const ComPtr<_Global>& zepkit) {
  printf("Terms\n");
  const double value = Get(zepkit, &_Global::Compute, _bstr_t(L"2*SIN(0)^2+|1-3|"));
  printf("  2*SIN(0)^2+|1-3| is %g\n", value);
  _variant_t name(L"letters");
  const auto letters = Get(Get(zepkit, &_Global::get_VarSets), &_VarSets::Add, &name);
  Check(Get(letters, &_VarSet::get_Item, _variant_t(L"x"))->put_Value(3));
  const auto term = Create<_Expression>(CLSID_Expression);
  Check(term->putref_VarSet(letters.Get()));
  Check(term->put_EString(_bstr_t(L"x^2/4")));
  printf("  x^2/4 is %g where x is 3\n", Get(term, &_Expression::get_Value));
  Check(letters->Delete());
}

/// A variable holds a number or a term, which follows the variables that it names.
void Variables(const ComPtr<_VarSet>& circle) {
  printf("Variables\n");
  const auto radius = Get(circle, &_VarSet::get_Item, _variant_t(L"r"));
  const auto diameter = Get(circle, &_VarSet::get_Item, _variant_t(L"d"));
  Check(Get(diameter, &_Variable::get_Expression)->put_EString(_bstr_t(L"2*r")));
  Check(radius->put_Value(2));
  printf("  radius 2, diameter %g\n", Get(diameter, &_Variable::get_Value));
  Check(radius->put_Value(5));
  printf("  radius 5, diameter %g\n", Get(diameter, &_Variable::get_Value));
}

void Collections(const ComPtr<_VarSet>& circle) {
  printf("Collections\n");
  ComPtr<IEnumVARIANT> items;
  Check(Get(circle, &_VarSet::get_NewEnum).As(&items));
  for (_variant_t item; items->Next(1, &item, nullptr) == S_OK; item.Clear()) {
    ComPtr<_Variable> variable;
    Check(V_DISPATCH(&item)->QueryInterface(IID_PPV_ARGS(&variable)));
    const auto term = Get(variable, &_Variable::get_Expression);
    printf("  %ls = %ls\n", Get(variable, &_Variable::get_Name).GetBSTR(),
           Get(term, &_Expression::get_EString).GetBSTR());
  }
  const auto first = Get(circle, &_VarSet::get_Item, _variant_t(1L));
  printf("  %ld variables, the first is %ls\n", Get(circle, &_VarSet::get_Count),
         Get(first, &_Variable::get_Name).GetBSTR());
}

void Events() {
  printf("Events\n");
  const auto counter = Create<_Counter>(CLSID_Counter);
  const Sink counting(counter.Get(), DIID___Counter, [](DISPID, VARIANT* arguments) {
    printf("  event: the counter goes from %ld to %ld\n", V_I4(&arguments[0]), V_I4(&arguments[1]));
  });
  Check(counter->Increment(3));
  Check(counter->Decrement());
  printf("  the counter is at %ld\n", Get(counter, &_Counter::get_Value));

  const auto buffer = Create<_ZepVariant>(CLSID_ZepVariant);
  const Sink guarding(buffer.Get(), DIID___ZepVariant, [](DISPID event, VARIANT* arguments) {
    if (event != 1) return;  // BeforeROChange
    printf("  event: may the buffer be protected? No.\n");
    *V_BOOLREF(&arguments[0]) = VARIANT_TRUE;
  });
  ShowError([&] { Check(buffer->put_ReadOnly(VARIANT_TRUE)); });
}

/// A view shows a part of a buffer; both follow each other.
void Buffers() {
  printf("Buffers\n");
  const auto buffer = Create<_ZepVariant>(CLSID_ZepVariant);
  Check(buffer->put_DataString(_bstr_t(L"Dear Ada")));
  const auto view = Get(buffer, &_ZepVariant::get_Range, 6, 3, VARIANT_FALSE);
  Check(view->put_DataString(_bstr_t(L"Grace")));
  printf("  %ls\n", Get(buffer, &_ZepVariant::get_DataString).GetBSTR());
  Check(buffer->put_RangeString(6, 5, _bstr_t(L"GRACE")));
  printf("  %ls, %ld bytes from byte %ld\n", Get(view, &_ZepVariant::get_DataString).GetBSTR(),
         Get(view, &_ZepVariant::get_RangeLength), Get(view, &_ZepVariant::get_RangeStart));
  printf("  the first byte is %d\n", Get(buffer, &_ZepVariant::get_DataByte, 1));
}

void Document() {
  printf("Document\n");
  wchar_t path[MAX_PATH];
  GetTempPathW(MAX_PATH, path);
  lstrcatW(path, L"zepkit10-letter.txt");
  const auto letter = Create<_DocHand>(CLSID_DocHand);
  Check(letter->NewFile());
  const auto content = Get(letter, &_DocHand::get_Content);
  Check(content->put_DataString(_bstr_t(L"Dear Ada")));
  Check(letter->SaveAs(_bstr_t(path)));
  const Sink listening(letter.Get(), DIID___DocHand, [](DISPID event, VARIANT* arguments) {
    if (event == 12) printf("  event: the status is %ld\n", V_I4(&arguments[0]));  // StatusChange
  });
  Check(content->put_RangeString(6, 3, _bstr_t(L"Grace")));
  Check(letter->Save());
  Check(letter->CloseFile());
  Check(letter->OpenFile(_bstr_t(path)));
  printf("  %ls: %ls\n", Get(letter, &_DocHand::get_FileTitle).GetBSTR(),
         Get(content, &_ZepVariant::get_DataString).GetBSTR());
  Check(letter->CloseFile());
  DeleteFileW(path);
}

void Lists() {
  printf("Lists\n");
  const auto list = Create<_List>(CLSID_List);
  Check(list->put_ListString(_bstr_t(L"red green blue")));
  Check(list->AddItem(_bstr_t(L"black"), 1));
  Check(list->RemoveItem(3));
  printf("  %ld colours: %ls\n", Get(list, &_List::get_Count),
         Get(list, &_List::get_ListString).GetBSTR());
}

void Arrays(const ComPtr<_Global>& zepkit) {
  printf("Arrays\n");
  const _bstr_t blank(L" "), dash(L"-"), none(L"");
  _variant_t words;
  V_VT(&words) = VT_ARRAY | VT_BSTR;
  Check(zepkit->ListToStringArray(_bstr_t(L"one two three"), blank, none, none, &V_ARRAY(&words)));
  LONG last = 0;
  _bstr_t word;
  SafeArrayGetUBound(V_ARRAY(&words), 1, &last);
  SafeArrayGetElement(V_ARRAY(&words), &last, word.GetAddress());
  printf("  word %ld is %ls\n", last, word.GetBSTR());
  const auto part = Get(zepkit, &_Global::CutArray, words, 2, 2);
  const auto both = Get(zepkit, &_Global::MergeArrays, part, words, 1);
  printf("  %ls\n", Get(zepkit, &_Global::StringArrayToList, both, dash, none, none).GetBSTR());

  // Members with any number of arguments take an array of Variants.
  SAFEARRAY* numbers = SafeArrayCreateVector(VT_VARIANT, 0, 3);
  _variant_t three[] = {3L, 12L, 7L};
  for (LONG i = 0; i < 3; ++i) SafeArrayPutElement(numbers, &i, &three[i]);
  printf("  the greatest is %ld\n", long{Get(zepkit, &_Global::Max, &numbers)});
  SafeArrayDestroy(numbers);
  _variant_t number(5L);
  Get(zepkit, &_Global::Incr, &number, _variant_t(2L));
  printf("  5 and 2 more are %ld\n", long{number});
}

void Errors(const ComPtr<_Global>& zepkit) {
  printf("Errors\n");
  const auto term = Create<_Expression>(CLSID_Expression);
  Check(term->put_EString(_bstr_t(L"1/0")));
  ShowError([&] { Get(term, &_Expression::get_Value); });
  const auto sets = Get(zepkit, &_Global::get_VarSets);
  ShowError([&] { Get(sets, &_VarSets::get_Item, _variant_t(L"nowhere")); });
}

void Converse() {
  const auto zepkit = Create<_Global>(CLSID_Global);
  _variant_t name(L"circle");
  const auto circle = Get(Get(zepkit, &_Global::get_VarSets), &_VarSets::Add, &name);
  Terms(zepkit);
  Variables(circle);
  Collections(circle);
  Events();
  Buffers();
  Document();
  Lists();
  Arrays(zepkit);
  Errors(zepkit);
  Check(circle->Delete());
}

}  // namespace

int main() {
  CoInitialize(nullptr);
  ShowError(Converse);
  CoUninitialize();
}
