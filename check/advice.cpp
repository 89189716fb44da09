#include "advice.h"

#include <windows.h>

#include "bitness.h"
#include "dll_file.h"

namespace zepcheck {
namespace {

/// Where the programs of Windows itself are that have this program's bitness.
std::wstring SystemFolder() {
  wchar_t folder[MAX_PATH];
  // To 32-bit programs on a 64-bit Windows the other folder goes by the name of System32.
  if (!GetSystemWow64DirectoryW(folder, MAX_PATH) || kIs64Bit) {
    GetSystemDirectoryW(folder, MAX_PATH);
  }
  return folder;
}

std::wstring DllBesideThis() {
  const std::wstring own = OwnPath();
  const std::wstring beside = own.substr(0, own.rfind(L'\\') + 1) + L"zepkit10.dll";
  return FileExists(beside) ? beside : kIs64Bit ? L"x64\\zepkit10.dll" : L"x86\\zepkit10.dll";
}

}  // namespace

std::wstring HowToRegister(bool for_all_users) {
  return (for_all_users ? L"Call as an administrator: " : L"Call: ") + SystemFolder() +
         L"\\regsvr32.exe" + (for_all_users ? L"" : L" /n /i:user") + L" \"" + DllBesideThis() +
         L"\"";
}

std::wstring HowToInstall() {
  const std::wstring installer = kIs64Bit ? L"zepkit10-x64.msi" : L"zepkit10-x86.msi";
  return L"Start " + installer + L". Or register the DLL by hand. " + HowToRegister(true) +
         L" - or, for yourself alone, add /n /i:user behind regsvr32.exe.";
}

}  // namespace zepcheck
