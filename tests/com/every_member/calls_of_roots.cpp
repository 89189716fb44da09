#include <gtest/gtest.h>

#include "com/every_member/calls.h"
#include "com/text_array.h"
#include "com/value_array.h"

namespace call_table {
namespace {

using value_array::As;
using value_array::Unallocated;
using value_array::Variants;

void ExpectDigits(const Value& tag) {
  ASSERT_EQ(VT_BSTR, tag.type());
  const std::wstring text(tag.raw().bstrVal);
  EXPECT_NE(L"", text);
  EXPECT_EQ(std::wstring::npos, text.find_first_not_of(L"0123456789")) << tag;
}

}  // namespace

Rows CallsOfRoots(const std::wstring& root, const TemporaryFolder& folder) {
  const auto on = [&](const wchar_t* member) { return root + L"." + member; };
  const std::wstring deep = folder.path() + root + L"\\deep";
  const std::wstring log = root + L".log";
  const Value one_to_three = Variants(1, {1, 2, 3});
  folder.File(L"a.txt");
  return {
      Get(on(L"Charts")).GivesA(L"Charts", L"object"),
      Get(on(L"CommandLine")).GivesA(L"List", L"object"),
      Get(on(L"DebugPrintOuts")).GivesA(L"DebugPrintOuts", L"object"),
      Get(on(L"GlobalMessages")).GivesA(L"Messages", L"object"),
      Get(on(L"Keyboard")).GivesA(L"Keyboard", L"object"),
      Get(on(L"VarSets")).GivesA(L"VarSets", L"object"),
      Get(on(L"ZepMousePointer")).GivesA(L"MousePointer", L"object"),

      Run(on(L"Compute"), {L"2*3"}).Gives(6.0),
      Assign(L"x", 5),
      Run(on(L"Incr"), {Variable(L"x"), 3}).Gives(8),
      Run(on(L"Decr"), {Variable(L"x")}).Gives(7),
      Holds(L"x", 7),
      Assign(L"y", 1),
      Run(on(L"SwapVars"), {Variable(L"x"), Variable(L"y")}),
      Holds(L"x", 1),
      Holds(L"y", 7),
      Run(on(L"Max"), {1, 3, 2}).Gives(3),
      Run(on(L"Min"), {3, L"1", 2}).Gives(L"1"),
      Run(on(L"FinalizeString"), {L"C:", L"\\"}).Gives(L"C:\\"),
      Run(on(L"NewTag")).Satisfies(ExpectDigits),
      Run(on(L"MessageBeep"), {64}),

      Run(on(L"StringToByteArray"), {L"AB", 1}).Lists({As(VT_UI1, 65), As(VT_UI1, 66)}),
      Assign(L"bytes", value_array::Make(VT_UI1, 1, {As(VT_UI1, 65), As(VT_UI1, 66)})),
      Run(on(L"ByteArrayToString"), {TypedVariable(L"bytes"), 1}).Gives(L"AB"),

      Run(on(L"CutArray"), {one_to_three, 2, 2}).Lists({2, 3}),
      Run(on(L"MergeArrays"), {one_to_three, Variants(0, {4}), 0}).Lists({1, 2, 3, 4}),
      Run(on(L"TransformArray"), {one_to_three, 7}).Lists({1, 2, 3}),
      Assign(L"found", false),
      Run(on(L"TransformPArray"), {Variants(1, {1, Variants(1, {2, 3})}), TypedVariable(L"found")})
          .Lists({1, 2, 3}),
      Holds(L"found", true),
      Run(on(L"IsArrayEmpty"), {Unallocated()}).Gives(true),
      Run(on(L"IsArrayStatic"), {one_to_three}).Gives(false),
      Run(on(L"ZepLBound"), {one_to_three, 9}).Gives(1),
      Run(on(L"ZepLBound"), {L"no array", 9}).Gives(9),
      Run(on(L"ZepUBound"), {one_to_three, 9}).Gives(3),
      Run(on(L"ZepUBound"), {L"no array", 9}).Gives(9),

      Run(on(L"ListToCollection"), {L"a,b", L","}).GivesA(L"Collection", L"collection"),
      Run(on(L"CollectionToList"), {The(L"collection"), L";"}).Gives(L"a;b"),
      Run(on(L"ListToStringArray"), {L"a 'b c'", L" ", L"'", L"'"}).Lists({L"a", L"b c"}),
      Run(on(L"StringArrayToList"), {text_array::Make(1, {L"a", L"b"})}).Gives(L"a b"),

      Run(on(L"IsValidDir"), {folder.path()}).Gives(true),
      Run(on(L"IsValidFile"), {folder / L"a.txt"}).Gives(true),
      Run(on(L"MakeDir"), {deep}).Gives(true),
      Run(on(L"GetSubDir"), {folder / root, 1}).Gives(L"deep"),
      Assign(L"files", Unallocated(VT_BSTR)),
      Run(on(L"GetFiles"), {folder.path(), L"*.txt", TypedVariable(L"files"), false}).Gives(1),
      HoldsList(L"files", {folder / L"a.txt"}),
      Put(on(L"IniEntry"), {folder / L"a.ini", L"section", L"key", root}),
      Get(on(L"IniEntry"), {folder / L"a.ini", L"section", L"key"}).Gives(root),
      Put(on(L"LogFile"), {folder / log}),
      Get(on(L"LogFile")).Gives(folder / log),
      Run(on(L"LogText"), {L"started"}),
      Do([&folder, log] { EXPECT_TRUE(folder.Read(log).ends_with(": started\r\n")); }),
      Put(on(L"LogFile"), {L""}),
  };
}

}  // namespace call_table
