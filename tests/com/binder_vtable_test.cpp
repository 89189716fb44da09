// The same members called early bound: what the shims promise for every slot.
#include "com/probe/probe_test.h"

namespace {

using client::Value;
using Microsoft::WRL::ComPtr;
using zepkit10::ProbeFailure;

class BinderVtableTest : public probe::ProbeTest {
 protected:
  HRESULT Fail(ProbeFailure how) {
    BSTR result = reinterpret_cast<BSTR>(this);
    const HRESULT hr = vtable()->Fail(static_cast<long>(how), &result);
    EXPECT_EQ(nullptr, result);
    return hr;
  }
};

struct ErrorInfo {
  std::wstring source, description;
  GUID guid = GUID_NULL;
};

std::wstring Take(BSTR text) {
  std::wstring taken(text ? text : L"", SysStringLen(text));
  SysFreeString(text);
  return taken;
}

ErrorInfo TakeErrorInfo() {
  ErrorInfo taken;
  ComPtr<IErrorInfo> info;
  EXPECT_EQ(S_OK, GetErrorInfo(0, &info));
  if (!info) return taken;
  BSTR text = nullptr;
  info->GetSource(&text);
  taken.source = Take(text);
  text = nullptr;
  info->GetDescription(&text);
  taken.description = Take(text);
  info->GetGUID(&taken.guid);
  return taken;
}

TEST_F(BinderVtableTest, ScalarsGoThroughUnchanged) {
  LONG number = 0;
  EXPECT_EQ(S_OK, vtable()->EchoLong(-2147483647 - 1, &number));
  EXPECT_EQ(-2147483647 - 1, number);
  SHORT small = 0;
  EXPECT_EQ(S_OK, vtable()->EchoShort(5, &small));
  EXPECT_EQ(5, small) << "a short is no Boolean";
  unsigned char byte = 0;
  EXPECT_EQ(S_OK, vtable()->EchoByte(200, &byte));
  EXPECT_EQ(200, byte);
  float single = 0;
  EXPECT_EQ(S_OK, vtable()->EchoSingle(0.5f, &single));
  EXPECT_EQ(0.5f, single);
  ::ProbeKind kind = probeKindNone;
  EXPECT_EQ(S_OK, vtable()->EchoKind(probeKindLow, &kind));
  EXPECT_EQ(probeKindLow, kind);
  VARIANT_BOOL flag = VARIANT_FALSE;
  EXPECT_EQ(S_OK, vtable()->EchoFlag(1, &flag)) << "anything but 0 is true";
  EXPECT_EQ(VARIANT_TRUE, flag);
  BSTR text = nullptr;
  EXPECT_EQ(S_OK, vtable()->EchoText(nullptr, &text));
  ASSERT_NE(nullptr, text) << "an empty text is no null pointer";
  EXPECT_EQ(L"", Take(text));
}

TEST_F(BinderVtableTest, NullResultPointersAreRefused) {
  EXPECT_EQ(E_POINTER, vtable()->EchoLong(1, nullptr));
  EXPECT_EQ(E_POINTER, vtable()->EchoText(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, vtable()->EchoValue(VARIANT{}, nullptr));
  EXPECT_EQ(E_POINTER, vtable()->EchoProbe(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, vtable()->get_Numbers(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->get_Value(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->Fail(0, nullptr));
}

TEST_F(BinderVtableTest, ErrorInfoComesFromTheClassesInterfaceOnly) {
  ComPtr<ISupportErrorInfo> support;
  ASSERT_EQ(S_OK, probe_.As(&support));
  EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(IID__Probe));
  EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(IID_IDispatch));
  EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(IID_ISupportErrorInfo));
  EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(DIID___Probe));
}

TEST_F(BinderVtableTest, ItsTypeIsToldToWhoTakesIt) {
  ComPtr<ITypeInfo> type;
  EXPECT_EQ(E_POINTER, vtable()->GetTypeInfoCount(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr));
  EXPECT_EQ(DISP_E_BADINDEX, vtable()->GetTypeInfo(1, LOCALE_USER_DEFAULT, &type));
}

TEST_F(BinderVtableTest, NullReferencesAreRefused) {
  EXPECT_EQ(E_POINTER, vtable()->ChangeLong(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->ChangeText(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->ChangeKind(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->ChangeValue(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->ChangeProbe(nullptr));
  EXPECT_EQ(E_POINTER, vtable()->AppendByte(nullptr, 1));
  LONG result = 5;
  EXPECT_EQ(E_POINTER, vtable()->AppendText(nullptr, nullptr, &result));
  EXPECT_EQ(0, result);
  result = 5;
  EXPECT_EQ(E_POINTER, vtable()->Count(nullptr, &result));
  EXPECT_EQ(0, result);
  EXPECT_FALSE(probe::HasErrorInfo());
}

TEST_F(BinderVtableTest, OptionalReferencesMayBeNull) {
  LONG result = 5;
  EXPECT_EQ(S_OK, vtable()->Find(nullptr, nullptr, nullptr, &result));
  EXPECT_EQ(0, result);
  Value where;
  EXPECT_EQ(S_OK, vtable()->Find(nullptr, &where.raw(), nullptr, &result));
  EXPECT_EQ(1, result);
  EXPECT_EQ(Value(L""), where);
}

TEST_F(BinderVtableTest, NullArraysAreEmpty) {
  SAFEARRAY* array = nullptr;
  LONG result = 5;
  EXPECT_EQ(S_OK, vtable()->Count(&array, &result));
  EXPECT_EQ(0, result);
  EXPECT_EQ(S_OK, vtable()->EchoLongs(nullptr, &array));
  EXPECT_EQ(nullptr, array);
}

TEST_F(BinderVtableTest, ReferencesAreChangedInPlace) {
  LONG number = 1;
  EXPECT_EQ(S_OK, vtable()->ChangeLong(&number));
  EXPECT_EQ(2, number);
  ::ProbeKind kind = probeKindFirst;
  EXPECT_EQ(S_OK, vtable()->ChangeKind(&kind));
  EXPECT_EQ(probeKindSecond, kind);
  ComPtr<::_Probe> object;
  EXPECT_EQ(S_OK, vtable()->ChangeProbe(object.GetAddressOf()));
  EXPECT_EQ(probe_.Get(), object.Get());
}

TEST_F(BinderVtableTest, ObjectsOfOtherMakersAreRefused) {
  // Any object with a vtable will do: the shim must not believe that it is a Probe.
  ComPtr<::_ProbeList> list;
  ASSERT_EQ(S_OK, vtable()->get_List(&list));
  ::_Probe* result = vtable();
  IUnknown* foreign = list.Get();
  EXPECT_EQ(static_cast<HRESULT>(0x800A000D),
            vtable()->EchoProbe(static_cast<::_Probe*>(foreign), &result));
  EXPECT_EQ(nullptr, result);
}

TEST_F(BinderVtableTest, FailuresCarryNumberSourceAndDescription) {
  EXPECT_EQ(static_cast<HRESULT>(0x80040401), Fail(ProbeFailure::kOwnError));
  ErrorInfo info = TakeErrorInfo();
  EXPECT_EQ(L"Somewhere.Else", info.source);
  EXPECT_EQ(L"on purpose", info.description);
  EXPECT_EQ(IID__Probe, info.guid);
  struct {
    ProbeFailure how;
    HRESULT expected;
  } const failures[] = {
      {ProbeFailure::kRuntimeError, static_cast<HRESULT>(0x800A0006)},
      {ProbeFailure::kBadAlloc, static_cast<HRESULT>(0x800A0007)},
      {ProbeFailure::kLengthError, static_cast<HRESULT>(0x800A0007)},
      {ProbeFailure::kForeignException, static_cast<HRESULT>(0x80040403)},
      {ProbeFailure::kNumber, static_cast<HRESULT>(0x80040403)},
  };
  for (const auto& [how, expected] : failures) {
    EXPECT_EQ(expected, Fail(how));
    info = TakeErrorInfo();
    EXPECT_EQ(L"Zepkit10.Probe", info.source);
    EXPECT_NE(L"", info.description);
  }
}

TEST_F(BinderVtableTest, RefusalsLeaveNoStaleErrorBehind) {
  Fail(ProbeFailure::kOwnError);
  EXPECT_EQ(E_POINTER, vtable()->EchoLong(1, nullptr));
  EXPECT_FALSE(probe::HasErrorInfo());
  Fail(ProbeFailure::kOwnError);
  EXPECT_EQ(E_POINTER, vtable()->ChangeLong(nullptr));
  EXPECT_FALSE(probe::HasErrorInfo());
}

TEST_F(BinderVtableTest, ErrorsArePromisedForItsOwnInterfaces) {
  ComPtr<ISupportErrorInfo> errors;
  ASSERT_EQ(S_OK, probe_.As(&errors));
  EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID__Probe));
  EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID__ProbeList));
}

}  // namespace
