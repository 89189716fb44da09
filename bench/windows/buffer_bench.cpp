// Buffers and documents as a C++ client uses them, through the vtable.
#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <cstdio>
#include <string>
#include <vector>

#include "client.h"
#include "measure.h"

namespace {

using Microsoft::WRL::ComPtr;

// ---- Documents
// ------------------------------------------------------------------------------------

std::wstring TemporaryFile() {
  wchar_t folder[MAX_PATH], path[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  GetTempFileNameW(folder, L"zep", 0, path);
  return path;
}

constexpr LONG kFileLength = 500'000;

void ReadByteByByte(const wchar_t* path) {
  const HANDLE file =
      CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  DWORD count = 0;
  char byte;
  while (ReadFile(file, &byte, 1, &count, nullptr) && count == 1) {
  }
  CloseHandle(file);
}

void WriteByteByByte(const wchar_t* path) {
  const HANDLE file =
      CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD count = 0;
  for (LONG i = 0; i < kFileLength; ++i) {
    const char byte = static_cast<char>(i);
    WriteFile(file, &byte, 1, &count, nullptr);
  }
  CloseHandle(file);
}

void MeasureTransfer() {
  const std::wstring path = TemporaryFile();
  WriteByteByByte(path.c_str());
  const ComPtr<_DocHand> document = Create<_DocHand>(CLSID_DocHand);
  BSTR name = SysAllocString(path.c_str());
  const auto open = Compare(
      [&] {
        Check(document->OpenFile(name, VARIANT_FALSE), "OpenFile");
        Check(document->CloseFile(), "CloseFile");
      },
      [&] { ReadByteByByte(path.c_str()); });
  std::printf(
      "  OpenFile reads %.2f MB a second, %.2f times as long as a bare loop over the bytes\n",
      kFileLength / open.ours / 1e6, open.ours / open.theirs);
  Check(document->OpenFile(name, VARIANT_FALSE), "OpenFile");
  const std::wstring other = TemporaryFile();
  const auto save =
      Compare([&] { Check(document->Save(), "Save"); }, [&] { WriteByteByByte(other.c_str()); });
  std::printf("  Save writes %.2f MB a second, %.2f times as long as a bare loop over the bytes\n",
              kFileLength / save.ours / 1e6, save.ours / save.theirs);
  Check(document->CloseFile(), "CloseFile");
  SysFreeString(name);
  DeleteFileW(path.c_str());
  DeleteFileW(other.c_str());
}

// ---- Views
// ----------------------------------------------------------------------------------------

constexpr int kViews = 10, kUnrelated = 100'000, kChanges = 2000;

void MeasureViews() {
  const ComPtr<_ZepVariant> parent = Create<_ZepVariant>(CLSID_ZepVariant);
  Check(parent->put_ByteLength(100), "ByteLength");
  std::vector<ComPtr<_ZepVariant>> views(kViews), unrelated;
  for (int i = 0; i < kViews; ++i) {
    Check(parent->get_Range(i * 10 + 1, 10, VARIANT_TRUE, &views[i]), "Range");
  }
  const auto change = [&] {
    for (int i = 0; i < kChanges; ++i) Check(parent->put_DataByte(50, 7), "DataByte");
  };
  std::vector<double> alone, among;
  for (int round = 0; round < kRounds; ++round) {
    unrelated.clear();
    alone.push_back(Timed(change));
    for (int i = 0; i < kUnrelated; ++i) {
      unrelated.push_back(Create<_ZepVariant>(CLSID_ZepVariant));
    }
    among.push_back(Timed(change));
  }
  std::printf(
      "  A change with %d views takes %.2f microseconds, %.2f times that among %d other buffers\n",
      kViews, Median(alone) / kChanges * 1e6, Median(among) / Median(alone), kUnrelated);
}

}  // namespace

int main() {
  Check(CoInitialize(nullptr), "CoInitialize");
  MeasureTransfer();
  MeasureViews();
  CoUninitialize();
}
