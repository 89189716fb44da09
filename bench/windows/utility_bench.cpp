// Members whose cost should grow with their work and nothing else. Each figure is a ratio to the
// least that the work can cost.
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

// ---- Lists

constexpr ULONG kItems = 1'000'000;

/// One pass over the text and one string for each item.
void TakeApart(const std::wstring& text) {
  std::vector<wchar_t> copy(text.size());
  std::memcpy(copy.data(), text.data(), text.size() * sizeof(wchar_t));
  SAFEARRAY* items = SafeArrayCreateVector(VT_BSTR, 0, kItems);
  auto* strings = static_cast<BSTR*>(items->pvData);
  for (ULONG i = 0; i < kItems; ++i) strings[i] = SysAllocStringLen(copy.data() + i, 6);
  SafeArrayDestroy(items);
}

void MeasureLists(_Global* zepkit) {
  std::wstring text;
  for (ULONG i = 0; i < kItems; ++i) text += std::to_wstring(100'000 + i % 900'000) + L" ";
  text.pop_back();
  BSTR list = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  BSTR space = SysAllocString(L" "), none = SysAllocString(L"");
  SAFEARRAY* items = nullptr;
  const auto split = Compare(
      [&] {
        if (items) SafeArrayDestroy(items);
        Check(zepkit->ListToStringArray(list, space, none, none, &items), "ListToStringArray");
      },
      [&] { TakeApart(text); });
  std::printf("  splitting a list of %lu items: %.2f times copying it and allocating the items\n",
              kItems, split.ours / split.theirs);
  VARIANT array{};
  array.vt = VT_ARRAY | VT_BSTR;
  array.parray = items;
  std::vector<wchar_t> copy(text.size());
  const auto join = Compare(
      [&] {
        BSTR joined = nullptr;
        Check(zepkit->StringArrayToList(array, space, none, none, &joined), "StringArrayToList");
        SysFreeString(joined);
      },
      [&] { TakeApart(text); });
  std::printf("  joining them: %.2f times that\n", join.ours / join.theirs);
  SafeArrayDestroy(items);
  for (BSTR each : {list, space, none}) SysFreeString(each);
}

// ---- Files

constexpr int kFolders = 2000, kFilesInEach = 50;

std::wstring MakeTree() {
  wchar_t folder[MAX_PATH], path[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  GetTempFileNameW(folder, L"zep", 0, path);
  DeleteFileW(path);
  CreateDirectoryW(path, nullptr);
  for (int i = 0; i < kFolders; ++i) {
    const std::wstring inner = std::wstring(path) + L"\\" + std::to_wstring(i);
    CreateDirectoryW(inner.c_str(), nullptr);
    for (int j = 0; j < kFilesInEach; ++j) {
      const std::wstring file = inner + L"\\" + std::to_wstring(j) + L".txt";
      CloseHandle(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    }
  }
  return path;
}

/// Visits every entry below a folder; does something with files and, afterwards, with folders.
template <class File, class Folder>
void Walk(const std::wstring& folder, File file, Folder left) {
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
  do {
    if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
      file(folder, entry.cFileName);
    } else if (entry.cFileName[0] != L'.') {
      Walk(folder + L"\\" + entry.cFileName, file, left);
    }
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  left(folder);
}

void MeasureFiles(_Global* zepkit) {
  const std::wstring tree = MakeTree();
  BSTR path = SysAllocString(tree.c_str()), pattern = SysAllocString(L"*.txt");
  const auto nothing = [](const std::wstring&) {};
  long visited = 0;
  const auto listing = Compare(
      [&] {
        SAFEARRAY* files = nullptr;
        LONG count = 0;
        Check(zepkit->GetFiles(path, pattern, &files, VARIANT_TRUE, &count), "GetFiles");
        Check(count == kFolders * kFilesInEach ? S_OK : E_FAIL, "counting files");
        SafeArrayDestroy(files);
      },
      [&] {
        Walk(
            tree, [&](const std::wstring&, const wchar_t*) { ++visited; }, nothing);
      });
  std::printf("  GetFiles over %d files in %d folders: %.2f times a bare walk\n",
              kFolders * kFilesInEach, kFolders, listing.ours / listing.theirs);
  Walk(
      tree,
      [](const std::wstring& in, const wchar_t* name) { DeleteFileW((in + L"\\" + name).c_str()); },
      [](const std::wstring& folder) { RemoveDirectoryW(folder.c_str()); });
  SysFreeString(path);
  SysFreeString(pattern);
}

// ---- Messages

constexpr int kPostings = 1000;

/// Posts messages to a board that holds some, finds each by its index and removes it.
double TimeOfPostings(int live) {
  const auto board = Create<_Messages>(CLSID_Messages);
  const VARIANT missing = Missing();
  VARIANT content{};
  content.vt = VT_I4;
  const auto post = [&] { Check(board->Add(content, missing, missing, missing), "Messages.Add"); };
  for (int i = 0; i < live; ++i) post();
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    times.push_back(Timed([&] {
      for (int i = 0; i < kPostings; ++i) {
        LONG index = 0;
        ComPtr<_Message> found;
        post();
        Check(board->get_LastIndex(&index), "LastIndex");
        Check(board->get_Item(index, VARIANT_TRUE, &found), "Item");
        found.Reset();
        Check(board->Remove(index, VARIANT_TRUE), "Remove");
      }
    }));
  }
  return Median(times);
}

void MeasureMessages() {
  const double few = TimeOfPostings(100), many = TimeOfPostings(1'000'000);
  std::printf(
      "  a message posted and found takes %.2f microseconds among a million, %.2f times\n"
      "  that among a hundred\n",
      many / kPostings * 1e6, many / few);
}

}  // namespace

int main() {
  Check(OleInitialize(nullptr), "OleInitialize");
  {
    const auto zepkit = Create<_Global>(CLSID_Global);
    MeasureLists(zepkit.Get());
    MeasureFiles(zepkit.Get());
    MeasureMessages();
  }
  OleUninitialize();
}
