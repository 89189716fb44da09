#include "frame/class_object.h"

#include "buffer/zep_variant_object.h"
#include "doc/doc_hand_object.h"
#include "doc/file_dialog_object.h"
#include "expr/expression_object.h"
#include "frame/counter_object.h"
#include "frame/global_object.h"
#include "frame/shared_library_object.h"
#include "input/mouse_pointer_object.h"
#include "msg/messages_object.h"
#include "platform/automation/module.h"
#include "platform/automation/translate.h"
#include "platform/registration.h"
#include "util/list_object.h"

namespace zepkit10 {
namespace {

template <class Class>
Ref<ObjectCore> Create() {
  return Ref<ObjectCore>(Make<Class>().get());
}

ClassObject class_objects[] = {
    {kCounterClass, Create<Counter>},       {kDocHandClass, Create<DocHand>},
    {kExpressionClass, Create<Expression>}, {kFileDialogClass, Create<FileDialog>},
    {kGlobalClass, Create<Global>},         {kListClass, Create<List>},
    {kMessagesClass, Create<Messages>},     {kMousePointerClass, Create<MousePointer>},
    {kZepVariantClass, Create<ZepVariant>},
};

}  // namespace

HRESULT ClassObject::QueryInterface(REFIID iid, void** result) {
  if (!result) return E_POINTER;
  const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
  *result = known ? static_cast<IClassFactory*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG ClassObject::AddRef() {
  AddModuleUse();
  return 2;
}

ULONG ClassObject::Release() {
  ReleaseModuleUse();
  return 1;
}

HRESULT ClassObject::CreateInstance(IUnknown* outer, REFIID iid, void** result) {
  if (!result) return E_POINTER;
  *result = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  try {
    return create_()->QueryInterface(iid, result);
  } catch (...) {
    return TranslateException(description_);
  }
}

HRESULT ClassObject::LockServer(BOOL lock) {
  lock ? AddModuleUse() : ReleaseModuleUse();
  return S_OK;
}

std::span<ClassObject> ClassObjects() { return class_objects; }

}  // namespace zepkit10

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** result) {
  if (!result) return E_POINTER;
  *result = nullptr;
  for (auto& class_object : zepkit10::ClassObjects()) {
    if (clsid == *class_object.Description().clsid) return class_object.QueryInterface(iid, result);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return zepkit10::ModuleInUse() ? S_FALSE : S_OK; }

namespace {

HRESULT Install(zepkit10::Users users) {
  const HRESULT hr = zepkit10::Register(zepkit10::ClassObjects(), users);
  if (FAILED(hr)) zepkit10::Unregister(zepkit10::ClassObjects(), users);
  return hr;
}

HRESULT Uninstall(zepkit10::Users users) {
  return zepkit10::Unregister(zepkit10::ClassObjects(), users);
}

}  // namespace

STDAPI DllRegisterServer() { return Install(zepkit10::Users::kAll); }

STDAPI DllUnregisterServer() { return Uninstall(zepkit10::Users::kAll); }

/// `regsvr32 /n /i:user` registers for the current user alone, who needs no administrator for it.
STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  const bool for_all = !command_line || !*command_line;  // regsvr32 /i
  if (!for_all && lstrcmpiW(command_line, L"user") != 0) return E_INVALIDARG;
  const auto users = for_all ? zepkit10::Users::kAll : zepkit10::Users::kCurrent;
  return install ? Install(users) : Uninstall(users);
}
