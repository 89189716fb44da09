// The text of a buffer and its encodings.
#include "com/buffer_fixture.h"
#include "com/german_user.h"

namespace {

using namespace std::string_literals;
using client::Object;
using client::Sink;
using client::Value;

class ZepVariantTextTest : public WithBuffers {
 protected:
  void ExpectText(int type, const std::wstring& text, const std::string& bytes) const {
    EXPECT_OK(buffer_.Let(L"StringType", {type}));
    EXPECT_OK(buffer_.Let(L"DataString", {text}));
    EXPECT_EQ(Bytes(buffer_), bytes);
    EXPECT_EQ(buffer_.Get(L"ByteLength"), static_cast<int>(bytes.size()));
    EXPECT_EQ(buffer_.Get(L"StringLength"), static_cast<int>(text.size()));
    EXPECT_EQ(buffer_.Get(L"DataString"), text);
  }

  const Object buffer_ = New();
  const Object source_ = New("abc");
};

TEST_P(ZepVariantTextTest, TheTextIsTheDefaultMember) {
  EXPECT_OK(buffer_.Let(L"DataString", {L"text"}));
  DISPPARAMS none{};
  Value text;
  EXPECT_EQ(S_OK,
            buffer_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                  &none, &text.raw(), nullptr, nullptr));
  EXPECT_EQ(text, Value(L"text"));
}

TEST_P(ZepVariantTextTest, EachEncodingReadsWhatItWrote) {
  ExpectText(zepSTAnsi, L"A\x00E4\x20AC", "A\xE4\x80");
  ExpectText(zepSTAscii, L"A\x00E4\x00F6\x00FC\x00DF", "A\x84\x94\x81\xE1");
  ExpectText(zepSTUnicode, L"A\x00E4\x20AC\x4E2D\x7FFF", "A\0\xE4\0\xAC\x20\x2D\x4E\xFF\x7F"s);
  for (const int type : {zepSTAscii, zepSTAnsi, zepSTUnicode}) ExpectText(type, L"", "");
}

TEST_P(ZepVariantTextTest, NulsAreCharacters) {
  const std::wstring text(L"\0a\0b\0", 5);
  ExpectText(zepSTAscii, text, "\0a\0b\0"s);
  ExpectText(zepSTAnsi, text, "\0a\0b\0"s);
  ExpectText(zepSTUnicode, text, "\0\0a\0\0\0b\0\0\0"s);
}

TEST_P(ZepVariantTextTest, WhatACodePageLacksIsReplaced) {
  EXPECT_OK(buffer_.Let(L"DataString", {L"a\x4E2Dz"}));
  EXPECT_EQ(buffer_.Get(L"DataString"), L"a?z");
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTAscii}));
  EXPECT_OK(buffer_.Let(L"DataString", {L"a\x4E2Dz"}));
  EXPECT_EQ(buffer_.Get(L"DataString"), L"a?z");
}

TEST_P(ZepVariantTextTest, UnicodeCharactersFromTheUpperHalfOverflowOnReading) {
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_OK(buffer_.Let(L"DataString", {L"a\x8000"}));
  EXPECT_EQ(Bytes(buffer_), "a\0\0\x80"s);
  EXPECT_EQ(buffer_.Get(L"StringLength"), 2);
  EXPECT_BUFFER_RUNTIME_ERROR(buffer_.Get(L"DataString"), 6, L"Overflow");
  EXPECT_EQ(buffer_.Get(L"RangeString", {1, 1}), L"a");
  EXPECT_BUFFER_RUNTIME_ERROR(buffer_.Get(L"RangeString", {2, 1}), 6, L"Overflow");
}

