#pragma once

#include <windows.h>
#include <unknwn.h>

/// How many references clients hold of an object.
inline ULONG ReferencesOf(IUnknown* object) {
  object->AddRef();
  return object->Release();
}
