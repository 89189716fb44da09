// GetFiles: the array that it fills.
#include "com/get_files_fixture.h"

namespace {

using client::Binding;
using client::Outcome;
using client::Value;

class GetFilesArrayTest : public WithListing {};

TEST_P(GetFilesArrayTest, NothingFoundLeavesTheArrayAlone) {
  folder_.Directory(L"empty");
  TextVariable files(SafeArrayCreateVector(VT_BSTR, 5, 2)), none;
  static_cast<BSTR*>(files.array()->pvData)[0] = SysAllocString(L"kept");
  SAFEARRAY* before = files.array();
  for (const bool recursive : {false, true}) {
    for (const wchar_t* spec : {L"*", L"*.*", L"*.txt"}) {
      EXPECT_EQ(Call(folder_.path(), spec, files.Reference(), recursive), 0);
      EXPECT_EQ(Call(folder_.path(), spec, none.Reference(), recursive), 0);
    }
  }
  EXPECT_EQ(files.array(), before);
  EXPECT_EQ(5, before->rgsabound[0].lLbound);
  EXPECT_EQ(std::wstring(L"kept"), static_cast<BSTR*>(before->pvData)[0]);
  EXPECT_EQ(none.array(), nullptr);
}

TEST_P(GetFilesArrayTest, ReplacesWhateverArrayThereWas) {
  folder_.File(L"a.txt");
  TextVariable longer(SafeArrayCreateVector(VT_BSTR, -3, 50));
  static_cast<BSTR*>(longer.array()->pvData)[0] = SysAllocString(L"old");
  SAFEARRAYBOUND bounds[] = {{2, 1}, {3, 1}};
  TextVariable matrix(SafeArrayCreate(VT_BSTR, 2, bounds));
  TextVariable empty(SafeArrayCreateVector(VT_BSTR, 0, 0));
  for (TextVariable* files : {&longer, &matrix, &empty}) {
    EXPECT_EQ(Call(folder_.path(), L"*", files->Reference(), false), 1);
    EXPECT_EQ(files->Read(), In(L"", {L"a.txt"}));
  }
}

TEST_P(GetFilesArrayTest, EveryCallStartsFromNothing) {
  folder_.File(L"a.txt");
  folder_.File(L"b.txt");
  TextVariable files;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), true), 2);
  EXPECT_EQ(Call(folder_ / L"missing", L"*", files.Reference(), true), -1);
  EXPECT_EQ(Call(folder_.path(), L"b.*", files.Reference(), true), 1);
  EXPECT_EQ(files.Read(), In(L"", {L"b.txt"}));
}

TEST_P(GetFilesArrayTest, LockedAndFixedArraysAreRefused) {
  folder_.File(L"a.txt");
  TextVariable files(SafeArrayCreateVector(VT_BSTR, 1, 2));
  SAFEARRAY* before = files.array();
  const auto expect_refusal = [&] {
    const Outcome refused = Call(folder_.path(), L"*", files.Reference(), false);
    if (root_.binding() == Binding::kVtable) {
      EXPECT_ERROR(refused, 10, std::wstring(L"Zepkit10.") + RootName(),
                   L"This array is fixed or temporarily locked");
    } else {
      EXPECT_EQ(DISP_E_ARRAYISLOCKED, refused.result);  // hosts say 10
    }
    EXPECT_EQ(before, files.array());
    EXPECT_EQ(1, before->rgsabound[0].lLbound);
    EXPECT_EQ(nullptr, static_cast<BSTR*>(before->pvData)[0]);
  };
  SafeArrayLock(before);
  expect_refusal();
  SafeArrayUnlock(before);
  for (const USHORT feature : {FADF_FIXEDSIZE, FADF_STATIC, FADF_AUTO, FADF_EMBEDDED}) {
    before->fFeatures |= feature;
    expect_refusal();
    before->fFeatures &= static_cast<USHORT>(~feature);
  }
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), false), 1);
}

TEST_P(GetFilesArrayTest, NothingFoundAsksNothingOfTheArray) {
  if (root_.binding() == Binding::kDispatch) return;  // refused before the member is called
  TextVariable files(SafeArrayCreateVector(VT_BSTR, 1, 2));
  SafeArrayLock(files.array());
  files.array()->fFeatures |= FADF_FIXEDSIZE;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), true), 0);
  EXPECT_EQ(Call(folder_ / L"missing", L"*", files.Reference(), true), -1);
  files.array()->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  SafeArrayUnlock(files.array());
}

TEST_P(GetFilesArrayTest, FillsTheVariableOfAScript) {
  if (root_.binding() == Binding::kVtable) return;  // only late-bound clients have one
  folder_.File(L"a.txt");
  folder_.File(L"b.txt");
  Value files;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), false), 2);
  for (const wchar_t* spec : {L"*", L"b.*"}) {  // the second time it is an array
    const Outcome count = Call(folder_.path(), spec, files.Reference(), false);
    ASSERT_EQ(VT_ARRAY | VT_VARIANT, files.type());
    EXPECT_EQ(count, static_cast<int>(files.raw().parray->rgsabound[0].cElements));
    EXPECT_EQ(0, files.raw().parray->rgsabound[0].lLbound);
  }
  EXPECT_EQ(*static_cast<VARIANT*>(files.raw().parray->pvData)->bstrVal, folder_.path()[0]);
  EXPECT_EQ(Value(*static_cast<VARIANT*>(files.raw().parray->pvData)), folder_ / L"b.txt");
}

TEST_P(GetFilesArrayTest, NothingFoundLeavesTheVariableOfAScriptAlone) {
  if (root_.binding() == Binding::kVtable) return;  // only late-bound clients have one
  Value files;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), false), 0);
  EXPECT_EQ(Call(folder_ / L"nowhere", L"*", files.Reference(), false), -1);
  EXPECT_EQ(VT_EMPTY, files.type());
}

TEST_P(GetFilesArrayTest, AnArrayOfAnotherTypeIsRefused) {
  folder_.File(L"a.txt");
  Microsoft::WRL::ComPtr<_Library> library;
  if (FAILED(root_.get()->QueryInterface(IID_PPV_ARGS(&library)))) return;
  TextVariable numbers(SafeArrayCreateVector(VT_I4, 0, 1));
  SAFEARRAY* before = numbers.array();
  long count = 5;
  EXPECT_EQ(static_cast<HRESULT>(0x800A000D),
            library->GetFiles(Value(folder_.path()).raw().bstrVal, nullptr, numbers.address(),
                              VARIANT_FALSE, &count));
  EXPECT_EQ(0, count);
  EXPECT_EQ(before, numbers.array());
}

RUN_WITH_BOTH_ROOTS(GetFilesArrayTest);

}  // namespace
