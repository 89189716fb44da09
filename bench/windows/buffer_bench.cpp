// Buffers and documents as a C++ client uses them, through the vtable.
#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstring>
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

// ---- Text
// -----------------------------------------------------------------------------------------

constexpr UINT kBytes = 64 << 20;

BSTR NewText(UINT characters) {
  BSTR text = SysAllocStringLen(nullptr, characters);
  Check(text ? S_OK : E_OUTOFMEMORY, "SysAllocStringLen");
  return text;
}

/// What is moved is the text on one side and the bytes on the other. Whoever reads gets a new
/// string, whose memory takes the system longer to provide than it takes to fill; so reading is
/// also compared with copying into a new string.
void MeasureText(ZepStringType type, const char* name) {
  const UINT characters = type == zepSTUnicode ? kBytes / 2 : kBytes;
  const std::size_t text_size = std::size_t{characters} * sizeof(wchar_t);
  const std::size_t moved = (text_size + kBytes) / 2;
  std::vector<char> from(moved, 'x'), to(moved);
  const ComPtr<_ZepVariant> buffer = Create<_ZepVariant>(CLSID_ZepVariant);
  Check(buffer->put_StringType(type), "StringType");
  BSTR text = NewText(characters);
  for (UINT i = 0; i < characters; ++i) text[i] = static_cast<wchar_t>('a' + i % 26);
  const auto copy = [&] { std::memcpy(to.data(), from.data(), moved); };
  const auto copy_anew = [&] {
    BSTR made = NewText(characters);
    std::memcpy(made, text, text_size);
    SysFreeString(made);
  };
  const auto read = [&] {
    BSTR got = nullptr;
    Check(buffer->get_DataString(&got), "DataString");
    SysFreeString(got);
  };
  const auto writing = Compare([&] { Check(buffer->put_DataString(text), "DataString"); }, copy);
  const auto reading = Compare(read, copy), reading_anew = Compare(read, copy_anew);
  std::printf(
      "  DataString of 64 MB in %s: written in %.1f, read in %.1f times copying the bytes and %.2f "
      "times copying them into a new string\n",
      name, writing.ours / writing.theirs, reading.ours / reading.theirs,
      reading_anew.ours / reading_anew.theirs);
  SysFreeString(text);
}

}  // namespace

int main() {
  Check(CoInitialize(nullptr), "CoInitialize");
  MeasureTransfer();
  MeasureViews();
  MeasureText(zepSTAscii, "OEM");
  MeasureText(zepSTAnsi, "ANSI");
  MeasureText(zepSTUnicode, "UTF-16");
  CoUninitialize();
}
