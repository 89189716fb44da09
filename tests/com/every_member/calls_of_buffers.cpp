#include "com/every_member/calls.h"
#include "com/value_array.h"

namespace call_table {
namespace {

using value_array::As;

Value Bytes(const std::vector<int>& numbers) {
  value_array::Values bytes;
  for (const int number : numbers) bytes.push_back(As(VT_UI1, number));
  return value_array::Make(VT_UI1, 1, bytes);
}

Rows CallsOfContent() {
  return {
      New(L"ZepVariant", L"buffer"),
      Put(L"buffer.StringType", {zepSTUnicode}),
      Get(L"buffer.StringType").Gives(static_cast<int>(zepSTUnicode)),
      Put(L"buffer.DataString", {L"abc"}),
      Get(L"buffer.DataString").Gives(L"abc"),
      Get(L"buffer.ByteLength").Gives(6),
      Put(L"buffer.StringLength", {4}),
      Get(L"buffer.StringLength").Gives(4),
      Put(L"buffer.ByteLength", {2}),
      Get(L"buffer.DataString").Gives(L"a"),
      Put(L"buffer.StringType", {zepSTAnsi}),
      Put(L"buffer.DataBytes", {Bytes({65, 66, 67, 68})}),
      Get(L"buffer.DataBytes")
          .Lists({As(VT_UI1, 65), As(VT_UI1, 66), As(VT_UI1, 67), As(VT_UI1, 68)}),
      Put(L"buffer.DataByte", {2, 98}),
      Get(L"buffer.DataByte", {2}).Gives(As(VT_UI1, 98)),
      Put(L"buffer.RangeString", {3, 2, L"xyz"}),
      Get(L"buffer.RangeString", {2, 3}).Gives(L"bxy"),
      Put(L"buffer.RangeBytes", {1, 1, Bytes({48, 49})}),
      Get(L"buffer.RangeBytes", {1, 2}).Lists({As(VT_UI1, 48), As(VT_UI1, 49)}),
      Put(L"buffer.ReadOnly", {true}),
      Get(L"buffer.ReadOnly").Gives(true),
      Put(L"buffer.ReadOnly", {false}),
  };
}

Rows CallsOfViews() {
  return {
      Put(L"buffer.DataString", {L"0123456789"}),
      New(L"ZepVariant", L"view"),
      Run(L"view.ConnectAsRange", {The(L"buffer"), 3, 2}),
      Get(L"view.IsRange").Gives(true),
      Get(L"view.RangeStart").Gives(3),
      Get(L"view.RangeLength").Gives(2),
      Put(L"view.DataString", {L"ab"}),
      Get(L"buffer.DataString").Gives(L"01ab456789"),
      Run(L"view.DisconnectAsRange"),
      Get(L"view.IsRange").Gives(false),

      Get(L"buffer.Range", {1, 2}).GivesA(L"ZepVariant", L"first"),
      Get(L"buffer.Range", {2, 3, true}).GivesA(L"ZepVariant", L"second"),
      Get(L"second.DataString").Gives(L"1ab"),
      Run(L"buffer.DisconnectRange", {The(L"first")}),
      Get(L"first.IsRange").Gives(false),
      Get(L"second.IsRange").Gives(true),
      Run(L"buffer.DisconnectRanges"),
      Get(L"second.IsRange").Gives(false),
      Put(L"second.DataString", {L"..."}),
      Put(L"buffer.Range", {1, 2, false, The(L"second")}),
      Get(L"buffer.DataString").Gives(L"...ab456789"),
      Set(L"buffer.Range", {10, 2, false, The(L"second")}),
      Get(L"buffer.RangeString", {1, 12}).Gives(L"...ab4567..."),
  };
}

}  // namespace

Rows CallsOfBuffers() {
  Rows rows = CallsOfContent();
  const Rows views = CallsOfViews();
  rows.insert(rows.end(), views.begin(), views.end());
  return rows;
}

}  // namespace call_table