TEST_P(ZepVariantTextTest, StringTypeReadsTheSameBytesOtherwise) {
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_OK(buffer_.Let(L"DataString", {L"AB"}));
  EXPECT_EQ(buffer_.Get(L"ByteLength"), 4);
  EXPECT_EQ(buffer_.Get(L"StringLength"), 2);
  const Sink* sink = Listen(buffer_);
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTAnsi}));
  EXPECT_EQ(buffer_.Get(L"StringType"), 1);
  EXPECT_EQ(buffer_.Get(L"StringLength"), 4);
  EXPECT_EQ(buffer_.Get(L"DataString"), std::wstring(L"A\0B\0", 4));
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTAscii}));
  EXPECT_EQ(buffer_.Get(L"StringType"), 0);
  EXPECT_EQ(buffer_.Get(L"StringLength"), 4);
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_EQ(buffer_.Get(L"StringType"), 2);
  EXPECT_EQ(Bytes(buffer_), "A\0B\0"s);
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantTextTest, StringTypesAreThree) {
  for (const int type : {INT_MIN, -1, 3, 99, INT_MAX}) {
    EXPECT_BUFFER_ERROR(buffer_.Let(L"StringType", {type}), zepErrBadPropValue);
    EXPECT_EQ(buffer_.Get(L"StringType"), 1);
  }
}

