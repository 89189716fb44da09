// StringToByteArray and ByteArrayToString of both roots.
#include "com/both_roots.h"
#include "com/german_user.h"
#include "com/value_array.h"
#include "platform/text_bytes.h"

namespace {

using client::Outcome;
using client::Value;
using value_array::As;
using value_array::ExpectUnallocated;
using value_array::Unallocated;

Value Bytes(LONG lower_bound, const std::vector<int>& bytes) {
  value_array::Values elements;
  for (const int byte : bytes) elements.push_back(As(VT_UI1, byte));
  return value_array::Make(VT_UI1, lower_bound, elements);
}

class ByteArrayTest : public BothRoots {
 protected:
  void ExpectBytes(const Value& text, int type, const std::vector<int>& bytes) const {
    value_array::Expect(root_.Call(L"StringToByteArray", {text, type}), VT_UI1, 1,
                        value_array::Read(Bytes(1, bytes)));
  }
  /// The array comes as a client's variable.
  Outcome TextOf(Value bytes, int type) const {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    reference.pparray = &bytes.raw().parray;
    return root_.Call(L"ByteArrayToString", {Value(reference), type});
  }
  std::wstring Source() const { return std::wstring(L"Zepkit10.") + RootName(); }
};

TEST_P(ByteArrayTest, UnicodeGivesTwoBytesLowFirst) {
  ExpectBytes(L"AB", zepSTUnicode, {65, 0, 66, 0});
  ExpectBytes(L"\x20AC\xFFFF", zepSTUnicode, {0xAC, 0x20, 0xFF, 0xFF});
  EXPECT_EQ(TextOf(Bytes(1, {65, 0, 66, 0}), zepSTUnicode), L"AB");
}

TEST_P(ByteArrayTest, AnsiGivesOneByteForEachCharacter) {
  ExpectBytes(L"A\x00E4\x20AC", zepSTAnsi, {65, 0xE4, 0x80});
  EXPECT_EQ(TextOf(Bytes(1, {65, 0xE4, 0x80}), zepSTAnsi), L"A\x00E4\x20AC");
}

TEST_P(ByteArrayTest, AsciiMeansTheConsolesCodePage) {
  ExpectBytes(L"A\x00E4\x00F6\x00FC\x00DF", zepSTAscii, {65, 0x84, 0x94, 0x81, 0xE1});
  EXPECT_EQ(TextOf(Bytes(1, {65, 0x84, 0x94, 0x81, 0xE1}), zepSTAscii),
            L"A\x00E4\x00F6\x00FC\x00DF");
}

TEST_P(ByteArrayTest, AsciiIsWhatTheSystemConverts) {
  for (int code = 1; code < 256; ++code) {
    const char ansi[] = {static_cast<char>(code), '\0'};
    char oem[2] = {}, back[2] = {};
    wchar_t wide[2] = {};
    CharToOemA(ansi, oem);
    MultiByteToWideChar(CP_ACP, 0, ansi, 2, wide, 2);
    ExpectBytes(Value(std::wstring(1, wide[0])), zepSTAscii, {static_cast<BYTE>(oem[0])});
    OemToCharA(ansi, back);
    MultiByteToWideChar(CP_ACP, 0, back, 2, wide, 2);
    EXPECT_EQ(TextOf(Bytes(1, {code}), zepSTAscii), std::wstring(1, wide[0])) << code;
  }
}

TEST_P(ByteArrayTest, WhatTheCodePageLacksStaysOneByte) {
  ExpectBytes(L"a\x4E2D\x0100z", zepSTAnsi, {'a', '?', 'A', 'z'});
  ExpectBytes(L"a\xD83D\xDE00z", zepSTAnsi, {'a', '?', '?', 'z'});
  ExpectBytes(L"a\x4E2Dz", zepSTAscii, {'a', '?', 'z'});
}

TEST_P(ByteArrayTest, NulsSurvive) {
  const std::wstring text(L"a\0b\0", 4);
  ExpectBytes(text, zepSTAnsi, {'a', 0, 'b', 0});
  ExpectBytes(text, zepSTAscii, {'a', 0, 'b', 0});
  ExpectBytes(text, zepSTUnicode, {'a', 0, 0, 0, 'b', 0, 0, 0});
  EXPECT_EQ(TextOf(Bytes(1, {'a', 0, 'b', 0}), zepSTAnsi), text);
  EXPECT_EQ(TextOf(Bytes(1, {'a', 0, 'b', 0}), zepSTAscii), text);
  EXPECT_EQ(TextOf(Bytes(1, {'a', 0, 0, 0, 'b', 0, 0, 0}), zepSTUnicode), text);
}

TEST_P(ByteArrayTest, NothingGivesNothingWhateverTheType) {
  for (const int type : {0, 1, 2, 3, -1, 99}) {
    ExpectUnallocated(root_.Call(L"StringToByteArray", {L"", type}), VT_UI1);
    EXPECT_EQ(TextOf(Unallocated(VT_UI1), type), L"");
    EXPECT_EQ(TextOf(Bytes(1, {}), type), L"");
    EXPECT_EQ(TextOf(Bytes(7, {}), type), L"");
  }
}

TEST_P(ByteArrayTest, OtherTypesAreRefused) {
  for (const int type : {3, -1, 99}) {
    EXPECT_ROOT_ERROR(root_.Call(L"StringToByteArray", {L"a", type}), zepErrBadCall);
    EXPECT_ROOT_ERROR(TextOf(Bytes(1, {65}), type), zepErrBadCall);
    EXPECT_ROOT_ERROR(TextOf(Bytes(7, {65}), type), zepErrBadCall);
  }
}

TEST_P(ByteArrayTest, ReadingStartsAtIndexOne) {
  EXPECT_EQ(TextOf(Bytes(0, {88, 65, 66}), zepSTAnsi), L"AB");
  EXPECT_EQ(TextOf(Bytes(0, {88, 65, 66}), zepSTAscii), L"AB");
  EXPECT_EQ(TextOf(Bytes(0, {88, 65, 0, 66, 0}), zepSTUnicode), L"AB");
  EXPECT_EQ(TextOf(Bytes(-2, {88, 89, 90, 65, 66}), zepSTAnsi), L"AB");
  EXPECT_EQ(TextOf(Bytes(-2, {88, 89, 90, 65, 0}), zepSTUnicode), L"A");
  for (const int type : {0, 1, 2}) {
    EXPECT_EQ(TextOf(Bytes(0, {88}), type), L"");
    EXPECT_EQ(TextOf(Bytes(-5, {88, 89, 90}), type), L"");
  }
}

TEST_P(ByteArrayTest, IndexOneMustExist) {
  for (const int type : {0, 1, 2}) {
    EXPECT_ERROR(TextOf(Bytes(2, {65}), type), 9, Source(), L"Subscript out of range");
    EXPECT_ERROR(TextOf(Bytes(2147483647, {65}), type), 9, Source(), L"Subscript out of range");
  }
}

TEST_P(ByteArrayTest, AnOddLastByteIsDropped) {
  EXPECT_EQ(TextOf(Bytes(1, {65, 0, 66}), zepSTUnicode), L"A");
  EXPECT_EQ(TextOf(Bytes(1, {65}), zepSTUnicode), L"");
  EXPECT_EQ(TextOf(Bytes(0, {88, 65, 0, 200}), zepSTUnicode), L"A");
}

TEST_P(ByteArrayTest, AHighByteFrom128Overflows) {
  EXPECT_ERROR(TextOf(Bytes(1, {0, 128}), zepSTUnicode), 6, Source(), L"Overflow");
  EXPECT_ERROR(TextOf(Bytes(1, {65, 0, 255, 255}), zepSTUnicode), 6, Source(), L"Overflow");
  EXPECT_EQ(TextOf(Bytes(1, {0, 127}), zepSTUnicode), L"\x7F00");
  EXPECT_EQ(TextOf(Bytes(1, {255, 127}), zepSTUnicode), L"\x7FFF");
}

TEST_P(ByteArrayTest, LockedAndFixedArraysAreReadOnly) {
  Value bytes = Bytes(1, {65, 66});
  VARIANT reference;
  reference.vt = VT_BYREF | VT_ARRAY | VT_UI1;
  reference.pparray = &bytes.raw().parray;
  SafeArrayLock(bytes.raw().parray);
  EXPECT_EQ(root_.Call(L"ByteArrayToString", {Value(reference), 1}), L"AB");
  EXPECT_EQ(1u, bytes.raw().parray->cLocks);
  SafeArrayUnlock(bytes.raw().parray);
  bytes.raw().parray->fFeatures |= FADF_FIXEDSIZE;
  EXPECT_EQ(root_.Call(L"ByteArrayToString", {Value(reference), 1}), L"AB");
  bytes.raw().parray->fFeatures &= ~FADF_FIXEDSIZE;
}

TEST_P(ByteArrayTest, OneDimensionOnly) {
  Value grid;
  SAFEARRAYBOUND bounds[] = {{2, 1}, {2, 1}};
  grid.raw().vt = VT_ARRAY | VT_UI1;
  grid.raw().parray = SafeArrayCreate(VT_UI1, 2, bounds);
  EXPECT_ROOT_ERROR(TextOf(grid, zepSTAnsi), zepErrBadCall);
}

TEST_P(ByteArrayTest, AMillionCharactersGoAndComeBack) {
  const std::wstring text(1000000, L'\x00E4');
  for (const int type : {0, 1, 2}) {
    const Outcome bytes = root_.Call(L"StringToByteArray", {text, type});
    ASSERT_EQ(VT_ARRAY | VT_UI1, bytes.value.type());
    EXPECT_EQ(TextOf(bytes.value, type), text);
  }
}

TEST_P(ByteArrayTest, GermanTextsUseTheGermanConsolesCodePage) {
  SKIP_UNLESS_GERMAN();
  ExpectBytes(L"\x00C1\x00F8", zepSTAscii, {0xB5, 0x9B});
}

RUN_WITH_BOTH_ROOTS(ByteArrayTest);

TEST(CodePageTest, DoubleByteCodePagesStayByteByByte) {
  constexpr unsigned kJapanese = 932;
  const auto page = zepkit10::ReadCodePage(kJapanese);
  EXPECT_EQ('a', page->to_byte[u'a']);
  EXPECT_EQ('?', page->to_byte[0x3042]) << "two bytes there";
  EXPECT_EQ(0xB1, page->to_byte[0xFF71]);
  EXPECT_EQ(u'a', page->to_unit['a']);
  EXPECT_EQ(u'\uFF71', page->to_unit[0xB1]);
  const auto utf8 = zepkit10::ReadCodePage(CP_UTF8);
  EXPECT_EQ('?', utf8->to_byte[0xE4]);
  EXPECT_EQ(u'?', utf8->to_unit[0xE4]);
}

}  // namespace
