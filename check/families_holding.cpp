#include "families.h"

namespace zepcheck {
namespace {

void Buffers(const Workbench&) {
  const Object buffer = Object::Create(L"Zepkit10.ZepVariant");
  buffer.Put(L"DataString", {L"Dear Ada"});
  const Object view = buffer.Get(L"Range", {6, 3}).AsObject();
  view.Put(L"DataString", {L"Grace"});
  Expect(L"a buffer that was written through a view", buffer.Get(L"DataString"), L"Dear Grace");
}

void Lists(const Workbench& bench) {
  const Object list = Object::Create(L"Zepkit10.List");
  list.Put(L"ListString", {L"red green blue"});
  Expect(L"the second item of a list", list.Get(L"Item", {2}), L"green");
  const Value array = bench.zepkit.Get(L"ListToStringArray", {L"red green"});
  Expect(L"a list of an array", bench.zepkit.Get(L"StringArrayToList", {array, L";"}),
         L"red;green");
}

void Arrays(const Workbench& bench) {
  const Value merged =
      bench.zepkit.Get(L"MergeArrays", {Value::Array({3, 9}), Value::Array({L"12"}), 1});
  Expect(L"the upper bound of merged arrays", bench.zepkit.Get(L"ZepUBound", {merged}), L"3");
  Expect(L"the greatest of merged arrays", bench.zepkit.Get(L"Max", {merged}), L"12");
  Value number = 10;
  bench.zepkit.Get(L"Incr", {Value::Reference(number), 3});
  Expect(L"a variable that was increased", number, L"13");
}

void Strings(const Workbench& bench) {
  Expect(L"a folder's path", bench.zepkit.Get(L"FinalizeString", {L"C:", L"\\"}), L"C:\\");
  const Value bytes = bench.zepkit.Get(L"StringToByteArray", {L"zepkit", 0});
  Expect(L"a text of bytes", bench.zepkit.Get(L"ByteArrayToString", {bytes, 0}), L"zepkit");
}

void Messages(const Workbench& bench) {
  const Object board = bench.zepkit.Get(L"GlobalMessages").AsObject();
  board.Get(L"Add", {L"no paper", L"printer", L"operator"});
  const Object taken = board.Get(L"GetMessages", {Value::Missing(), L"printer"}).AsObject();
  Expect(L"a message", taken.Get(L"First").AsObject().Get(L"Message"), L"no paper");
  Expect(L"the number of messages left", board.Get(L"Count"), L"0");
}

void DebugOutput(const Workbench& bench) {
  const Object lines = Object::Create(L"Zepkit10.List");
  const Object outs = bench.zepkit.Get(L"DebugPrintOuts").AsObject();
  constexpr int kMethod = 2;  // zepDPOCallTypeMethod
  outs.Get(L"Add", {lines, L"AddItem", kMethod});
  bench.zepkit.Get(L"DebugPrint", {L"+ Load"});
  bench.zepkit.Get(L"DebugPrint", {L"read"});
  Expect(L"the last line of the trace", lines.Get(L"Item", {lines.Get(L"Count")}), L"  read\r\n");
  outs.Get(L"Clear");
}

constexpr Family kFamilies[] = {{L"buffers", Buffers},   {L"lists", Lists},
                                {L"arrays", Arrays},     {L"strings", Strings},
                                {L"messages", Messages}, {L"debug output", DebugOutput}};

}  // namespace

std::span<const Family> HoldingFamilies() { return kFamilies; }

}  // namespace zepcheck
