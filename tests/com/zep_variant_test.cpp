// The bytes of a buffer and their protection.
#include <climits>

#include "com/buffer_fixture.h"
#include "com/memory_limit.h"
#include "com/value_array.h"

namespace {

using namespace std::string_literals;
using client::Event;
using client::Object;
using client::Outcome;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

class ZepVariantTest : public WithBuffers {
 protected:
  /// Every way to write the whole content or a part of it, with arguments that fit three bytes.
  std::vector<std::pair<const char*, std::function<Outcome()>>> Writes() const {
    return {
        {"ByteLength", [&] { return buffer_.Let(L"ByteLength", {3}); }},
        {"DataByte",
         [&] {
           return buffer_.Let(L"DataByte", {1, 97});
         }},
        {"DataBytes", [&] { return Write(buffer_, "abc"); }},
        {"DataString", [&] { return buffer_.Let(L"DataString", {L"abc"}); }},
        {"StringLength", [&] { return buffer_.Let(L"StringLength", {3}); }},
        {"let Range",
         [&] {
           return buffer_.Let(L"Range", {1, 3, true, source_});
         }},
        {"set Range",
         [&] {
           return buffer_.Set(L"Range", {1, 3, true, source_});
         }},
        {"RangeBytes",
         [&] {
           return buffer_.Let(L"RangeBytes", {1, 3, ArrayOf("abc")});
         }},
        {"RangeString",
         [&] {
           return buffer_.Let(L"RangeString", {1, 3, L"abc"});
         }},
    };
  }

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

TEST_P(ZepVariantTest, WithoutMemoryNothingChanges) {
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

TEST_P(ZepVariantTest, EveryWriteRaisesOneChange) {
  EXPECT_OK(Write(buffer_, "abc"));
  for (const auto& [name, write] : Writes()) {
    SCOPED_TRACE(name);
    const ComPtr<Sink> sink = Sink::Connect(buffer_.get(), DIID___ZepVariant);
    EXPECT_OK(write());
    EXPECT_EQ(Bytes(buffer_), "abc") << "equal to the old";
    EXPECT_EQ(sink->events(), (std::vector<Event>{{kChange, {}}}));
    EXPECT_OK(write());
    EXPECT_EQ(2u, sink->events().size());
    sink->Disconnect();
  }
}

TEST_P(ZepVariantTest, WritesThatEmptyOrKeepRaiseOneChangeToo) {
  const Sink* sink = Listen(buffer_);
  std::size_t count = 0;
  for (const wchar_t* length : {L"ByteLength", L"StringLength"}) {
    EXPECT_OK(buffer_.Let(length, {0}));
    EXPECT_EQ(++count, sink->events().size());
  }
  EXPECT_OK(buffer_.Let(L"DataString", {L""}));
  EXPECT_OK(buffer_.Let(L"DataBytes", {Unallocated()}));
  EXPECT_OK(buffer_.Let(L"DataString", {L"abcdef"}));
  EXPECT_OK(buffer_.Let(L"StringLength", {2}));
  EXPECT_EQ(count + 4, sink->events().size());
  EXPECT_OK(buffer_.Let(L"DataByte", {9, 1}));
  EXPECT_OK(buffer_.Let(L"ByteLength", {100}));
  EXPECT_OK(buffer_.Let(L"ByteLength", {1}));
  EXPECT_EQ(count + 7, sink->events().size());
}

TEST_P(ZepVariantTest, ReadingRaisesNothing) {
  const Sink* sink = Listen(source_);
  for (const wchar_t* name :
       {L"ByteLength", L"DataBytes", L"DataString", L"IsRange", L"RangeLength", L"RangeStart",
        L"ReadOnly", L"StringLength", L"StringType"}) {
    EXPECT_OK(source_.Get(name));
  }
  EXPECT_OK(source_.Get(L"DataByte", {1}));
  EXPECT_OK(source_.Get(L"Range", {1, 1}));
  EXPECT_OK(source_.Get(L"RangeBytes", {1, 1}));
  EXPECT_OK(source_.Get(L"RangeString", {1, 1}));
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantTest, ChangeComesWhenTheContentIsNew) {
  std::string heard;
  Watch(buffer_, "buffer", [&] { heard = Bytes(buffer_); });
  EXPECT_OK(Write(buffer_, "new"));
  EXPECT_EQ(heard, "new");
}

TEST_P(ZepVariantTest, AFailingHandlerDoesNotFailTheWrite) {
  const Sink* sink = Listen(buffer_, [](const Event&) { return E_FAIL; });
  EXPECT_OK(Write(buffer_, "new"));
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(Bytes(buffer_), "new");
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), true);
  EXPECT_EQ(3u, sink->events().size());
}

TEST_P(ZepVariantTest, AReadOnlyBufferIsNotWritten) {
  EXPECT_OK(Write(buffer_, "xyz"));
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  const Sink* sink = Listen(buffer_);
  for (const auto& [name, write] : Writes()) {
    SCOPED_TRACE(name);
    EXPECT_BUFFER_ERROR(write(), zepErrReadOnly);
  }
  EXPECT_TRUE(sink->events().empty());
  EXPECT_EQ(Bytes(buffer_), "xyz");
  EXPECT_OK(buffer_.Let(L"ReadOnly", {false}));
  for (const auto& [name, write] : Writes()) EXPECT_OK(write());
  EXPECT_EQ(Bytes(buffer_), "abc");
}

TEST_P(ZepVariantTest, ReadOnlyIsRefusedBeforeAnythingElse) {
  EXPECT_OK(source_.Let(L"ReadOnly", {true}));
  EXPECT_BUFFER_ERROR(source_.Let(L"ByteLength", {-1}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"StringLength", {-1}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"DataByte", {0, 1}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"RangeBytes", {9, 9, Unallocated()}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"RangeString", {9, 9, L""}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Let(L"Range", {9, 9, true, Value::Nothing()}), zepErrReadOnly);
  EXPECT_BUFFER_ERROR(source_.Set(L"Range", {9, 9, true, Value::Nothing()}), zepErrReadOnly);
}

/// Hears the protection change; the handler may set the flag that cancels.
struct Protection {
  bool new_value;
  bool old_value;  // of the property while heard
  bool cancel;
  friend bool operator==(const Protection&, const Protection&) = default;
};

TEST_P(ZepVariantTest, ReadOnlyAsksAndTells) {
  std::vector<Protection> asked;
  const Sink* sink = Listen(buffer_, [&](const Event& event) {
    const bool is_on = buffer_.Get(L"ReadOnly") == true;
    const bool wanted = event.arguments[0] == Value(true);
    EXPECT_EQ(VT_BOOL, event.arguments[0].type());
    if (event.id == kBeforeROChange) {
      EXPECT_EQ(VT_BYREF | VT_BOOL, event.arguments[1].type());
      asked.push_back({wanted, is_on, *event.arguments[1].raw().pboolVal != VARIANT_FALSE});
    } else {
      EXPECT_EQ(kROChanged, event.id);
      EXPECT_EQ(wanted, is_on);
    }
    return S_OK;
  });
  const auto ids = [&] {
    std::vector<DISPID> all;
    for (const Event& event : sink->events()) all.push_back(event.id);
    return all;
  };
  EXPECT_OK(buffer_.Let(L"ReadOnly", {false}));
  EXPECT_EQ(ids(), (std::vector<DISPID>{})) << "the current value";
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(ids(), (std::vector<DISPID>{kBeforeROChange, kROChanged}));
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(2u, sink->events().size()) << "the current value";
  EXPECT_OK(buffer_.Let(L"ReadOnly", {false}));
  EXPECT_EQ(ids(), (std::vector<DISPID>{kBeforeROChange, kROChanged, kBeforeROChange, kROChanged}));
  EXPECT_EQ(asked, (std::vector<Protection>{{true, false, false}, {false, true, false}}));
}

TEST_P(ZepVariantTest, AHandlerMayCancelTheProtection) {
  bool cancels = true;
  const Sink* sink = Listen(buffer_, [&](const Event& event) {
    if (event.id == kBeforeROChange && cancels) {
      *event.arguments[1].raw().pboolVal = VARIANT_TRUE;
    }
    return S_OK;
  });
  EXPECT_BUFFER_ERROR(buffer_.Let(L"ReadOnly", {true}), zepErrCallRefused);
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), false);
  EXPECT_EQ(1u, sink->events().size());
  EXPECT_OK(Write(buffer_, "abc"));
  cancels = false;
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  cancels = true;
  EXPECT_BUFFER_ERROR(buffer_.Let(L"ReadOnly", {false}), zepErrCallRefused);
  EXPECT_EQ(buffer_.Get(L"ReadOnly"), true);
  EXPECT_EQ(5u, sink->events().size());
  EXPECT_OK(buffer_.Let(L"ReadOnly", {true}));
  EXPECT_EQ(5u, sink->events().size());
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

RUN_IN_BOTH_BINDINGS(ZepVariantTest);

}  // namespace
