// Buffers that cannot get the memory they need, and what is too long for any buffer.
#include <climits>

#include "com/buffer_fixture.h"
#include "com/memory_limit.h"

namespace {

using client::Object;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

class ZepVariantLimitTest : public WithBuffers {
 protected:
  static constexpr auto kOverflow = static_cast<HRESULT>(0x800A0006);
  static constexpr auto kOutOfMemory = static_cast<HRESULT>(0x800A0007);

  const Object source_ = New("abc");
};

TEST_P(ZepVariantLimitTest, WithoutMemoryNothingChanges) {
  if (!component::IsLinked()) GTEST_SKIP() << "only the linked component's memory is limited";
  const Object view = NewView(source_, 2, 1);
  const Sink* sink = Listen(source_);
  const std::wstring text(2000000, L'x');
  const Value bytes = ArrayOf(std::string(2000000, 'x'));
  {
    const MemoryLimit limit(1000000);
    for (const wchar_t* length : {L"ByteLength", L"StringLength"}) {
      for (const int many : {1000001, INT_MAX}) {
        EXPECT_BUFFER_RUNTIME_ERROR(source_.Let(length, {many}), 7, L"Out of memory");
      }
    }
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Let(L"DataByte", {2000000, 1}), 7, L"Out of memory");
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Let(L"DataString", {text}), 7, L"Out of memory");
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Let(L"DataBytes", {bytes}), 7, L"Out of memory");
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Let(L"RangeBytes", {1, 0, bytes}), 7, L"Out of memory");
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Let(L"RangeString", {1, 0, text}), 7, L"Out of memory");
  }
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_TRUE(sink->events().empty());
  EXPECT_OK(source_.Let(L"DataByte", {2, 'x'}));
  ExpectView(view, 2, "x");
}

TEST_P(ZepVariantLimitTest, WithoutMemoryNoViewIsMade) {
  if (!component::IsLinked()) GTEST_SKIP() << "only the linked component's memory is limited";
  const Object large = New(std::string(2000000, 'x'));
  const Sink* sink = Listen(source_);
  {
    const MemoryLimit limit(1000000);
    EXPECT_BUFFER_ERROR(large.Get(L"Range", {1, 2000000, true}), zepErrBadCall);
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Call(L"ConnectAsRange", {large, 1, 2000000}), 7,
                                L"Out of memory");
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Set(L"Range", {1, 1, true, large}), 7, L"Out of memory");
  }
  ExpectNoView(source_, "abc");
  EXPECT_TRUE(sink->events().empty());
  EXPECT_OK(Write(large, "new"));
  EXPECT_EQ(Bytes(source_), "abc") << "what could not be connected is no view";
}

TEST_P(ZepVariantLimitTest, AParentThatCannotGrowCatchesUp) {
  if (!component::IsLinked()) GTEST_SKIP() << "only the linked component's memory is limited";
  const Object parent = New(std::string(900000, 'x')), view = NewView(parent, 3, 0);
  {
    const MemoryLimit limit(1000000);
    EXPECT_BUFFER_RUNTIME_ERROR(Write(view, std::string(200000, 'y')), 7, L"Out of memory");
    EXPECT_EQ(parent.Get(L"ByteLength"), 900000);
  }
  EXPECT_OK(view.Let(L"DataByte", {1, 'z'}));
  EXPECT_EQ(parent.Get(L"ByteLength"), 1100000);
  EXPECT_EQ(BytesOf(parent.Get(L"RangeBytes", {1, 4})), "xxzy");
  EXPECT_EQ(BytesOf(parent.Get(L"RangeBytes", {200002, 2})), "yx");
  EXPECT_EQ(view.Get(L"RangeLength"), 200000);
}

// The length claims more than the text has: a buffer that believed it would read beyond its end.
TEST_P(ZepVariantLimitTest, TextsOfMoreBytesThanALongCountsOverflow) {
  struct {
    DWORD padding, byte_length;
    wchar_t text[2];
  } claimed{0, 0x80000000, L"a"};
  ComPtr<_ZepVariant> buffer;
  ASSERT_EQ(S_OK, source_.get()->QueryInterface(IID_PPV_ARGS(&buffer)));
  EXPECT_OK(source_.Let(L"StringType", {zepSTUnicode}));
  const Sink* sink = Listen(source_);
  EXPECT_EQ(kOverflow, buffer->put_DataString(claimed.text));
  EXPECT_EQ(kOverflow, buffer->put_RangeString(1, 1, claimed.text));
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantLimitTest, ArraysOfMoreBytesThanALongCountsHaveNoRoom) {
  unsigned char byte = 0;
  SAFEARRAY* claimed = nullptr;
  ASSERT_EQ(S_OK, SafeArrayAllocDescriptorEx(VT_UI1, 1, &claimed));
  claimed->rgsabound[0] = {0x80000000, INT_MIN};
  claimed->pvData = &byte;
  ComPtr<_ZepVariant> buffer;
  ASSERT_EQ(S_OK, source_.get()->QueryInterface(IID_PPV_ARGS(&buffer)));
  const Sink* sink = Listen(source_);
  EXPECT_EQ(kOutOfMemory, buffer->put_DataBytes(claimed));
  EXPECT_EQ(kOutOfMemory, buffer->put_RangeBytes(1, 1, claimed));
  EXPECT_EQ(0u, claimed->cLocks);
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_TRUE(sink->events().empty());
  claimed->pvData = nullptr;
  SafeArrayDestroyDescriptor(claimed);
}

RUN_IN_BOTH_BINDINGS(ZepVariantLimitTest);

}  // namespace
