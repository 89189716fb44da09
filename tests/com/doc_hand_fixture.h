#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "com/both_bindings.h"
#include "com/sink.h"
#include "com/temporary_folder.h"
#include "com/zep_error.h"

/// A document and a folder for its files. What a test leaves open is closed.
class WithDocument : public BothBindings {
 protected:
  using Event = client::Event;
  using Events = std::vector<Event>;
  enum Stat { kReadOnly = 1, kOpen = 2, kOpenErr = 4, kChanged = 16 };

  ~WithDocument() override {
    if (document_) document_.Call(L"CloseFile");
  }

  static Event ContentChange() { return {1, {}}; }
  static Event FileClose() { return {2, {}}; }
  static Event FileNameChange(const std::wstring& name) { return {3, {name}}; }
  static Event FileOpen(const std::wstring& name) { return {4, {name}}; }
  static Event PartlyRead(int length, int done, float percentage) {
    return {5, {length, done, percentage}};
  }
  static Event PartlyWritten(int length, int done, float percentage) {
    return {6, {length, done, percentage}};
  }
  static Event FileRead() { return {7, {}}; }
  static Event FileSaved() { return {8, {}}; }
  static Event FileSavedAs(const std::wstring& name) { return {9, {name}}; }
  static Event FileTitleChanged(const std::wstring& title) { return {10, {title}}; }
  static Event NewFile() { return {11, {}}; }
  static Event StatusChange(int status) { return {12, {status}}; }

  /// What a new file name tells.
  static Events Naming(const std::wstring& path) {
    return {FileNameChange(path), FileTitleChanged(path)};
  }

  static Events Joined(std::initializer_list<Events> parts) {
    Events all;
    for (const Events& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }

  void Listen(client::Sink::Handler handler = {}) {
    sink_ = client::Sink::Connect(document_.get(), DIID___DocHand, std::move(handler));
    heard_ = 0;
  }
  /// What was heard since the last call.
  Events Heard() {
    const Events& all = sink_->events();
    const Events news(all.begin() + static_cast<std::ptrdiff_t>(heard_), all.end());
    heard_ = all.size();
    return news;
  }

  client::Outcome Open(const std::wstring& path, bool read_only = false) const {
    return document_.Call(L"OpenFile", {path, read_only});
  }
  client::Outcome SaveAs(const std::wstring& path) const {
    return document_.Call(L"SaveAs", {path});
  }
  client::Outcome Save() const { return document_.Call(L"Save"); }
  client::Outcome Update() const { return document_.Call(L"UpdateFromDisk"); }
  client::Outcome Close() const { return document_.Call(L"CloseFile"); }
  client::Outcome Status() const { return document_.Get(L"Status"); }
  client::Object Content() const { return document_.GetObject(L"Content"); }

  void ExpectFlags(bool read_only, bool open, bool error, bool changed) const {
    EXPECT_EQ(document_.Get(L"ReadOnly"), read_only);
    EXPECT_EQ(document_.Get(L"Opened"), open);
    EXPECT_EQ(document_.Get(L"OpenErr"), error);
    EXPECT_EQ(document_.Get(L"Changed"), changed);
    EXPECT_EQ(Status(),
              (read_only ? 1 : 0) + (open ? 2 : 0) + (error ? 4 : 0) + (changed ? 16 : 0));
  }

  static client::Value ArrayOf(const std::string& bytes) {
    VARIANT value;
    value.vt = VT_ARRAY | VT_UI1;
    value.parray = SafeArrayCreateVector(VT_UI1, 1, static_cast<ULONG>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), static_cast<char*>(value.parray->pvData));
    const client::Value made(value);
    VariantClear(&value);
    return made;
  }
  client::Outcome Put(const std::string& bytes) const {
    return Content().Let(L"DataBytes", {ArrayOf(bytes)});
  }
  std::string Bytes() const {
    const client::Outcome data = Content().Get(L"DataBytes");
    EXPECT_OK(data);
    const SAFEARRAY* array = data.value.raw().parray;
    if (!array) return {};
    EXPECT_EQ(1, array->rgsabound[0].lLbound);
    return std::string(static_cast<const char*>(array->pvData), array->rgsabound[0].cElements);
  }

  static HANDLE OpenAsOther(const std::wstring& path, DWORD access) {
    return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, OPEN_EXISTING, 0, nullptr);
  }
  /// Whether another program could open a file.
  static bool MayOpen(const std::wstring& path, DWORD access) {
    HANDLE file = OpenAsOther(path, access);
    if (file == INVALID_HANDLE_VALUE) {
      EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, GetLastError());
      return false;
    }
    CloseHandle(file);
    return true;
  }

  /// All byte values, in an order that repeats late.
  static std::string Pattern(int length) {
    std::string bytes;
    for (int i = 0; i < length; ++i) bytes.push_back(static_cast<char>(i + i / 256));
    return bytes;
  }

  TemporaryFolder folder_;
  const std::wstring path_ = folder_ / L"a.txt";
  client::Object document_ = Create(CLSID_DocHand);
  Microsoft::WRL::ComPtr<client::Sink> sink_;
  std::size_t heard_ = 0;
};

/// Asserts that a call failed with one of the runtime's errors, which names the document.
#define EXPECT_RUNTIME_ERROR(outcome, expected_number, expected_description) \
  EXPECT_ERROR(outcome, expected_number, L"Zepkit10.DocHand", expected_description)
