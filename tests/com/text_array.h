#pragma once

#include <string>
#include <vector>

#include "com/client.h"

/// Arrays of strings in automation values.
namespace text_array {

inline client::Value Make(LONG lower_bound, const std::vector<std::wstring>& texts) {
  VARIANT value;
  value.vt = VT_ARRAY | VT_BSTR;
  SAFEARRAYBOUND bound{static_cast<ULONG>(texts.size()), lower_bound};
  value.parray = SafeArrayCreate(VT_BSTR, 1, &bound);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    static_cast<BSTR*>(value.parray->pvData)[i] =
        SysAllocStringLen(texts[i].data(), static_cast<UINT>(texts[i].size()));
  }
  const client::Value made(value);
  VariantClear(&value);
  return made;
}

/// The elements of a one-dimensional array of strings; nothing and a failure for any other value.
inline std::vector<std::wstring> Read(const client::Value& value) {
  std::vector<std::wstring> texts;
  EXPECT_EQ(VT_ARRAY | VT_BSTR, value.type());
  const SAFEARRAY* array = value.type() & VT_ARRAY ? value.raw().parray : nullptr;
  if (!array || value.type() != (VT_ARRAY | VT_BSTR)) return texts;
  EXPECT_EQ(1, array->cDims);
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
    BSTR text = static_cast<BSTR*>(array->pvData)[i];
    texts.emplace_back(text ? text : L"", SysStringLen(text));
  }
  return texts;
}

}  // namespace text_array
