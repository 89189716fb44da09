// The bytes of a buffer.
#include <climits>

#include "com/buffer_fixture.h"
#include "com/value_array.h"

namespace {

using namespace std::string_literals;
using client::Object;
using client::Outcome;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

class ZepVariantTest : public WithBuffers {
 protected:
  const Object buffer_ = New();
  const Object source_ = New("abc");
};

TEST_P(ZepVariantTest, ANewBufferIsEmpty) {
  EXPECT_EQ(buffer_.Get(L"ByteLength"), 0);
  EXPECT_EQ(buffer_.Get(L"StringLength"), 0);
  EXPECT_EQ(buffer_.Get(L"DataString"), L"");
  value_array::ExpectUnallocated(buffer_.Get(L"DataBytes"), VT_UI1);
  EXPECT_EQ(buffer_.Get(L"StringType"), int{zepSTAnsi});
  EXPECT_EQ(buffer_.Get(L"StringType"), 1);
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), false);
  EXPECT_EQ(buffer_.Get(L"IsRange"), false);
  EXPECT_EQ(buffer_.Get(L"RangeStart"), 0);
  EXPECT_EQ(buffer_.Get(L"RangeLength"), 0);
}

TEST_P(ZepVariantTest, BuffersAreIndependent) {
  EXPECT_OK(Write(buffer_, "xyz"));
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_EQ(source_.Get(L"StringType"), 1);
}

TEST_P(ZepVariantTest, ByteLengthCutsAndAddsZeros) {
  EXPECT_OK(Write(buffer_, "0123456789"));
  EXPECT_OK(buffer_.Let(L"ByteLength", {2}));
  EXPECT_EQ(Bytes(buffer_), "01");
  EXPECT_EQ(buffer_.Get(L"ByteLength"), 2);
  EXPECT_OK(buffer_.Let(L"ByteLength", {5}));
  EXPECT_EQ(Bytes(buffer_), "01\0\0\0"s) << "what was cut does not come back";
  EXPECT_OK(buffer_.Let(L"ByteLength", {5}));
  EXPECT_EQ(Bytes(buffer_), "01\0\0\0"s);
  EXPECT_OK(buffer_.Let(L"ByteLength", {0}));
  value_array::ExpectUnallocated(buffer_.Get(L"DataBytes"), VT_UI1);
  EXPECT_EQ(buffer_.Get(L"ByteLength"), 0);
  EXPECT_OK(buffer_.Let(L"ByteLength", {0}));
  EXPECT_OK(buffer_.Let(L"ByteLength", {1}));
  EXPECT_EQ(Bytes(buffer_), "\0"s);
}

TEST_P(ZepVariantTest, LengthsAreNotNegative) {
  const Sink* sink = Listen(source_);
  for (const int length : {-1, INT_MIN}) {
    for (const int type : {zepSTAscii, zepSTAnsi, zepSTUnicode}) {
      EXPECT_OK(source_.Let(L"StringType", {type}));
      EXPECT_BUFFER_ERROR(source_.Let(L"ByteLength", {length}), zepErrBadPropValue);
      EXPECT_BUFFER_ERROR(source_.Let(L"StringLength", {length}), zepErrBadPropValue);
    }
  }
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantTest, DataByteReadsFromOneToTheLength) {
  EXPECT_OK(Write(buffer_, "a\0\xFF"s));
  const auto byte = [&](int index) {
    const Outcome outcome = buffer_.Get(L"DataByte", {index});
    EXPECT_EQ(VT_UI1, outcome.value.type());
    return int{outcome.value.raw().bVal};
  };
  EXPECT_EQ(97, byte(1));
  EXPECT_EQ(0, byte(2));
  EXPECT_EQ(255, byte(3));
  for (const int outside : {INT_MIN, -1, 0, 4, INT_MAX}) {
    EXPECT_BUFFER_ERROR(buffer_.Get(L"DataByte", {outside}), zepErrBadCall);
  }
  EXPECT_OK(buffer_.Let(L"ByteLength", {0}));
  for (const int any : {INT_MIN, -1, 0, 1, INT_MAX}) {
    EXPECT_BUFFER_ERROR(buffer_.Get(L"DataByte", {any}), zepErrBadCall);
  }
}

