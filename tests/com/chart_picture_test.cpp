#include "com/chart_fixture.h"
#include "com/image.h"
#include "com/sink.h"
#include "platform/surface.h"

namespace {

using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

constexpr std::uint32_t kWhite = 0xFFFFFF, kBlack = 0;
constexpr std::uint32_t kPalette[] = {0x000000, 0x000080, 0x008000, 0x008080, 0x800000, 0x800080,
                                      0x808000, 0xC0C0C0, 0x808080, 0x0000FF, 0x00FF00, 0x00FFFF,
                                      0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};

class ChartPictureTest : public WithChart {
 protected:
  /// A picture of 201 by 101 pixels: 0 lies in its middle where ranges are even.
  ChartPictureTest() {
    EXPECT_OK(chart_.Let(L"PictureWidth", {201.0f}));
    EXPECT_OK(chart_.Let(L"PictureHeight", {101.0f}));
  }
  ComPtr<IUnknown> Picture() const {
    const client::Outcome picture = chart_.Get(L"Picture");
    EXPECT_EQ(VT_DISPATCH, picture.value.type());
    return picture.value.raw().pdispVal;
  }
  Image Drawn() const {
    EXPECT_OK(chart_.Call(L"Draw"));
    return Image(Picture().Get());
  }
  /// Columns of a row, and rows of a column, that are black.
  static std::vector<int> InRow(const Image& image, int row) {
    std::vector<int> columns;
    for (int column = 0; column < image.width; ++column) {
      if (image.At(column, row) == kBlack) columns.push_back(column);
    }
    return columns;
  }
  static std::vector<int> InColumn(const Image& image, int column) {
    std::vector<int> rows;
    for (int row = 0; row < image.height; ++row) {
      if (image.At(column, row) == kBlack) rows.push_back(row);
    }
    return rows;
  }
  /// Black pixels beside the first label.
  static int Black(const Image& image) {
    int count = 0;
    for (int row = 0; row < image.height; ++row) {
      for (int column = 0; column < image.width; ++column) {
        const bool in_label = row < zepkit10::Surface::TextLineHeight() && column < 20;
        if (!in_label && image.At(column, row) == kBlack) ++count;
      }
    }
    return count;
  }
  /// A function that leaves no more than its ranges and a short label.
  void AddRange(double x_low, double x_high, double y_low, double y_high) const {
    Add({L"1", x_low, x_high, -1, y_low, y_high});
  }
};

using Positions = std::vector<int>;

TEST_P(ChartPictureTest, IsWhiteBeforeTheFirstDraw) {
  const Image image(Picture().Get());
  EXPECT_EQ(201, image.width);
  EXPECT_EQ(101, image.height);
  EXPECT_EQ(201 * 101, image.Count(kWhite));
  const Image other(charts_.CallObject(L"Add", {L"other"}).Get(L"Picture").value.raw().pdispVal);
  EXPECT_EQ(480, other.width);
  EXPECT_EQ(320, other.height);
}

TEST_P(ChartPictureTest, AxesAreBlackLinesThroughZero) {
  AddRange(-10, 10, -5, 5);
  const Image image = Drawn();
  EXPECT_EQ(201, static_cast<int>(InRow(image, 50).size()));
  EXPECT_EQ(101, static_cast<int>(InColumn(image, 100).size()));
  EXPECT_EQ(201 + 101 - 1, Black(image));
}

TEST_P(ChartPictureTest, YGrowsUpwards) {
  AddRange(0, 10, 0, 5);
  const Image image = Drawn();
  EXPECT_EQ(201, static_cast<int>(InRow(image, 100).size()));
  EXPECT_EQ(101, static_cast<int>(InColumn(image, 0).size()));
}

TEST_P(ChartPictureTest, XGrowsToTheLeftBetweenExchangedBounds) {
  Add({L"1", 10, -10, 1, -5, 5});
  Add({L"2", 10, -10, -15, -5, 5});  // at 10 and -5
  const Image image = Drawn();
  EXPECT_EQ(201, static_cast<int>(InRow(image, 50).size()));
  EXPECT_EQ(kPalette[1], image.At(150, 30));
  EXPECT_EQ(kWhite, image.At(50, 30));
}

TEST_P(ChartPictureTest, AxesOutsideTheRangeAreNotSeen) {
  AddRange(1, 2, 1, 2);
  EXPECT_EQ(0, Black(Drawn()));
}

TEST_P(ChartPictureTest, APositiveMetricMarksTheXAxis) {
  AddRange(-10, 10, -5, 5);
  EXPECT_OK(chart_.Let(L"CoordMetric", {4.0}));
  const Image image = Drawn();
  EXPECT_EQ((Positions{20, 60, 100, 140, 180}), InRow(image, 46));
  EXPECT_EQ((Positions{20, 60, 100, 140, 180}), InRow(image, 54));
  EXPECT_EQ(Positions{100}, InRow(image, 45));
  EXPECT_EQ(Positions{100}, InRow(image, 55));
  EXPECT_EQ(Positions{50}, InColumn(image, 96));  // none on the y axis
  EXPECT_EQ(201 + 101 - 1 + 4 * 8, Black(image));
}

TEST_P(ChartPictureTest, ANegativeMetricMarksTheYAxis) {
  AddRange(-10, 10, -5, 5);
  EXPECT_OK(chart_.Let(L"CoordMetric", {-2.0}));
  const Image image = Drawn();
  EXPECT_EQ((Positions{10, 30, 50, 70, 90}), InColumn(image, 96));
  EXPECT_EQ((Positions{10, 30, 50, 70, 90}), InColumn(image, 104));
  EXPECT_EQ(Positions{50}, InColumn(image, 95));
  EXPECT_EQ(Positions{50}, InColumn(image, 105));
  EXPECT_EQ(Positions{100}, InRow(image, 46));
  EXPECT_EQ(201 + 101 - 1 + 4 * 8, Black(image));
}

TEST_P(ChartPictureTest, NoMetricMarksNothing) {
  AddRange(-10, 10, -5, 5);
  EXPECT_OK(chart_.Let(L"CoordMetric", {0.0}));
  EXPECT_EQ(201 + 101 - 1, Black(Drawn()));
}

TEST_P(ChartPictureTest, MetricsBelowAPixelFillTheAxis) {
  AddRange(-10, 10, -5, 5);
  EXPECT_OK(chart_.Let(L"CoordMetric", {1e-3}));
  EXPECT_EQ(201 * 9 + 101 - 9, Black(Drawn()));
}

TEST_P(ChartPictureTest, SamplesArePointsInTheFunctionsColour) {
  AddRange(-10, 10, -5, 5);
  Add({L"2", 4, 8, 2});
  Add({L"0-x/2", 1, 3, 2});
  const Image image = Drawn();
  for (const int column : {140, 160, 180}) EXPECT_EQ(kPalette[1], image.At(column, 30));
  EXPECT_EQ(kPalette[2], image.At(110, 55));
  EXPECT_EQ(kPalette[2], image.At(130, 65));
  EXPECT_EQ(kWhite, image.At(120, 60));
  EXPECT_EQ(0, image.Count(kPalette[3]));
}

TEST_P(ChartPictureTest, FailedSamplesSetNoPoint) {
  AddRange(-10, 10, -5, 5);
  Add({L"1/(x-5)", 5, 5, 1});
  EXPECT_EQ(kBlack, Drawn().At(150, 50));
}

TEST_P(ChartPictureTest, PointsOutsideAreLeftOut) {
  AddRange(-1, 1, -1, 1);
  Add({L"5", -1, 1, 0.01});
  Add({L"10^300", -1, 1, 0.01});
  Add({L"0-10^300", -1, 1, 0.01});
  EXPECT_OK(chart_.Call(L"Draw"));
}

TEST_P(ChartPictureTest, LabelsStandBelowEachOther) {
  EXPECT_OK(chart_.Let(L"PictureHeight", {400.0f}));
  for (int k = 0; k < 15; ++k) Add({L"1+2+3+4", 2, 1, 1, 1, 2});
  const Image image = Drawn();
  const int height = zepkit10::Surface::TextLineHeight();
  for (int k = 0; k < 15; ++k) {
    EXPECT_GT(image.Count(kPalette[k], k * height, (k + 1) * height), 0) << k;
  }
  EXPECT_EQ(201 * (400 - 15 * height), image.Count(kWhite, 15 * height));
}

TEST_P(ChartPictureTest, ALabelIsTheTermThatWasTold) {
  const Object function = Add({L"1", -10, 10, -1, -5, 5});
  const Image drawn = Drawn();
  const auto sink = client::Sink::Connect(chart_.get(), DIID___Chart, [&](const client::Event&) {
    EXPECT_OK(function.GetObject(L"Expression").Let(L"EString", {L"2+3+4"}));
    return S_OK;
  });
  EXPECT_EQ(drawn, Drawn());
}

TEST_P(ChartPictureTest, FunctionsAfterAnAbortHaveTheirLabelsAndNoPoints) {
  AddRange(-10, 10, -5, 5);
  Add({L"2", 4, 8, 2});
  Add({L"3", 4, 8, 2});
  const auto sink =
      client::Sink::Connect(chart_.get(), DIID___Chart, [&](const client::Event& event) {
        if (event.id == 2) EXPECT_OK(chart_.Call(L"AbortDraw"));
        return S_OK;
      });
  const Image image = Drawn();
  const int height = zepkit10::Surface::TextLineHeight();
  EXPECT_EQ(kPalette[1], image.At(140, 30));
  EXPECT_EQ(kWhite, image.At(160, 30));
  EXPECT_EQ(kWhite, image.At(140, 20));
  EXPECT_GT(image.Count(kPalette[2], 2 * height, 3 * height), 0);
}

TEST_P(ChartPictureTest, DrawStartsAgainOnWhite) {
  AddRange(-10, 10, -5, 5);
  const Image empty = Drawn();
  const Object function = Add({L"x", -10, 10, 0.01});
  const Image first = Drawn(), second = Drawn();
  EXPECT_EQ(first, second);
  EXPECT_FALSE(first == empty);
  EXPECT_OK(function.Call(L"Delete"));
  EXPECT_EQ(empty, Drawn());
}

TEST_P(ChartPictureTest, IsWhiteAgainWhereThereIsNothingToDraw) {
  AddRange(-10, 10, -5, 5);
  EXPECT_EQ(301, Black(Drawn()));
  EXPECT_OK(functions_.Call(L"Clear"));
  EXPECT_ZEP_ERROR(chart_.Call(L"Draw"), zepErrBadCallContext, L"FncInfos");
  EXPECT_EQ(201 * 101, Image(Picture().Get()).Count(kWhite));
}

TEST_P(ChartPictureTest, AxesAreDrawnBeforeAVariableIsMissed) {
  AddRange(-10, 10, -5, 5);
  EXPECT_OK(set_.Let(L"Explicit", {true}));
  EXPECT_FALSE(chart_.Call(L"Draw").ok());
  EXPECT_EQ(301, Black(Image(Picture().Get())));
}

TEST_P(ChartPictureTest, WhatWasDrawnBeforeAnErrorStays) {
  AddRange(-10, 10, -5, 5);
  Add({L"2", 4, 8, 2});
  Add({L"3", 8, 8, 0});
  EXPECT_EQ(11, chart_.Call(L"Draw").number);
  const Image image(Picture().Get());
  EXPECT_EQ(kPalette[1], image.At(160, 30));
  EXPECT_EQ(kPalette[2], image.At(180, 20));
}

TEST_P(ChartPictureTest, AResizedPictureKeepsWhatFits) {
  AddRange(-10, 10, -5, 5);
  Drawn();
  EXPECT_OK(chart_.Let(L"PictureWidth", {150.0f}));
  EXPECT_OK(chart_.Let(L"PictureHeight", {120.0f}));
  const Image image(Picture().Get());
  EXPECT_EQ(150, image.width);
  EXPECT_EQ(120, image.height);
  EXPECT_EQ(150, static_cast<int>(InRow(image, 50).size()));
  EXPECT_EQ(101, static_cast<int>(InColumn(image, 100).size()));
  EXPECT_EQ(301 - 51, Black(image));
}

TEST_P(ChartPictureTest, RangesWithoutExtentDrawNothing) {
  Add({L"0", 0, 0, 1, 0, 0});
  EXPECT_OK(chart_.Let(L"CoordMetric", {1.0}));
  const Image image = Drawn();
  const int label = zepkit10::Surface::TextLineHeight();
  EXPECT_EQ(201 * (101 - label), image.Count(kWhite, label));
}

TEST_P(ChartPictureTest, APictureOfOnePixelCanBeDrawn) {
  EXPECT_OK(chart_.Let(L"PictureWidth", {1.0f}));
  EXPECT_OK(chart_.Let(L"PictureHeight", {1.0f}));
  Add({L"x"});
  EXPECT_OK(chart_.Let(L"CoordMetric", {1.0}));
  EXPECT_EQ(1u, Drawn().pixels.size());
}

TEST_P(ChartPictureTest, APictureStaysWhatItIs) {
  AddRange(-10, 10, -5, 5);
  const Image drawn = Drawn();
  const auto picture = Picture();
  const auto other = Picture();
  EXPECT_NE(picture.Get(), other.Get());
  Add({L"x", -10, 10, 0.1});
  EXPECT_FALSE(drawn == Drawn());
  EXPECT_EQ(drawn, Image(picture.Get()));
  EXPECT_OK(chart_.Call(L"Delete"));
  EXPECT_EQ(drawn, Image(picture.Get()));
}

RUN_IN_BOTH_BINDINGS(ChartPictureTest);

}  // namespace
