#include "report.h"

#include <windows.h>

#include <string>

namespace zepcheck {
namespace {

/// Consoles show every character; files and pipes get UTF-8.
void WriteLine(std::wstring text) {
  text += L"\r\n";
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  const auto length = static_cast<DWORD>(text.size());
  DWORD written = 0;
  if (WriteConsoleW(output, text.data(), length, &written, nullptr)) return;
  std::string bytes(3 * text.size(), '\0');
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(length), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr);
  WriteFile(output, bytes.data(), static_cast<DWORD>(size), &written, nullptr);
}

}  // namespace

void Report::Heading(std::wstring_view text) {
  WriteLine(L"");
  WriteLine(std::wstring(text));
}

void Report::Fact(std::wstring_view name, std::wstring_view text) {
  constexpr size_t kColumn = 14;
  std::wstring line = L"  " + std::wstring(name);
  line.resize(line.size() < kColumn + 2 ? kColumn + 2 : line.size(), L' ');
  WriteLine(line + L" " + std::wstring(text));
}

void Report::Fault(std::wstring_view sentence, std::wstring_view advice) {
  ++faults_;
  WriteLine(L"  FAULT: " + std::wstring(sentence));
  WriteLine(L"  DO:    " + std::wstring(advice));
}

void Report::Conclude() {
  Heading(faults_ == 0 ? L"All is well."
          : faults_ == 1
              ? L"1 fault was found; the line that begins with DO tells what to do."
              : std::to_wstring(faults_) +
                    L" faults were found; the lines that begin with DO tell what to do.");
}

}  // namespace zepcheck