TEST_P(ZepVariantTest, DataByteWritesPastTheEnd) {
  EXPECT_OK(buffer_.Let(L"DataByte", {5, 200}));
  EXPECT_EQ(Bytes(buffer_), "\0\0\0\0\xC8"s);
  EXPECT_OK(buffer_.Let(L"DataByte", {1, 255}));
  EXPECT_EQ(Bytes(buffer_), "\xFF\0\0\0\xC8"s) << "and never shortens";
  EXPECT_OK(buffer_.Let(L"DataByte", {6, 0}));
  EXPECT_EQ(Bytes(buffer_), "\xFF\0\0\0\xC8\0"s);
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_OK(buffer_.Let(L"DataByte", {7, 1}));
  EXPECT_EQ(buffer_.Get(L"ByteLength"), 7) << "a byte is no character";
}

TEST_P(ZepVariantTest, DataByteIsNotWrittenBelowOne) {
  for (const int below : {INT_MIN, -1, 0}) {
    EXPECT_BUFFER_ERROR(buffer_.Let(L"DataByte", {below, 1}), zepErrUnexpected);
    EXPECT_BUFFER_ERROR(source_.Let(L"DataByte", {below, 1}), zepErrUnexpected);
  }
  EXPECT_EQ(buffer_.Get(L"ByteLength"), 0);
  EXPECT_EQ(Bytes(source_), "abc");
}

TEST_P(ZepVariantTest, DataBytesCountFromOneWhateverTheyCountedFrom) {
  for (const LONG lower_bound : {INT_MIN, -7, -1, 0, 1, 2, 1000, INT_MAX - 3}) {
    EXPECT_OK(buffer_.Let(L"DataBytes", {ArrayOf("a\0b\xFF"s, lower_bound)}));
    EXPECT_EQ(Bytes(buffer_), "a\0b\xFF"s) << lower_bound;
    EXPECT_OK(buffer_.Let(L"DataBytes", {ArrayOf("x", lower_bound)}));
    EXPECT_EQ(Bytes(buffer_), "x") << lower_bound;
  }
}

TEST_P(ZepVariantTest, DataBytesWithoutElementsEmptyTheBuffer) {
  for (const Value& empty : {Unallocated(), ArrayOf("", 1), ArrayOf("", 0), ArrayOf("", 9)}) {
    EXPECT_OK(Write(buffer_, "abc"));
    EXPECT_OK(buffer_.Let(L"DataBytes", {empty}));
    EXPECT_EQ(buffer_.Get(L"ByteLength"), 0);
  }
}

TEST_P(ZepVariantTest, DataBytesAreCopiedBothWays) {
  Value array = ArrayOf("abc");
  EXPECT_OK(buffer_.Let(L"DataBytes", {array}));
  static_cast<char*>(array.raw().parray->pvData)[0] = 'X';
  const Outcome copy = buffer_.Get(L"DataBytes");
  static_cast<char*>(copy.value.raw().parray->pvData)[1] = 'X';
  EXPECT_EQ(Bytes(buffer_), "abc");
}

TEST_P(ZepVariantTest, ArraysMayBeLockedOrByReference) {
  Value array = ArrayOf("abc", 4);
  VARIANT reference;
  reference.vt = VT_BYREF | VT_ARRAY | VT_UI1;
  reference.pparray = &array.raw().parray;
  SafeArrayLock(array.raw().parray);
  EXPECT_OK(buffer_.Let(L"DataBytes", {Value(reference)}));
  EXPECT_EQ(1u, array.raw().parray->cLocks);
  SafeArrayUnlock(array.raw().parray);
  EXPECT_EQ(4, array.raw().parray->rgsabound[0].lLbound) << "the client's array stays as it is";
  EXPECT_EQ(Bytes(buffer_), "abc");
}

