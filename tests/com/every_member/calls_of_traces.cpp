#include <gtest/gtest.h>

#include "com/every_member/calls.h"

namespace call_table {

Rows CallsOfTraces(Target& target) {
  const Value object(static_cast<IDispatch*>(&target));
  return {
      Get(L"global.DebugPrintOuts").GivesA(L"DebugPrintOuts", L"outs"),
      Get(L"global.Zep").GivesA(L"Library", L"library"),
      Get(L"outs.Parent").Gives(The(L"library")),
      Run(L"outs.Add", {object, L"PrintLine", 2}).GivesA(L"DebugPrintOut", L"out"),
      Run(L"outs.Add", {object, L"Text", 1}).GivesA(L"DebugPrintOut", L"other"),
      Get(L"outs.Count").Gives(2),
      Get(L"outs.Item", {1}).Gives(The(L"out")),
      Get(L"outs.NewEnum").Lists({The(L"out"), The(L"other")}),
      Get(L"other.LinkedCallType").Gives(1),
      Run(L"other.Delete"),
      Get(L"outs.Count").Gives(1),

      Get(L"out.LinkedObject").Gives(object),
      Get(L"out.LinkedCall").Gives(L"PrintLine"),
      Get(L"out.Parent").Gives(The(L"outs")),
      Get(L"out.Usable").Gives(true),
      Do([&target] { target.Take(); }),
      Run(L"out.PrintText", {L"a"}),
      Run(L"global.DebugPrint", {L"b", true}),
      Run(L"library.DebugPrint", {L"c"}),
      Do([&target] { EXPECT_EQ(L"abc\r\n", target.Take()); }),
      Put(L"outs.Enabled", {false}),
      Get(L"outs.Enabled").Gives(false),
      Run(L"global.DebugPrint", {L"unheard"}),
      Do([&target] { EXPECT_EQ(L"", target.Take()); }),
      Put(L"outs.Enabled", {true}),

      Run(L"outs.Remove", {1}),
      Get(L"outs.Count").Gives(0),
      Run(L"outs.Add", {object, L"Text", 0}).GivesA(L"DebugPrintOut", L"out"),
      Run(L"outs.Clear"),
      Get(L"outs.Count").Gives(0),
  };
}

}  // namespace call_table
