#include "faults/families.h"

#include "com/fault_plan.h"

namespace faults {

using namespace call_table;

namespace {

void CALLBACK PressOk(HWND, UINT, UINT_PTR, DWORD) {
  const OutsideCall outside;
  if (HWND window = AboutUser::Window()) PostMessageW(GetDlgItem(window, IDOK), BM_CLICK, 0, 0);
}

Rows CallsOfAboutBoxes() {
  return {
      Run(L"global.LoadZepIcon", {zepIcoZepkit}).Satisfies([](const Value& icon) {
        EXPECT_EQ(VT_DISPATCH, icon.type());
        EXPECT_NE(nullptr, icon.raw().pdispVal);
      }),
      Run(L"global.ShowAbout", {L"About", Value::Nothing(), L"First", L"Second"}),
  };
}

}  // namespace

AboutCloser::AboutCloser() : timer_(SetTimer(nullptr, 0, 10, PressOk)) {}

const std::vector<Family>& Families() {
  static const std::vector<Family> families{
      {"Global", [](Surroundings& in) { return CallsOfRoots(L"global", in.folder); }},
      {"Library", [](Surroundings& in) { return CallsOfRoots(L"library", in.folder); }},
      {"Counters", [](Surroundings&) { return CallsOfCounters(); }},
      {"Terms", [](Surroundings&) { return CallsOfTerms(); }},
      {"Variables", [](Surroundings&) { return CallsOfVariables(); }},
      {"Charts", [](Surroundings&) { return CallsOfCharts(); }},
      {"Buffers", [](Surroundings&) { return CallsOfBuffers(); }},
      {"Documents", [](Surroundings& in) { return CallsOfDocuments(in.folder, in.user); }},
      {"FileDialogs", [](Surroundings& in) { return CallsOfFileDialogs(in.folder, in.user); }},
      {"Messages", [](Surroundings&) { return CallsOfMessages(); }},
      {"Lists", [](Surroundings&) { return CallsOfLists(); }},
      {"Traces", [](Surroundings& in) { return CallsOfTraces(in.target); }},
      {"AboutBoxes", [](Surroundings&) { return CallsOfAboutBoxes(); }, 8},
      {"Keyboards", [](Surroundings&) { return CallsOfKeyboards(); }},
      {"MousePointers", [](Surroundings&) { return CallsOfMousePointers(); }},
  };
  return families;
}

}  // namespace faults
