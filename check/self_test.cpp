#include "self_test.h"

#include "advice.h"
#include "families.h"
#include "temporary_folder.h"

namespace zepcheck {
namespace {

constexpr const wchar_t* kHowToLoad =
    L"Programs that run as an administrator, and all programs under Wine, look for classes of all "
    L"users only: if it is registered for you alone, start them as a user, or register it for "
    L"all. ";
constexpr const wchar_t* kInstallAgain =
    L"The component does not work as it should: install it again, and then run zepcheck again.";

void Run(std::span<const Family> families, const Workbench& bench, Report& report) {
  for (const Family& each : families) {
    try {
      each.test(bench);
      report.Fact(each.name, L"works");
    } catch (const Failure& failure) {
      report.Fact(each.name, L"does not work");
      report.Fault(
          L"The self-test of " + std::wstring(each.name) + L" found: " + failure.text + L".",
          kInstallAgain);
    }
  }
}

void RunAll(const Workbench& bench, Report& report) {
  Run(CalculatingFamilies(), bench, report);
  Run(HoldingFamilies(), bench, report);
  Run(OutsideFamilies(), bench, report);
}

}  // namespace

void Expect(const wchar_t* what, const Value& found, const std::wstring& expected) {
  const std::wstring text = found.Text();
  if (text == expected) return;
  throw Failure{E_UNEXPECTED,
                std::wstring(what) + L" is \"" + text + L"\" instead of \"" + expected + L"\""};
}

void SelfTest(Report& report) {
  report.Heading(L"Self-test");
  const TemporaryFolder folder;
  if (folder.Path().empty()) {
    report.Fault(L"There is no folder for temporary files.",
                 L"Let the environment variable TEMP name a folder that you may write to.");
    return;
  }
  try {
    RunAll({Object::Create(L"Zepkit10.Global"), folder.Path()}, report);
  } catch (const Failure& failure) {
    // A fault that was found before is the reason.
    if (report.Faults()) {
      report.Fact(L"not run", failure.text);
    } else {
      report.Fault(failure.text + L", although it is registered.",
                   kHowToLoad + HowToRegister(true));
    }
  }
}

}  // namespace zepcheck
