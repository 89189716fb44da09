// Serials, which every object takes when it is made, across all classes.
#include "frame/object_serial.h"

#include "com/both_bindings.h"

namespace {

using client::Object;

class ObjectSerialTest : public BothBindings {
 protected:
  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "looks into the component";
  }
};

TEST_P(ObjectSerialTest, SerialsCountAcrossClasses) {
  const Object global = Create(CLSID_Global);
  const Object set = global.GetObject(L"VarSets").CallObject(L"Add");
  const auto before = zepkit10::NextObjectSerial();
  Create(CLSID_Counter);
  Create(CLSID_Expression);
  Create(CLSID_Global);
  set.CallObject(L"Add", {L"x"});  // a variable and its Expression
  EXPECT_EQ(before + 6, zepkit10::NextObjectSerial());
}

TEST_P(ObjectSerialTest, EveryClassTakesSerials) {
  const Object global = Create(CLSID_Global);
  const auto objects_made_by = [](auto make) {
    const auto before = zepkit10::NextObjectSerial();
    make();
    return zepkit10::NextObjectSerial() - before - 1;
  };
  const Object buffer = Create(CLSID_ZepVariant);  // the first one makes what buffers share
  for (const GUID& alone : {CLSID_Global, CLSID_Counter, CLSID_Expression, CLSID_Messages,
                            CLSID_List, CLSID_ZepVariant, CLSID_FileDialog, CLSID_MousePointer}) {
    EXPECT_EQ(1, objects_made_by([&] { Create(alone); }));
  }
  EXPECT_EQ(3, objects_made_by([] { Create(CLSID_DocHand); })) << "with its content and a dialog";
  EXPECT_EQ(1, objects_made_by([&] { global.Get(L"Zep"); }));
  for (const wchar_t* shared :
       {L"Charts", L"CommandLine", L"DebugPrintOuts", L"GlobalMessages", L"Keyboard", L"VarSets"}) {
    EXPECT_EQ(1, objects_made_by([&] { global.Get(shared); }));
    EXPECT_EQ(0, objects_made_by([&] { global.Get(shared); }));
  }
  EXPECT_EQ(1, objects_made_by([&] { global.Get(L"ZepMousePointer"); }));
  const Object charts = global.GetObject(L"Charts");
  Object chart;
  EXPECT_EQ(2, objects_made_by([&] { chart = charts.CallObject(L"Add", {L"a"}); }))
      << "with its functions";
  const Object functions = chart.GetObject(L"FncInfos");
  EXPECT_EQ(2, objects_made_by([&] { functions.Call(L"Add", {L"f"}); })) << "with its Expression";
}

RUN_IN_BOTH_BINDINGS(ObjectSerialTest);

}  // namespace
