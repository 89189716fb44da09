// The library's own values, and what is read from a client's.
#include "platform/automation/variant.h"

#include "com/component.h"
#include "com/foreign.h"
#include "com/number_raised.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

/// A Variant that leads to itself.
class Loop {
 public:
  Loop() {
    value_.vt = VT_BYREF | VT_VARIANT;
    value_.pvarVal = &value_;
  }
  const VARIANT& get() const { return value_; }

 private:
  VARIANT value_;
};

TEST(VariantTest, NothingIsReadFromAValueThatLeadsNowhere) {
  const Loop loop;
  EXPECT_EQ(13, NumberRaisedBy([&] { CopyOf(loop.get()); }));
  EXPECT_EQ(13, NumberRaisedBy([&] { ConvertToLong(loop.get()); }));
  EXPECT_EQ(std::nullopt, IntegerOf(loop.get()));
  EXPECT_EQ(std::nullopt, TextOf(loop.get()));
  EXPECT_EQ(std::nullopt, ConvertToText(loop.get()));
  EXPECT_FALSE(IsMissing(&loop.get()));
}

TEST(VariantTest, HoldsObjectsAndNothing) {
  foreign::Object<IDispatch> object;
  {
    const Variant held(&object);
    EXPECT_EQ(VT_DISPATCH, held.get().vt);
    EXPECT_EQ(&object, held.get().pdispVal);
    EXPECT_EQ(2u, object.references);
    const Variant nothing(static_cast<IDispatch*>(nullptr));
    EXPECT_EQ(VT_DISPATCH, nothing.get().vt);
    EXPECT_EQ(nullptr, nothing.get().pdispVal);
  }
  EXPECT_EQ(1u, object.references);
}

TEST(BstrTest, NoTextIsLongerThanItsBytesCanBeCounted) {
  constexpr std::size_t kTooLong = 0x7FFFFFFF / 2;
  EXPECT_THROW(Bstr text(kTooLong), std::bad_alloc);
  EXPECT_THROW(Bstr text(SIZE_MAX), std::bad_alloc);
  Bstr text(3);
  text.data()[2] = u'c';
  const BSTR taken = text.Detach();
  EXPECT_EQ(3u, SysStringLen(taken));
  EXPECT_EQ(L'c', taken[2]);
  SysFreeString(taken);
}

}  // namespace
}  // namespace zepkit10
