// The names of types as hosts show them.
#include "platform/automation/type_name.h"

#include "com/component.h"
#include "com/foreign.h"
#include "com/record.h"
#include "com/value_array.h"

namespace {

using client::Value;
using Microsoft::WRL::ComPtr;

class TypeNameTest : public component::Test {
 protected:
  static std::u16string NameOf(const Value& value) { return zepkit10::TypeNameOf(value.raw()); }
};

struct Named {
  VARTYPE type;
  const char16_t* name;
};

constexpr Named kNames[] = {
    {VT_I2, u"Integer"},  {VT_I4, u"Long"},      {VT_INT, u"Long"},     {VT_I8, u"LongLong"},
    {VT_R4, u"Single"},   {VT_R8, u"Double"},    {VT_CY, u"Currency"},  {VT_DATE, u"Date"},
    {VT_BSTR, u"String"}, {VT_BOOL, u"Boolean"}, {VT_UI1, u"Byte"},     {VT_DECIMAL, u"Decimal"},
    {VT_I1, u"SByte"},    {VT_UI2, u"UShort"},   {VT_UI4, u"UInteger"}, {VT_UINT, u"UInteger"},
    {VT_UI8, u"ULong"},
};

TEST_F(TypeNameTest, ValuesHaveTheNameOfTheirType) {
  for (const Named& named : kNames) {
    EXPECT_EQ(named.name, NameOf(value_array::As(named.type, 1)));
  }
  EXPECT_EQ(u"Empty", NameOf(Value()));
  EXPECT_EQ(u"Null", NameOf(Value::Null()));
  EXPECT_EQ(u"Error", NameOf(Value::Missing()));
}

TEST_F(TypeNameTest, ArraysAddParentheses) {
  for (const Named& named : kNames) {
    EXPECT_EQ(named.name + std::u16string(u"()"), NameOf(value_array::Unallocated(named.type)));
  }
  EXPECT_EQ(u"Variant()", NameOf(value_array::Variants(0, {1})));
  EXPECT_EQ(u"Object()", NameOf(value_array::Unallocated(VT_DISPATCH)));
  EXPECT_EQ(u"Unknown()", NameOf(value_array::Unallocated(VT_UNKNOWN)));
  EXPECT_EQ(u"Error()", NameOf(value_array::Unallocated(VT_ERROR)));
  EXPECT_EQ(u"Long()", NameOf(value_array::Grid(2)));
}

TEST_F(TypeNameTest, ReferencesCountAsWhatTheyReferTo) {
  Value number = 5, array = value_array::Make(VT_BSTR, 0, {L"a"});
  VARIANT typed;
  typed.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
  typed.pparray = &array.raw().parray;
  Value inner(typed);
  EXPECT_EQ(u"Long", NameOf(number.Reference()));
  EXPECT_EQ(u"String()", NameOf(inner));
  EXPECT_EQ(u"String()", NameOf(inner.Reference()));
  Value loop;
  loop.raw().vt = VT_BYREF | VT_VARIANT;
  loop.raw().pvarVal = &loop.raw();
  EXPECT_EQ(u"Empty", NameOf(loop));
  loop.raw().vt = VT_EMPTY;
}

TEST_F(TypeNameTest, OurObjectsHaveTheNameOfTheirClass) {
  ComPtr<IDispatch> counter = component::Create<IDispatch>(CLSID_Counter);
  Value object(counter.Get()), unknown(counter.Get());
  unknown.raw().vt = VT_UNKNOWN;
  EXPECT_EQ(u"Counter", NameOf(object));
  EXPECT_EQ(u"Counter", NameOf(unknown));
  VARIANT typed;
  typed.vt = VT_BYREF | VT_DISPATCH;
  typed.ppdispVal = &object.raw().pdispVal;
  EXPECT_EQ(u"Counter", NameOf(Value(typed)));
}

TEST_F(TypeNameTest, NoObjectIsNothing) {
  EXPECT_EQ(u"Nothing", NameOf(Value::Nothing()));
  Value unknown = Value::Nothing();
  unknown.raw().vt = VT_UNKNOWN;
  EXPECT_EQ(u"Nothing", NameOf(unknown));
}

/// A client's object that tells of itself as asked for.
class Described : public foreign::Object<IDispatch>, public IProvideClassInfo {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (class_info && iid == IID_IProvideClassInfo) {
      *result = static_cast<IProvideClassInfo*>(this);
      AddRef();
      return S_OK;
    }
    return foreign::Object<IDispatch>::QueryInterface(iid, result);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return foreign::Object<IDispatch>::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return foreign::Object<IDispatch>::Release(); }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = interface_info ? 1 : 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** result) override {
    return interface_info.CopyTo(result);
  }
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** result) override {
    return class_info.CopyTo(result);
  }

  ComPtr<ITypeInfo> class_info, interface_info;
};

TEST_F(TypeNameTest, ForeignObjectsAreAsked) {
  Described object;
  EXPECT_EQ(u"Object", NameOf(Value(static_cast<IDispatch*>(&object))));
  {
    const ComPtr<IDispatch> counter = component::Create<IDispatch>(CLSID_Counter);
    ASSERT_EQ(S_OK, counter->GetTypeInfo(0, 0, &object.interface_info));
    EXPECT_EQ(u"Counter", NameOf(Value(static_cast<IDispatch*>(&object))));  // of _Counter
    const ComPtr<IDispatch> list = component::Create<IDispatch>(CLSID_List);
    ComPtr<IProvideClassInfo> provider;
    ASSERT_EQ(S_OK, list.As(&provider));
    ASSERT_EQ(S_OK, provider->GetClassInfo(&object.class_info));
    EXPECT_EQ(u"List", NameOf(Value(static_cast<IDispatch*>(&object))));
  }
  object.class_info.Reset();
  object.interface_info.Reset();
  EXPECT_EQ(1u, object.references);
}

TEST_F(TypeNameTest, UserDefinedTypesHaveTheirOwnNames) {
  Record point(L"Point"), nameless(nullptr);
  LONG content = 1;
  EXPECT_EQ(u"Point", NameOf(point.Of(content)));
  EXPECT_EQ(u"Point()", NameOf(point.Array({1})));
  EXPECT_EQ(u"Unknown", NameOf(nameless.Of(content)));
  EXPECT_EQ(u"Unknown()", NameOf(nameless.Array({1})));
  EXPECT_EQ(u"Unknown()", NameOf(value_array::Unallocated(VT_RECORD)));
  VARIANT untold;
  untold.vt = VT_BYREF | VT_RECORD;
  untold.pvRecord = &content;
  untold.pRecInfo = nullptr;
  EXPECT_EQ(u"Unknown", zepkit10::TypeNameOf(untold));
}

TEST_F(TypeNameTest, AnObjectWithoutAutomationIsUnknown) {
  ComPtr<IStream> stream;
  ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  VARIANT unknown;
  unknown.vt = VT_UNKNOWN;
  unknown.punkVal = stream.Get();
  EXPECT_EQ(u"Unknown", zepkit10::TypeNameOf(unknown));
}

}  // namespace
