// Arrays that a client may describe but late binding does not take, or not for every use.
#include <array>

#include "com/probe/probe_test.h"
#include "com/record.h"

namespace {

using client::Value;
using probe::ByReference;
using probe::Elements;
using probe::Ended;

constexpr UINT kMaxDimensions = 60;

/// One element of a Long, in so many dimensions.
Value Deep(UINT dimensions) {
  std::array<SAFEARRAYBOUND, kMaxDimensions + 1> bounds;
  bounds.fill({1, 0});
  Value value;
  value.raw().vt = VT_ARRAY | VT_I4;
  value.raw().parray = SafeArrayCreate(VT_I4, dimensions, bounds.data());
  return value;
}

/// A descriptor that its elements' type cannot be read from.
class Untyped {
 public:
  Untyped() {
    EXPECT_EQ(S_OK, SafeArrayAllocDescriptor(1, &array_));
    array_->cbElements = sizeof content_;
    array_->rgsabound[0] = {1, 0};
    array_->pvData = &content_;
  }
  ~Untyped() {
    array_->pvData = nullptr;
    SafeArrayDestroyDescriptor(array_);
  }
  Untyped(const Untyped&) = delete;
  Untyped& operator=(const Untyped&) = delete;

  VARIANT Raw() {
    VARIANT raw;
    raw.vt = VT_ARRAY | VT_I2;
    raw.parray = array_;
    return raw;
  }

 private:
  SAFEARRAY* array_ = nullptr;
  SHORT content_ = 7;
};

class BinderArrayTest : public probe::ProbeTest {
 protected:
  void ExpectRefused(HRESULT expected, const VARIANT& array) {
    const Ended ended = Call(L"EchoLongs", {array});
    EXPECT_EQ(expected, ended.result);
    EXPECT_EQ(0u, ended.position);
  }
};

TEST_F(BinderArrayTest, ArraysOfUpToSixtyDimensionsAreConverted) {
  for (const UINT dimensions : {1u, 2u, kMaxDimensions, kMaxDimensions + 1}) {
    Value numbers = Deep(dimensions);
    numbers.raw().vt = VT_ARRAY | VT_I2;  // so that it has to be converted
    const Ended ended = Call(L"EchoLongs", {numbers.raw()});
    EXPECT_EQ(dimensions > kMaxDimensions ? DISP_E_TYPEMISMATCH : S_OK, ended.result);
    if (SUCCEEDED(ended.result)) {
      EXPECT_EQ(dimensions, ended.value.raw().parray->cDims);
    }
    numbers.raw().vt = VT_ARRAY | VT_I4;
  }
}

TEST_F(BinderArrayTest, PropertiesAreIndexedInUpToSixtyDimensions) {
  for (const UINT dimensions : {kMaxDimensions, kMaxDimensions + 1}) {
    const Value zero(0);
    ASSERT_EQ(S_OK, Let(L"Held", {Deep(dimensions).raw()}).result);
    const Ended ended = Call(L"Held", std::vector<VARIANT>(dimensions, zero.raw()));
    EXPECT_EQ(dimensions > kMaxDimensions ? DISP_E_BADPARAMCOUNT : S_OK, ended.result);
    EXPECT_EQ(dimensions > kMaxDimensions ? Value() : zero, ended.value);
  }
}

TEST_F(BinderArrayTest, AnArrayWithoutDimensionsIsRefused) {
  Value numbers = Deep(1);
  numbers.raw().vt = VT_ARRAY | VT_I2;
  numbers.raw().parray->cDims = 0;
  ExpectRefused(DISP_E_TYPEMISMATCH, numbers.raw());
  numbers.raw().parray->cDims = 1;
  numbers.raw().vt = VT_ARRAY | VT_I4;
}

TEST_F(BinderArrayTest, AnArrayOfAnUnknownTypeIsRefused) {
  Untyped untyped;
  ExpectRefused(DISP_E_TYPEMISMATCH, untyped.Raw());
  ASSERT_EQ(S_OK, Let(L"Held", {untyped.Raw()}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"Held", {Value(0).raw()}).result);
}

TEST_F(BinderArrayTest, AnArrayOfRecordsIsRefused) {
  Record point(L"Point");
  const Value records = point.Array({1, 2});
  ExpectRefused(DISP_E_TYPEMISMATCH, records.raw());
  ASSERT_EQ(S_OK, Let(L"Held", {records.raw()}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"Held", {Value(0).raw()}).result);
  EXPECT_EQ(S_OK, Let(L"Held", {Value().raw()}).result);
}

TEST_F(BinderArrayTest, AnArrayThatCannotBeLockedAgainIsRefused) {
  Value numbers = Deep(1);
  numbers.raw().vt = VT_ARRAY | VT_I2;
  numbers.raw().parray->cLocks = 0xFFFF;
  ExpectRefused(E_UNEXPECTED, numbers.raw());
  numbers.raw().parray->cLocks = 0;
  numbers.raw().vt = VT_ARRAY | VT_I4;
}

// Decimals hold their type where other variables have their value.
TEST_F(BinderArrayTest, AnArrayOfDecimalsIsReadButNotChanged) {
  SAFEARRAY* decimals = SafeArrayCreateVector(VT_DECIMAL, 0, 1);
  const VARIANT argument = ByReference(VT_ARRAY | VT_DECIMAL, &decimals);
  const Value one(L"1");
  const Ended ended = Call(L"AppendText", {argument, one.raw()});
  EXPECT_EQ(DISP_E_TYPEMISMATCH, ended.result);
  EXPECT_EQ(1u, ended.position);
  EXPECT_EQ(1u, decimals->rgsabound[0].cElements);
  EXPECT_EQ(Value(0), Call(L"ReadBytes", {argument}).value);
  SafeArrayDestroy(decimals);
}

}  // namespace
