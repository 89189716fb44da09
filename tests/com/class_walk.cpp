#include "com/class_walk.h"

#include <ocidl.h>

#include <array>
#include <deque>

#include "com/client.h"
#include "com/component.h"
#include "com/foreign.h"

namespace class_walk {
namespace {

using Microsoft::WRL::ComPtr;

std::wstring NameOf(ITypeInfo* type) {
  BSTR name = nullptr;
  type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  const std::wstring copy(name ? name : L"");
  SysFreeString(name);
  return copy;
}

TYPEATTR AttributesOf(ITypeInfo* type) {
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(S_OK, type->GetTypeAttr(&attributes));
  const TYPEATTR copy = *attributes;
  type->ReleaseTypeAttr(attributes);
  return copy;
}

Class Describe(ITypeInfo* coclass) {
  const TYPEATTR attributes = AttributesOf(coclass);
  Class found{NameOf(coclass), attributes.guid, GUID_NULL, GUID_NULL,
              (attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0};
  for (UINT i = 0; i < attributes.cImplTypes; ++i) {
    INT flags = 0;
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> implemented;
    coclass->GetImplTypeFlags(i, &flags);
    coclass->GetRefTypeOfImplType(i, &reference);
    EXPECT_EQ(S_OK, coclass->GetRefTypeInfo(reference, &implemented));
    (flags & IMPLTYPEFLAG_FSOURCE ? found.events : found.default_interface) =
        AttributesOf(implemented.Get()).guid;
  }
  return found;
}

/// The class of an object as it says itself.
std::wstring ClassOf(IDispatch* object) {
  ComPtr<IProvideClassInfo> provider;
  ComPtr<ITypeInfo> type;
  if (FAILED(object->QueryInterface(IID_PPV_ARGS(&provider))) ||
      FAILED(provider->GetClassInfo(&type))) {
    return {};
  }
  return NameOf(type.Get());
}

VARTYPE TypeOf(const TYPEDESC& type) {
  if (type.vt == VT_PTR && type.lptdesc->vt == VT_PTR) return VT_DISPATCH | VT_BYREF;
  if (type.vt == VT_PTR) return static_cast<VARTYPE>(TypeOf(*type.lptdesc) | VT_BYREF);
  if (type.vt == VT_USERDEFINED) return VT_I4;  // enumerations; interfaces come as pointers
  return type.vt;
}

/// A client's object that has every member and takes everything.
class Patient : public foreign::Object<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* id) override {
    return *id = 1, S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return S_OK;
  }
} patient;

/// Adds something to a collection, a board or a list of targets, which was emptied before.
client::Outcome Add(const client::Object& owner) {
  owner.Call(L"Clear");  // what an earlier test left in a shared collection
  const auto added = owner.Call(L"Add", {L"a"});
  return added.ok() ? added : owner.Call(L"Add", {client::Value(&patient), L"Member", 2});
}

bool LeadsOn(const Slot& slot) {
  return (slot.kind == INVOKE_PROPERTYGET && slot.types.size() == 1) || slot.name == L"Add";
}

}  // namespace

ComPtr<ITypeLib> TypeLibrary() {
  ComPtr<ITypeLib> library;
  EXPECT_EQ(S_OK, LoadTypeLibEx(component::ComponentPath().c_str(), REGKIND_NONE, &library));
  return library;
}

std::vector<Class> Classes() {
  std::vector<Class> classes;
  const auto library = TypeLibrary();
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    TYPEKIND kind;
    ComPtr<ITypeInfo> type;
    library->GetTypeInfoType(i, &kind);
    library->GetTypeInfo(i, &type);
    if (kind == TKIND_COCLASS) classes.push_back(Describe(type.Get()));
  }
  return classes;
}

Objects FindObjects() {
  Objects found;
  std::deque<ComPtr<IDispatch>> open;
  std::map<std::wstring, IID> interfaces;
  for (const Class& each : Classes()) {
    interfaces[each.name] = each.default_interface;
    if (each.creatable) open.push_back(component::Create<IDispatch>(each.clsid));
  }
  for (; !open.empty(); open.pop_front()) {
    const ComPtr<IDispatch> object = open.front();
    const std::wstring name = ClassOf(object.Get());
    if (!interfaces.count(name) || !found.emplace(name, object).second) continue;
    const client::Object client(object.Get(), client::Binding::kDispatch);
    for (const Slot& slot : SlotsOf(interfaces[name])) {
      if (!LeadsOn(slot)) continue;
      const auto outcome = slot.name == L"Add" ? Add(client) : client.Get(slot.name.c_str());
      if (const client::Object next = client.With(outcome)) open.emplace_back(next.get());
    }
  }
  return found;
}

std::vector<Slot> SlotsOf(REFIID default_interface) {
  std::vector<Slot> slots;
  ComPtr<ITypeInfo> dispatch, type;
  HREFTYPE vtable = 0;
  EXPECT_EQ(S_OK, TypeLibrary()->GetTypeInfoOfGuid(default_interface, &dispatch));
  // A dual interface has two descriptions; -1 leads to that of its vtable.
  EXPECT_EQ(S_OK, dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &vtable));
  EXPECT_EQ(S_OK, dispatch->GetRefTypeInfo(vtable, &type));
  for (UINT i = 0; i < AttributesOf(type.Get()).cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    EXPECT_EQ(S_OK, type->GetFuncDesc(i, &function));
    BSTR name = nullptr;
    type->GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
    Slot slot{name, function->memid, function->invkind, static_cast<ULONG>(function->oVft), {},
              false};
    SysFreeString(name);
    for (SHORT p = 0; p < function->cParams; ++p) {
      const ELEMDESC& parameter = function->lprgelemdescParam[p];
      slot.types.push_back(TypeOf(parameter.tdesc));
      slot.has_result = (parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
    }
    type->ReleaseFuncDesc(function);
    slots.push_back(slot);
  }
  return slots;
}

HRESULT CallWithZeros(IUnknown* object, const Slot& slot, void* result) {
  constexpr std::size_t kMaxParameters = 16;
  std::array<VARIANT, kMaxParameters> arguments{};
  std::array<VARIANTARG*, kMaxParameters> pointers{};
  std::array<VARTYPE, kMaxParameters> types{};
  for (std::size_t i = 0; i < slot.types.size(); ++i) {
    types[i] = slot.types[i];
    arguments[i].vt = slot.types[i];
    pointers[i] = &arguments[i];
    if (slot.has_result && i + 1 == slot.types.size()) arguments[i].byref = result;
  }
  VARIANT returned;
  VariantInit(&returned);
  const HRESULT hr =
      DispCallFunc(object, slot.offset, CC_STDCALL, VT_ERROR, static_cast<UINT>(slot.types.size()),
                   types.data(), pointers.data(), &returned);
  EXPECT_EQ(S_OK, hr);
  return returned.scode;
}

}  // namespace class_walk
