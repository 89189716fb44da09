// DocHand: files too long for the reports of a transfer, or for any transfer.
#include "com/doc_hand_fault_fixture.h"

namespace {

// A large file that is not there.
LONGLONG pretended_size = 0;
BOOL WINAPI PretendSize(HANDLE, LARGE_INTEGER* size) {
  size->QuadPart = pretended_size;
  return TRUE;
}
BOOL WINAPI PretendToRead(HANDLE, void*, DWORD size, DWORD* count, OVERLAPPED*) {
  *count = size;
  return TRUE;
}
BOOL WINAPI PretendToWrite(HANDLE, const void*, DWORD size, DWORD* count, OVERLAPPED*) {
  *count = size;
  return TRUE;
}

constexpr int kLastSafeReport = 21474304, kFirstOverflow = 21475328;

using DocHandOverflowTest = WithFaults;

TEST_P(DocHandOverflowTest, AFileThatIsTooLong) {
  EXPECT_OK(Open(path_));
  pretended_size = LONGLONG{1} << 31;
  const SizeHook hook(PretendSize);
  EXPECT_RUNTIME_ERROR(Update(), 6, L"Overflow");
  ExpectPointerRestored();
}

TEST_P(DocHandOverflowTest, ReportsOverflow) {
  EXPECT_OK(Open(path_));
  const SizeHook size_hook(PretendSize);
  const ReadHook read_hook(PretendToRead);
  pretended_size = kFirstOverflow - 1;
  Listen();
  EXPECT_OK(Update());
  const Events heard = Heard();
  ASSERT_EQ(static_cast<std::size_t>(kLastSafeReport / 1024 + 4), heard.size());
  EXPECT_EQ(PartlyRead(kFirstOverflow - 1, kLastSafeReport, 99.9952393f),
            heard[kLastSafeReport / 1024]);
  pretended_size = kFirstOverflow;
  EXPECT_RUNTIME_ERROR(Update(), 6, L"Overflow");
  EXPECT_EQ(static_cast<std::size_t>(kLastSafeReport / 1024 + 1), Heard().size());
  EXPECT_EQ(Content().Get(L"ByteLength"), kFirstOverflow - 1);
  ExpectPointerRestored();
  ExpectDeaf(true);
}

TEST_P(DocHandOverflowTest, ReportsOfASavingOverflow) {
  EXPECT_OK(Open(path_));
  const WriteHook hook(PretendToWrite);
  EXPECT_OK(Content().Let(L"ByteLength", {kFirstOverflow - 1}));
  EXPECT_OK(Save());
  EXPECT_OK(Content().Let(L"ByteLength", {kFirstOverflow}));
  Listen();
  EXPECT_RUNTIME_ERROR(Save(), 6, L"Overflow");
  const Events heard = Heard();
  ASSERT_EQ(static_cast<std::size_t>(kLastSafeReport / 1024 + 1), heard.size());
  EXPECT_EQ(PartlyWritten(kFirstOverflow, kLastSafeReport, 99.9952316f), heard.back());
  EXPECT_EQ(Status(), kOpen | kChanged);
  ExpectPointerRestored();
}

TEST_P(DocHandOverflowTest, WithoutReportsNothingOverflows) {
  EXPECT_ZEP_ERROR(Open(L""), zepErrIndexOutOfRange, L"List");  // freezes events
  EXPECT_OK(Open(path_));
  pretended_size = kFirstOverflow;
  const SizeHook size_hook(PretendSize);
  const ReadHook read_hook(PretendToRead);
  EXPECT_OK(Update());
  EXPECT_EQ(Content().Get(L"ByteLength"), kFirstOverflow);
}

RUN_IN_BOTH_BINDINGS(DocHandOverflowTest);

class DocHandLargeFileTest : public WithDocument {
 protected:
  void SetUp() override {
    if (component::IsLinked()) GTEST_SKIP() << "the same is tested above without so large a file";
  }
};

TEST_P(DocHandLargeFileTest, ReportsOverflowBehindTheByteThatIsTransferred) {
  EXPECT_OK(Content().Let(L"ByteLength", {kFirstOverflow}));
  EXPECT_RUNTIME_ERROR(SaveAs(path_), 6, L"Overflow");
  EXPECT_EQ(Status(), kOpen | kChanged);
  EXPECT_EQ(folder_.Read(L"a.txt"), std::string(kFirstOverflow, '\0'));
  EXPECT_OK(Close());
  document_ = Create(CLSID_DocHand);
  Listen();
  EXPECT_RUNTIME_ERROR(Open(path_, true), 6, L"Overflow");
  EXPECT_EQ(PartlyRead(kFirstOverflow, kLastSafeReport, 99.9952316f), Heard().back());
  EXPECT_EQ(Bytes(), "");
}

// The bindings make no difference here, but the test takes its time.
INSTANTIATE_TEST_SUITE_P(Binding, DocHandLargeFileTest, testing::Values(client::Binding::kDispatch),
                         testing::PrintToStringParamName());

}  // namespace
