#pragma once

#include <tuple>

#include "com/client.h"
#include "com/component.h"
#include "com/zep_error.h"

/// A test of members that both root objects have: it runs with each of them, early and late bound.
/// Errors name the root that was called.
class BothRoots : public component::Test,
                  public testing::WithParamInterface<std::tuple<const wchar_t*, client::Binding>> {
 protected:
  BothRoots() {
    const client::Object global(component::Create<IDispatch>(CLSID_Global).Get(),
                                std::get<1>(GetParam()));
    const bool is_global = RootName() == std::wstring_view(L"Global");
    root_ = is_global ? global : global.GetObject(L"Zep");
  }

  /// "Global" or "Library".
  static const wchar_t* RootName() { return std::get<0>(GetParam()); }

  client::Object root_;
};

/// Asserts one of the library's own errors, raised by the root that was called.
#define EXPECT_ROOT_ERROR(outcome, expected_number)                               \
  EXPECT_ERROR(outcome, expected_number, std::wstring(L"Zepkit10.") + RootName(), \
               zep_error::English(expected_number))

#define RUN_WITH_BOTH_ROOTS(Fixture)                                                           \
  INSTANTIATE_TEST_SUITE_P(                                                                    \
      Roots, Fixture,                                                                          \
      testing::Combine(testing::Values(L"Global", L"Library"),                                 \
                       testing::Values(client::Binding::kVtable, client::Binding::kDispatch)), \
      [](const testing::TestParamInfo<Fixture::ParamType>& tested) {                           \
        const std::wstring_view root = std::get<0>(tested.param);                              \
        return std::string(root.begin(), root.end()) +                                         \
               testing::PrintToString(std::get<1>(tested.param));                              \
      })