TEST_P(ZepVariantTest, ArraysOfMoreDimensionsAreRefused) {
  Value grid;
  SAFEARRAYBOUND bounds[] = {{2, 1}, {3, 1}};
  grid.raw().vt = VT_ARRAY | VT_UI1;
  grid.raw().parray = SafeArrayCreate(VT_UI1, 2, bounds);
  const Sink* sink = Listen(source_);
  EXPECT_BUFFER_ERROR(source_.Let(L"DataBytes", {grid}), zepErrBadCall);
  EXPECT_BUFFER_ERROR(source_.Let(L"RangeBytes", {1, 1, grid}), zepErrBadCall);
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantTest, OtherArraysAreNoBytes) {
  const Sink* sink = Listen(source_);
  ComPtr<_ZepVariant> buffer;
  ASSERT_EQ(S_OK, source_.get()->QueryInterface(IID_PPV_ARGS(&buffer)));
  constexpr auto kTypeMismatch = static_cast<HRESULT>(0x800A000D);
  for (const VARTYPE type : {VT_I2, VT_I4, VT_BSTR, VT_VARIANT, VT_I1, VT_BOOL}) {
    SAFEARRAY* other = SafeArrayCreateVector(type, 1, 2);
    EXPECT_EQ(kTypeMismatch, buffer->put_DataBytes(other)) << type;
    EXPECT_EQ(kTypeMismatch, buffer->put_RangeBytes(1, 1, other)) << type;
    SafeArrayDestroy(other);
  }
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantTest, OtherValuesAreNoBytes) {
  for (const Value& other : {Value(5), Value::Null(), Value(source_)}) {
    EXPECT_EQ(DISP_E_TYPEMISMATCH, source_.Let(L"DataBytes", {other}).result) << other;
  }
  EXPECT_EQ(Bytes(source_), "abc");
}

TEST_P(ZepVariantTest, ByteByByteGrowthIsFast) {
  ComPtr<_ZepVariant> buffer;
  ASSERT_EQ(S_OK, buffer_.get()->QueryInterface(IID_PPV_ARGS(&buffer)));
  constexpr LONG kCount = 300000;  // copying it all for each byte would take minutes
  for (LONG i = 1; i <= kCount; ++i) buffer->put_DataByte(i, static_cast<unsigned char>(i));
  LONG length = 0;
  EXPECT_EQ(S_OK, buffer->get_ByteLength(&length));
  EXPECT_EQ(kCount, length);
  for (LONG i = 1; i <= kCount; i += 997) {
    unsigned char byte = 0;
    EXPECT_EQ(S_OK, buffer->get_DataByte(i, &byte));
    EXPECT_EQ(static_cast<unsigned char>(i), byte);
  }
}

TEST_P(ZepVariantTest, AppendingThroughViewsIsFastToo) {
  const Object middle = NewView(source_, 2, 2), end = NewView(middle, 3, 0);
  ComPtr<_ZepVariant> appended;
  ASSERT_EQ(S_OK, end.get()->QueryInterface(IID_PPV_ARGS(&appended)));
  constexpr int kCount = 200000;
  for (int i = 1; i <= kCount; ++i) appended->put_DataByte(i, static_cast<unsigned char>(i));
  EXPECT_EQ(source_.Get(L"ByteLength"), kCount + 3);
  EXPECT_EQ(middle.Get(L"RangeLength"), kCount + 2);
  EXPECT_EQ(end.Get(L"RangeLength"), kCount);
  EXPECT_EQ(BytesOf(source_.Get(L"RangeBytes", {1, 5})), "abc\1\2");
  EXPECT_EQ(Bytes(end), Bytes(source_).substr(3));
}

TEST_P(ZepVariantTest, ABytesValueIsAByte) {
  for (const int value : {256, -1, INT_MAX}) {
    EXPECT_FALSE(source_.Let(L"DataByte", {1, value}).ok()) << value;
  }
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_OK(source_.Let(L"DataByte", {Value(1.0), Value(L"65")}));
  EXPECT_EQ(Bytes(source_), "Abc");
}

RUN_IN_BOTH_BINDINGS(ZepVariantTest);

}  // namespace
