#pragma once

#include <algorithm>
#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "com/both_bindings.h"
#include "com/foreign.h"
#include "com/sink.h"
#include "com/zep_error.h"

/// A runtime error in the name of the buffers' class.
#define EXPECT_BUFFER_RUNTIME_ERROR(outcome, number, text) \
  EXPECT_ERROR(outcome, number, L"Zepkit10.ZepVariant", text)
#define EXPECT_BUFFER_ERROR(outcome, number) EXPECT_ZEP_ERROR(outcome, number, L"ZepVariant")

/// Buffers, their bytes written as texts of one byte a character, and what their listeners hear.
/// A listener stays as long as its buffer.
class WithBuffers : public BothBindings {
 protected:
  using Names = std::vector<std::string>;
  using Handler = std::function<void()>;
  static constexpr DISPID kBeforeROChange = 1, kChange = 2, kROChanged = 3;

  static client::Object New(const std::string& bytes = {}) {
    const client::Object buffer = Create(CLSID_ZepVariant);
    if (!bytes.empty()) EXPECT_OK(buffer.Let(L"DataBytes", {ArrayOf(bytes)}));
    return buffer;
  }
  static client::Object NewView(const client::Object& parent, int start, int length) {
    const client::Object view = New();
    EXPECT_OK(view.Call(L"ConnectAsRange", {parent, start, length, true}));
    return view;
  }

  static client::Value ArrayOf(const std::string& bytes, LONG lower_bound = 1) {
    VARIANT value;
    value.vt = VT_ARRAY | VT_UI1;
    SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), lower_bound};
    value.parray = SafeArrayCreate(VT_UI1, 1, &bound);
    std::copy(bytes.begin(), bytes.end(), static_cast<char*>(value.parray->pvData));
    const client::Value made(value);
    VariantClear(&value);
    return made;
  }
  static client::Value Unallocated() {
    client::Value value;
    value.raw().vt = VT_ARRAY | VT_UI1;
    value.raw().parray = nullptr;
    return value;
  }

  /// The bytes of an array that counts from 1; an array without bytes was never allocated.
  static std::string BytesOf(const client::Outcome& outcome) {
    EXPECT_TRUE(outcome.ok()) << outcome;
    EXPECT_EQ(VT_ARRAY | VT_UI1, outcome.value.type());
    if (!outcome.ok() || !outcome.value.raw().parray) return {};
    const SAFEARRAY* array = outcome.value.raw().parray;
    EXPECT_EQ(1, array->cDims);
    EXPECT_EQ(1, array->rgsabound[0].lLbound);
    EXPECT_LT(0u, array->rgsabound[0].cElements);
    return {static_cast<const char*>(array->pvData), array->rgsabound[0].cElements};
  }
  static std::string Bytes(const client::Object& buffer) {
    return BytesOf(buffer.Get(L"DataBytes"));
  }

  static client::Outcome Write(const client::Object& buffer, const std::string& bytes) {
    return buffer.Let(L"DataBytes", {ArrayOf(bytes)});
  }
  static void ExpectView(const client::Object& view, int start, const std::string& bytes) {
    EXPECT_EQ(view.Get(L"IsRange"), true);
    EXPECT_EQ(view.Get(L"RangeStart"), start);
    EXPECT_EQ(view.Get(L"RangeLength"), static_cast<int>(bytes.size()));
    EXPECT_EQ(Bytes(view), bytes);
  }
  static void ExpectNoView(const client::Object& buffer, const std::string& bytes) {
    EXPECT_EQ(buffer.Get(L"IsRange"), false);
    EXPECT_EQ(Bytes(buffer), bytes);
    EXPECT_BUFFER_ERROR(buffer.Call(L"DisconnectAsRange"), zepErrBadCallContext);
  }

  /// Hears a buffer's `Change` under a name, and then does what is wanted.
  client::Sink* Watch(const client::Object& buffer, const std::string& name,
                      Handler handler = nullptr) {
    return Listen(buffer, [this, name, handler](const client::Event& event) {
      if (event.id == kChange) changes_.push_back(name);
      if (event.id == kChange && handler) handler();
      return S_OK;
    });
  }
  client::Sink* Listen(const client::Object& buffer, client::Sink::Handler handler = {}) {
    sinks_.push_back(client::Sink::Connect(buffer.get(), DIID___ZepVariant, std::move(handler)));
    return sinks_.back().Get();
  }
  /// Whose changes were heard since the last call, in order.
  Names Changes() { return std::exchange(changes_, {}); }

 private:
  std::vector<Microsoft::WRL::ComPtr<client::Sink>> sinks_;
  Names changes_;
};

/// A buffer of ten bytes and an empty one.
class WithParent : public WithBuffers {
 protected:
  struct Bad {
    int start, length;
  };
  /// Slices that do not lie within ten bytes.
  static constexpr Bad kOutside[] = {
      {0, 1},  {0, 0},       {-1, 5},       {INT_MIN, INT_MIN},
      {1, -1}, {1, INT_MIN}, {1, 11},       {2, 10},
      {11, 1}, {12, 0},      {INT_MAX, 0},  {INT_MAX, INT_MAX},
      {5, 7},  {1, INT_MAX}, {INT_MAX, -1},
  };

  client::Object unconnected_ = New();
  client::Object parent_ = New("0123456789");
};
