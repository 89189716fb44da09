#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace zepkit10 {

/// What keeps the DLL loaded: objects that a client holds, and locked class factories.
void AddModuleUse() noexcept;
void ReleaseModuleUse() noexcept;
/// True while a client holds anything; the answer of `DllCanUnloadNow`.
bool ModuleInUse() noexcept;

/// Objects alive in the process, whoever holds them.
void CountLiveObject(int change) noexcept;
long LiveObjects() noexcept;

/// The module that this code was linked into: the DLL, or a test program.
HMODULE ThisModule() noexcept;
std::wstring ModulePath();

/// The type library in this module's resources. Loaded once, kept until `ForgetTypeLibrary`.
HRESULT LoadOwnTypeLibrary(ITypeLib** result) noexcept;
HRESULT LoadOwnTypeInfo(const GUID& guid, ITypeInfo** result) noexcept;
void ForgetTypeLibrary() noexcept;

}  // namespace zepkit10
