#pragma once

#include <string>
#include <vector>

#include "com/client.h"
#include "com/component.h"

/// Arrays of one dimension and any element type in automation values.
namespace value_array {

using client::Value;
using Values = std::vector<Value>;

/// A value converted to a type, as the platform does.
inline Value As(VARTYPE type, Value value) {
  EXPECT_EQ(S_OK, VariantChangeType(&value.raw(), &value.raw(), 0, type)) << type;
  return value;
}

inline Value Decimal(const wchar_t* digits) { return As(VT_DECIMAL, digits); }
inline Value Int64(long long number) {
  Value value;
  value.raw().vt = VT_I8;
  value.raw().llVal = number;
  return value;
}
inline Value TenThousandths(long long number) {
  Value value = Int64(number);
  value.raw().vt = VT_CY;
  return value;
}
inline Value Error(SCODE code) {
  Value value;
  value.raw().vt = VT_ERROR;
  value.raw().scode = code;
  return value;
}

/// The value's content as an element of its type.
inline void* ContentOf(VARIANT& value) {
  return value.vt == VT_DECIMAL ? static_cast<void*>(&value.decVal) : &value.byref;
}

/// An array whose elements must be of its type already, unless it is of Variants.
inline Value Make(VARTYPE type, LONG lower_bound, const Values& elements) {
  Value made;
  SAFEARRAYBOUND bound{static_cast<ULONG>(elements.size()), lower_bound};
  SAFEARRAY* array = SafeArrayCreate(type, 1, &bound);
  made.raw().vt = static_cast<VARTYPE>(VT_ARRAY | type);
  made.raw().parray = array;
  auto* place = static_cast<BYTE*>(array->pvData);
  for (const Value& element : elements) {
    VARIANT copy;
    VariantInit(&copy);
    VariantCopy(&copy, const_cast<VARIANT*>(&element.raw()));
    EXPECT_TRUE(type == VT_VARIANT || copy.vt == type);
    CopyMemory(place, type == VT_VARIANT ? &copy : ContentOf(copy), array->cbElements);
    place += array->cbElements;
  }
  return made;
}

inline Value Variants(LONG lower_bound, const Values& elements) {
  return Make(VT_VARIANT, lower_bound, elements);
}

/// An array that was never allocated.
inline Value Unallocated(VARTYPE type = VT_VARIANT) {
  Value value;
  value.raw().vt = static_cast<VARTYPE>(VT_ARRAY | type);
  value.raw().parray = nullptr;
  return value;
}

/// Two dimensions: as many rows as `rows`, two columns.
inline Value Grid(ULONG rows) {
  Value value;
  SAFEARRAYBOUND bounds[] = {{rows, 1}, {2, 7}};
  value.raw().vt = VT_ARRAY | VT_I4;
  value.raw().parray = SafeArrayCreate(VT_I4, 2, bounds);
  return value;
}

/// The elements of an array of one dimension, references followed.
inline Values Read(const Value& value) {
  Values elements;
  EXPECT_TRUE(value.type() & VT_ARRAY) << value;
  const SAFEARRAY* array = value.type() & VT_ARRAY ? value.raw().parray : nullptr;
  if (!array) return elements;
  EXPECT_EQ(1, array->cDims);
  auto* place = static_cast<BYTE*>(array->pvData);
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i, place += array->cbElements) {
    VARIANT view;
    view.vt = static_cast<VARTYPE>(VT_BYREF | (value.type() & VT_TYPEMASK));
    view.byref = place;
    Value element;
    EXPECT_EQ(S_OK, VariantCopyInd(&element.raw(), &view));
    elements.push_back(element);
  }
  return elements;
}

/// Checks type, bounds and elements, and that the array is neither locked nor fixed.
inline void Expect(const client::Outcome& outcome, VARTYPE type, LONG lower_bound,
                   const Values& elements) {
  ASSERT_TRUE(outcome.ok()) << outcome;
  ASSERT_EQ(VT_ARRAY | type, outcome.value.type());
  const SAFEARRAY* array = outcome.value.raw().parray;
  ASSERT_TRUE(array);
  EXPECT_EQ(lower_bound, array->rgsabound[0].lLbound);
  EXPECT_EQ(0u, array->cLocks);
  EXPECT_EQ(0, array->fFeatures & (FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE));
  EXPECT_EQ(elements, Read(outcome.value));
}

inline void ExpectUnallocated(const client::Outcome& outcome, VARTYPE type) {
  ASSERT_TRUE(outcome.ok()) << outcome;
  EXPECT_EQ(VT_ARRAY | type, outcome.value.type());
  EXPECT_EQ(nullptr, outcome.value.raw().parray);
}

/// The types that elements may have.
inline const VARTYPE kTypes[] = {VT_VARIANT,  VT_BSTR,    VT_I4,      VT_I2, VT_R8,
                                 VT_R4,       VT_UI1,     VT_DATE,    VT_CY, VT_BOOL,
                                 VT_DISPATCH, VT_UNKNOWN, VT_DECIMAL, VT_I8, VT_ERROR};

/// Five different values of a type (of Booleans, two).
inline Values Samples(VARTYPE type) {
  Values values;
  for (int i = 0; i < 5; ++i) {
    if (type == VT_DISPATCH || type == VT_UNKNOWN) {
      Value object(component::Create<IDispatch>(CLSID_Counter).Get());
      object.raw().vt = type;
      values.push_back(i == 2 ? As(type, Value::Nothing()) : object);
    } else if (type == VT_BSTR) {
      values.emplace_back(std::wstring(L"text\0", 5) + std::to_wstring(i));
    } else if (type == VT_ERROR) {
      values.push_back(Error(E_NOTIMPL + i));
    } else if (type == VT_BOOL) {
      values.emplace_back(i % 2 == 1);
    } else if (type == VT_VARIANT) {
      values.push_back(Values{1, L"two", 3.5, Value::Null(), true}[i]);
    } else {
      values.push_back(As(type, 10 + i));
    }
  }
  return values;
}

}  // namespace value_array
