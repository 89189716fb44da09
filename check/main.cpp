// zepcheck: looks at how Zepkit10 is installed, uses every family of it once, and tells what is
// wrong and what to do about it. Ends with 0 when all is well, else with 1.
#include <windows.h>
#include <objbase.h>

#include <string>

#include "advice.h"
#include "bitness.h"
#include "dll_file.h"
#include "registration_check.h"
#include "self_test.h"

namespace zepcheck {
namespace {

/// Whether programs of the other bitness find the component; says where.
bool TellOtherBitness(const TypeLibrary& expected, Report& report) {
  if (!HasOtherBitness()) return false;
  report.Heading(std::wstring(L"Registered for ") + BitnessText(!kIs64Bit) + L" programs");
  bool any = false;
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    std::wstring dll;
    if (!RegistrationCheck::IsRegistered(expected, {root, !kIs64Bit}, &dll)) continue;
    report.Fact(root == HKEY_LOCAL_MACHINE ? L"for all users" : L"for you alone", dll);
    any = true;
  }
  if (!any) report.Fact(L"nothing", L"for any user");
  return any;
}

void TellThatItIsMissing(bool is_for_other, Report& report) {
  const std::wstring own = BitnessText(kIs64Bit);
  const std::wstring other = BitnessText(!kIs64Bit);
  report.Heading(L"Missing");
  report.Fault(is_for_other ? L"Only the component for " + other + L" programs is registered: " +
                                  own + L" programs do not find it."
                            : L"Zepkit10 is not registered for " + own +
                                  L" programs, neither for all users nor for you alone.",
               HowToInstall());
}

void CheckAll(const TypeLibrary& expected, Report& report) {
  bool registered = false;
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    registered |= RegistrationCheck(expected, {root, kIs64Bit}, report).Run();
  }
  const bool is_for_other = TellOtherBitness(expected, report);
  if (registered) {
    SelfTest(report);
  } else {
    TellThatItIsMissing(is_for_other, report);
  }
}

int Run() {
  Report report;
  report.Heading(L"zepcheck " + VersionOfFile(OwnPath()) + L", " + BitnessText(kIs64Bit) + L": " +
                 OwnPath());
  const auto expected = ReadTypeLibrary(OwnPath());
  if (expected) {
    CheckAll(*expected, report);
  } else {
    report.Fault(L"This program has lost its own type library.", L"Unpack the archive again.");
  }
  report.Conclude();
  return report.Faults() ? 1 : 0;
}

}  // namespace
}  // namespace zepcheck

int wmain() {
  if (FAILED(CoInitialize(nullptr))) return 1;
  const int result = zepcheck::Run();
  CoUninitialize();
  return result;
}