TEST_P(ZepVariantTextTest, StringTypeMayChangeWhileTheContentMayNot) {
  EXPECT_OK(source_.Let(L"ReadOnly", {true}));
  EXPECT_OK(source_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_EQ(source_.Get(L"StringType"), 2);
}

TEST_P(ZepVariantTextTest, StringLengthRoundsHalvesToEven) {
  const int lengths[] = {0, 0, 1, 2, 2, 2, 3, 4, 4, 4};
  for (int bytes = 0; bytes < 10; ++bytes) {
    EXPECT_OK(buffer_.Let(L"ByteLength", {bytes}));
    EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
    EXPECT_EQ(buffer_.Get(L"StringLength"), lengths[bytes]) << bytes;
    for (const int type : {zepSTAscii, zepSTAnsi}) {
      EXPECT_OK(buffer_.Let(L"StringType", {type}));
      EXPECT_EQ(buffer_.Get(L"StringLength"), bytes);
    }
  }
}

TEST_P(ZepVariantTextTest, AnOddLastByteIsNoTextOfUnicode) {
  EXPECT_OK(Write(buffer_, "A\0B\0C"s));
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_EQ(buffer_.Get(L"DataString"), L"AB");
}

TEST_P(ZepVariantTextTest, StringLengthNeverShortensButEmpties) {
  for (const int type : {zepSTAscii, zepSTAnsi}) {
    EXPECT_OK(buffer_.Let(L"StringType", {type}));
    EXPECT_OK(Write(buffer_, "0123456789"));
    EXPECT_OK(buffer_.Let(L"StringLength", {2}));
    EXPECT_EQ(Bytes(buffer_), "0123456789");
    EXPECT_OK(buffer_.Let(L"StringLength", {12}));
    EXPECT_EQ(Bytes(buffer_), "0123456789\0\0"s);
    EXPECT_OK(buffer_.Let(L"StringLength", {0}));
    EXPECT_EQ(buffer_.Get(L"ByteLength"), 0);
    EXPECT_OK(buffer_.Let(L"StringLength", {3}));
    EXPECT_EQ(Bytes(buffer_), "\0\0\0"s);
  }
}

TEST_P(ZepVariantTextTest, StringLengthOfUnicodeIsTwoBytesEach) {
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  EXPECT_OK(buffer_.Let(L"StringLength", {2}));
  EXPECT_EQ(Bytes(buffer_), "\0\0\0\0"s);
  EXPECT_OK(Write(buffer_, "abcde"));
  EXPECT_OK(buffer_.Let(L"StringLength", {2}));
  EXPECT_EQ(Bytes(buffer_), "abcde");
  EXPECT_OK(buffer_.Let(L"StringLength", {3}));
  EXPECT_EQ(Bytes(buffer_), "abcde\0"s);
  EXPECT_OK(buffer_.Let(L"StringLength", {0}));
  EXPECT_EQ(buffer_.Get(L"ByteLength"), 0);
}

TEST_P(ZepVariantTextTest, LengthsThatCannotBeDoubledOverflow) {
  EXPECT_OK(source_.Let(L"StringType", {zepSTUnicode}));
  const Sink* sink = Listen(source_);
  for (const int length : {1 << 30, INT_MAX}) {
    EXPECT_BUFFER_RUNTIME_ERROR(source_.Let(L"StringLength", {length}), 6, L"Overflow");
  }
  EXPECT_EQ(Bytes(source_), "abc");
  EXPECT_TRUE(sink->events().empty());
}

TEST_P(ZepVariantTextTest, MegabytesOfText) {
  const std::wstring text(1000000, L'\x00E4');
  for (const int type : {zepSTAscii, zepSTAnsi, zepSTUnicode}) {
    EXPECT_OK(buffer_.Let(L"StringType", {type}));
    EXPECT_OK(buffer_.Let(L"DataString", {text}));
    EXPECT_EQ(buffer_.Get(L"ByteLength"), type == zepSTUnicode ? 2000000 : 1000000);
    EXPECT_EQ(buffer_.Get(L"DataString"), text);
  }
}

TEST_P(ZepVariantTextTest, LongTextsConvertEveryCharacter) {
  for (const std::size_t length : {1023u, 1024u, 1087u, 1088u, 1089u}) {
    for (const std::size_t place : {std::size_t{0}, std::size_t{63}, std::size_t{64}, length - 1}) {
      SCOPED_TRACE(testing::Message() << length << " " << place);
      std::wstring text(length, L'x');
      for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<wchar_t>(i % 0x80);
      std::string bytes(text.begin(), text.end());
      text[place] = L'\x00E4';
      bytes[place] = '\xE4';
      ExpectText(zepSTAnsi, text, bytes);
      bytes[place] = '\x84';
      ExpectText(zepSTAscii, text, bytes);
      text[place] = L'\x4E7F';
      EXPECT_OK(buffer_.Let(L"DataString", {text}));
      text[place] = L'?';
      EXPECT_EQ(buffer_.Get(L"DataString"), text);
    }
  }
}

TEST_P(ZepVariantTextTest, LongTextsOfUnicodeOverflowAnywhere) {
  EXPECT_OK(buffer_.Let(L"StringType", {zepSTUnicode}));
  const std::wstring good(1100, L'\x7FFF');
  for (const std::size_t place : {0u, 63u, 64u, 1023u, 1024u, 1087u, 1088u, 1099u}) {
    std::wstring text = good;
    text[place] = L'\x8000';
    EXPECT_OK(buffer_.Let(L"DataString", {text}));
    EXPECT_BUFFER_RUNTIME_ERROR(buffer_.Get(L"DataString"), 6, L"Overflow");
    EXPECT_OK(buffer_.Let(L"DataString", {good}));
    EXPECT_EQ(buffer_.Get(L"DataString"), good);
  }
}

TEST_P(ZepVariantTextTest, ANewTextReplacesLongerAndShorterOnes) {
  for (const int type : {zepSTAscii, zepSTAnsi, zepSTUnicode}) {
    EXPECT_OK(buffer_.Let(L"StringType", {type}));
    for (const std::size_t length : {100u, 60u, 10u, 1u, 0u, 3u, 4000u, 2500u, 5u, 6u}) {
      const std::wstring text(length, static_cast<wchar_t>(L'a' + length % 26));
      EXPECT_OK(buffer_.Let(L"DataString", {text}));
      EXPECT_EQ(buffer_.Get(L"StringLength"), static_cast<int>(length));
      EXPECT_EQ(buffer_.Get(L"DataString"), text);
    }
  }
}

TEST_P(ZepVariantTextTest, GermanTextsUseTheGermanConsolesCodePage) {
  SKIP_UNLESS_GERMAN();
  ExpectText(zepSTAscii, L"\x00C1\x00F8", "\xB5\x9B");
}

RUN_IN_BOTH_BINDINGS(ZepVariantTextTest);

}  // namespace
