#include "faults/dying_process.h"

#include <windows.h>
#include <ole2.h>

#include "com/component.h"
#include "com/import_hook.h"
#include "com/value_array.h"

DECLARE_IMPORT(ReadFile, 20);
DECLARE_IMPORT(WriteFile, 20);

namespace faults {
namespace {

constexpr wchar_t kOption[] = L"--die=";
constexpr unsigned kDidNotDie = 78;

using Read = ImportHook<&__imp_ReadFile>;
using Write = ImportHook<&__imp_WriteFile>;

int bytes_left = 0;

[[noreturn]] void Die() {
  TerminateProcess(GetCurrentProcess(), kDied);
  for (;;) Sleep(1000);
}

/// Dies at once in front of the first byte, and otherwise behind the last one allowed.
template <class Function, class... Arguments>
BOOL TransferOrDie(Function system, Arguments... arguments) {
  if (bytes_left == 0) Die();
  const BOOL done = system(arguments...);
  if (--bytes_left == 0) Die();
  return done;
}

BOOL WINAPI ReadOrDie(HANDLE file, void* bytes, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
  return TransferOrDie(Read::kSystem, file, bytes, size, count, overlapped);
}

BOOL WINAPI WriteOrDie(HANDLE file, const void* bytes, DWORD size, DWORD* count,
                       OVERLAPPED* overlapped) {
  return TransferOrDie(Write::kSystem, file, bytes, size, count, overlapped);
}

client::Value Bytes(const std::string& content) {
  VARIANT value;
  value.vt = VT_ARRAY | VT_UI1;
  value.parray = SafeArrayCreateVector(VT_UI1, 1, static_cast<ULONG>(content.size()));
  content.copy(static_cast<char*>(value.parray->pvData), content.size());
  const client::Value made(value);
  VariantClear(&value);
  return made;
}

void OpenAndDie(const client::Object& document, const std::wstring& path) {
  const Read hook(ReadOrDie);
  document.Call(L"OpenFile", {path});
}

void SaveAndDie(const client::Object& document, const std::wstring& path) {
  if (!document.Call(L"OpenFile", {path}).ok()) return;
  document.GetObject(L"Content").Let(L"DataBytes", {Bytes(SavedContent())});
  const Write hook(WriteOrDie);
  document.Call(L"Save");
}

std::wstring OwnPath() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

}  // namespace

std::string SavedContent() {
  constexpr int kLength = 3000;
  std::string content;
  for (int i = 0; i < kLength; ++i) content.push_back(static_cast<char>(i + i / 256));
  return content;
}

unsigned LetProcessDie(Transfer transfer, int bytes_transferred, const std::wstring& path) {
  std::wstring command = L"\"" + OwnPath() + L"\" " + kOption;
  command += (transfer == Transfer::kOpen ? L"o" : L"s") + std::to_wstring(bytes_transferred);
  command += L"," + path;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &process)) {
    return 0;
  }
  constexpr DWORD kPatience = 60000;  // ms
  if (WaitForSingleObject(process.hProcess, kPatience) != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, 0);
  }
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

void DieIfAskedTo(const wchar_t* command_line) {
  const std::wstring line = command_line;
  const std::size_t option = line.find(kOption);
  if (option == line.npos) return;
  const std::wstring what = line.substr(option + std::size(kOption) - 1);
  const std::size_t comma = what.find(L',');
  bytes_left = std::stoi(what.substr(1, comma - 1));
  const std::wstring path = what.substr(comma + 1);
  OleInitialize(nullptr);
  const client::Object document(component::Create<IDispatch>(CLSID_DocHand).Get(),
                                client::Binding::kDispatch);
  what[0] == L'o' ? OpenAndDie(document, path) : SaveAndDie(document, path);
  TerminateProcess(GetCurrentProcess(), kDidNotDie);
}

}  // namespace faults
