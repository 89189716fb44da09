#pragma once

#include "com/client.h"
#include "com/component.h"

/// A test that runs once early bound and once late bound.
class BothBindings : public component::Test, public testing::WithParamInterface<client::Binding> {
 protected:
  static client::Object Create(REFCLSID clsid) {
    return {component::Create<IDispatch>(clsid).Get(), GetParam()};
  }
};

#define RUN_IN_BOTH_BINDINGS(Fixture)                                                             \
  INSTANTIATE_TEST_SUITE_P(Bindings, Fixture,                                                     \
                           testing::Values(client::Binding::kVtable, client::Binding::kDispatch), \
                           testing::PrintToStringParamName())
