// Read once instead of by every test. Each test still includes what it needs.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// Compiled once, in precompiled.cpp.
extern template class std::basic_string<char>;
extern template class std::basic_string<wchar_t>;
extern template class std::unique_ptr<std::string>;
extern template class std::unique_ptr<std::stringstream>;
extern template class std::vector<std::string>;
extern template class Microsoft::WRL::ComPtr<IDispatch>;
extern template class Microsoft::WRL::ComPtr<IUnknown>;
