#include <gtest/gtest.h>
#include <ocidl.h>
#include <wrl/client.h>

#include "com/every_member/calls.h"
#include "com/value_array.h"

namespace call_table {
namespace {

void ExpectPicture(const Value& result) {
  ASSERT_EQ(VT_DISPATCH, result.type());
  Microsoft::WRL::ComPtr<IPicture> picture;
  ASSERT_EQ(S_OK, result.raw().pdispVal->QueryInterface(IID_PPV_ARGS(&picture)));
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  EXPECT_EQ(S_OK, picture->get_Width(&width));
  EXPECT_EQ(S_OK, picture->get_Height(&height));
  EXPECT_NEAR(2.0, 1.0 * width / height, 0.01) << "drawn in 100 by 50 pixels";
}

void ExpectOneDivisionByZero(const Value& errors) {
  const auto counters = value_array::Read(errors);
  ASSERT_EQ(76u, counters.size());
  EXPECT_EQ(Value(1), counters[10]);
}

Rows CallsOfFunctions() {
  return {
      Get(L"functions.Parent").Gives(The(L"chart")),
      Run(L"functions.Add", {L"f"}).GivesA(L"FncInfo", L"f"),
      Run(L"functions.Add", {L"g"}).GivesA(L"FncInfo", L"g"),
      Get(L"functions.Count").Gives(2),
      Get(L"functions.Item", {L"g"}).Gives(The(L"g")),
      Get(L"functions.NewEnum").Lists({The(L"f"), The(L"g")}),
      Run(L"g.Delete"),
      Run(L"functions.Add", {L"h"}).GivesA(L"FncInfo", L"h"),
      Run(L"functions.Remove", {L"h"}),
      Get(L"functions.Count").Gives(1),

      Get(L"f.Parent").Gives(The(L"functions")),
      Put(L"f.Name", {L"first"}),
      Get(L"f.Name").Gives(L"first"),
      New(L"Expression", L"expression"),
      Put(L"expression.EString", {L"1/x"}),
      Set(L"f.Expression", {The(L"expression")}),
      Get(L"f.Expression").Gives(The(L"expression")),
      Put(L"f.XLow", {-1.0}),
      Get(L"f.XLow").Gives(-1.0),
      Put(L"f.XHigh", {2.0}),
      Get(L"f.XHigh").Gives(2.0),
      Put(L"f.YLow", {-3.0}),
      Get(L"f.YLow").Gives(-3.0),
      Put(L"f.YHigh", {4.0}),
      Get(L"f.YHigh").Gives(4.0),
      Put(L"f.Interval", {0.5}),
      Get(L"f.Interval").Gives(0.5),

      Get(L"functions.GreatestXLow").Gives(-1.0),
      Get(L"functions.GreatestXHigh").Gives(2.0),
      Get(L"functions.GreatestYLow").Gives(-3.0),
      Get(L"functions.GreatestYHigh").Gives(4.0),
  };
}

Rows CallsOfOneChart() {
  return {
      Get(L"chart.Parent").Gives(The(L"charts")),
      Put(L"chart.Name", {L"renamed"}),
      Get(L"chart.Name").Gives(L"renamed"),
      Put(L"chart.PictureWidth", {100.0f}),
      Get(L"chart.PictureWidth").Gives(100.0f),
      Put(L"chart.PictureHeight", {50.0f}),
      Get(L"chart.PictureHeight").Gives(50.0f),
      Put(L"chart.CoordMetric", {0.5}),
      Get(L"chart.CoordMetric").Gives(0.5),
      Get(L"global.VarSets").GivesA(L"VarSets", L"sets"),
      Run(L"sets.Add", {L"drawn"}).GivesA(L"VarSet", L"set"),
      Set(L"chart.VarSet", {The(L"set")}),
      Get(L"chart.VarSet").Gives(The(L"set")),
      Get(L"expression.VarSet").Gives(The(L"set")),
      Run(L"chart.Draw"),
      Get(L"chart.Errors").Satisfies(ExpectOneDivisionByZero),
      Get(L"chart.Picture").Satisfies(ExpectPicture),
      Run(L"chart.AbortDraw"),  // of a chart that is not drawing: nothing
  };
}

}  // namespace

Rows CallsOfCharts() {
  Rows rows{
      Get(L"global.Charts").GivesA(L"Charts", L"charts"),
      Get(L"global.Zep").GivesA(L"Library", L"library"),
      Get(L"charts.Parent").Gives(The(L"library")),
      Run(L"charts.Add", {L"first"}).GivesA(L"Chart", L"chart"),
      Run(L"charts.Add", {L"second"}).GivesA(L"Chart", L"second"),
      Get(L"charts.Count").Gives(2),
      Get(L"charts.Item", {2}).Gives(The(L"second")),
      Get(L"charts.NewEnum").Lists({The(L"chart"), The(L"second")}),
      Run(L"charts.Remove", {L"second"}),
      Get(L"charts.Count").Gives(1),
      Get(L"chart.FncInfos").GivesA(L"FncInfos", L"functions"),
  };
  const Rows end{
      Run(L"functions.Clear"),
      Get(L"functions.Count").Gives(0),
      Run(L"chart.Delete"),
      Get(L"charts.Count").Gives(0),
      Run(L"charts.Add", {L"third"}).GivesA(L"Chart", L"chart"),
      Run(L"charts.Clear"),
      Get(L"charts.Count").Gives(0),
      Run(L"sets.Clear"),
  };
  for (const Rows& part : {CallsOfFunctions(), CallsOfOneChart(), end}) {
    rows.insert(rows.end(), part.begin(), part.end());
  }
  return rows;
}

}  // namespace call_table
