#include "frame/errors.h"

#include <gtest/gtest.h>

namespace zepkit10 {
namespace {

template <class Raise>
Failure Raised(Raise raise) {
  try {
    raise();
  } catch (const Failure& failure) {
    return failure;
  }
  return {};
}

TEST(Errors, TheLibrarysOwnErrorsNameTheClass) {
  EXPECT_EQ((Failure{-2147220461, u"Zepkit10.List", {}}),
            Raised([] { RaiseZepError(ZepErrors::zepErrIndexOutOfRange, u"List"); }));
  EXPECT_EQ((Failure{-2147220480, u"Zepkit10.VarSet", {}}),
            Raised([] { RaiseZepError(ZepErrors::zepErrAwaitTerm, u"VarSet"); }));
}

TEST(Errors, WithoutAClassTheSourceIsTheLibrary) {
  EXPECT_EQ((Failure{-2147220474, u"Zepkit10", {}}),
            Raised([] { RaiseZepError(ZepErrors::zepErrBadCharInTerm); }));
}

TEST(Errors, TheCalledClassIsFilledInLater) {
  EXPECT_EQ((Failure{-2147220479, {}, {}}),
            Raised([] { RaiseInCalledClass(ZepErrors::zepErrBadParam); }));
  EXPECT_EQ((Failure{6, {}, {}}),
            Raised([] { RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow); }));
  EXPECT_EQ((Failure{6, u"Zepkit10.Expression", {}}),
            Raised([] { RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow, u"Expression"); }));
  EXPECT_EQ((Failure{424, {}, {}}),
            Raised([] { RaiseRuntimeError(ZepVbErrors298To746::zepVbErrObjectRequired); }));
}

}  // namespace
}  // namespace zepkit10
