// Lists, and the collections that they hand out.
#include "com/every_member/calls.h"

namespace call_table {

Rows CallsOfLists() {
  return {
      New(L"List", L"list"),
      Put(L"list.Delimiter", {L","}),
      Get(L"list.Delimiter").Gives(L","),
      Put(L"list.QuoteBegin", {L"("}),
      Get(L"list.QuoteBegin").Gives(L"("),
      Put(L"list.QuoteEnd", {L")"}),
      Get(L"list.QuoteEnd").Gives(L")"),
      Put(L"list.ListString", {L"a,(b,c)"}),
      Get(L"list.Count").Gives(2),
      Get(L"list.Item", {2}).Gives(L"b,c"),
      Put(L"list.Item", {2, L"d,e"}),
      Get(L"list.ListString").Gives(L"a,(d,e)"),
      Run(L"list.AddItem", {L"f"}),
      Run(L"list.AddItem", {L"first", 1}),
      Get(L"list.NewEnum").Lists({L"first", L"a", L"d,e", L"f"}),
      Run(L"list.RemoveItem", {1}),
      Run(L"list.RemoveItem"),
      Get(L"list.ListString").Gives(L"a,(d,e)"),

      Get(L"list.Items").GivesA(L"Collection", L"collection"),
      Get(L"collection.Count").Gives(2),
      Get(L"collection.Item", {1}).Gives(L"a"),
      Run(L"collection.Remove", {1}),
      Run(L"collection.Add", {L"z", L"key"}),
      Get(L"collection.Item", {L"key"}).Gives(L"z"),
      Get(L"collection.NewEnum").Lists({L"d,e", L"z"}),
      Set(L"list.Items", {The(L"collection")}),
      Get(L"list.ListString").Gives(L"(d,e),z"),
      Run(L"list.Clear"),
      Get(L"list.Count").Gives(0),
  };
}

}  // namespace call_table
