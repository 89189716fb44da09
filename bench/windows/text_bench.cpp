// Long texts in buffers: what converting them costs beside copying as many bytes.
#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "client.h"
#include "measure.h"

namespace {

using Microsoft::WRL::ComPtr;

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
  MeasureText(zepSTAscii, "OEM");
  MeasureText(zepSTAnsi, "ANSI");
  MeasureText(zepSTUnicode, "UTF-16");
  CoUninitialize();
}
