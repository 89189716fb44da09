#include "dll_file.h"

#include <windows.h>

#include <cstddef>
#include <vector>

namespace zepcheck {
namespace {

/// The beginning of a file, as far as headers reach.
std::vector<char> Beginning(const std::wstring& path) {
  std::vector<char> bytes(4096);
  DWORD read = 0;
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
  }
  bytes.resize(read);
  return bytes;
}

}  // namespace

bool FileExists(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::optional<bool> Is64BitFile(const std::wstring& path) {
  const std::vector<char> bytes = Beginning(path);
  if (bytes.size() < sizeof(IMAGE_DOS_HEADER)) return std::nullopt;
  const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data());
  const auto offset = static_cast<size_t>(dos.e_lfanew);
  constexpr size_t kNeeded = offsetof(IMAGE_NT_HEADERS32, OptionalHeader);
  if (dos.e_magic != IMAGE_DOS_SIGNATURE || offset > bytes.size() ||
      bytes.size() - offset < kNeeded) {
    return std::nullopt;
  }
  const auto& nt = *reinterpret_cast<const IMAGE_NT_HEADERS32*>(bytes.data() + offset);
  if (nt.Signature != IMAGE_NT_SIGNATURE) return std::nullopt;
  if (nt.FileHeader.Machine == IMAGE_FILE_MACHINE_AMD64) return true;
  if (nt.FileHeader.Machine == IMAGE_FILE_MACHINE_I386) return false;
  return std::nullopt;
}

std::wstring VersionOfFile(const std::wstring& path) {
  DWORD unused = 0;
  std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), &unused));
  VS_FIXEDFILEINFO* found = nullptr;
  UINT size = 0;
  if (block.empty() ||
      !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
      !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&found), &size)) {
    return {};
  }
  return std::to_wstring(HIWORD(found->dwFileVersionMS)) + L"." +
         std::to_wstring(LOWORD(found->dwFileVersionMS)) + L"." +
         std::to_wstring(HIWORD(found->dwFileVersionLS));
}

bool IsSamePath(const std::wstring& first, const std::wstring& second) {
  return CompareStringOrdinal(first.c_str(), -1, second.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::wstring OwnPath() {
  wchar_t path[MAX_PATH * 4];
  return {path, GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)))};
}

}  // namespace zepcheck
