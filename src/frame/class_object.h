#pragma once

#include <windows.h>
#include <oaidl.h>

#include <span>

#include "platform/automation/object_core.h"
#include "platform/automation/ref.h"

namespace zepkit10 {

/// Makes the objects of one class that clients may create. It lives as long as the DLL; references
/// to it and its locks keep the DLL loaded.
class ClassObject final : public IClassFactory {
 public:
  using Create = Ref<ObjectCore> (*)();

  ClassObject(const ClassDescription& description, Create create)
      : description_(description), create_(create) {}

  const ClassDescription& Description() const { return description_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** result) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  const ClassDescription& description_;
  const Create create_;
};

/// One for each class that clients may create.
std::span<ClassObject> ClassObjects();

}  // namespace zepkit10
