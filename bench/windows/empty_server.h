#pragma once

#include <windows.h>
#include <unknwn.h>

/// What an object of the empty server can do.
struct IEmpty : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Increment(LONG by) = 0;
};
