// The numbers of errors on their way between the platform, the library and clients.
#include "platform/automation/translate.h"

#include "com/import_hook.h"
#include "com/number_raised.h"
#include "com/probe/probe_test.h"
#include "frame/errors.h"

DECLARE_IMPORT(CreateErrorInfo, 4);

namespace zepkit10 {
namespace {

struct Number {
  HRESULT of_platform;
  std::int32_t of_client;
};

// As hosts show the platform's own errors.
constexpr Number kNumbers[] = {
    {DISP_E_OVERFLOW, 6},
    {E_OUTOFMEMORY, 7},
    {HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY), 7},
    {DISP_E_BADINDEX, 9},
    {DISP_E_ARRAYISLOCKED, 10},
    {DISP_E_DIVBYZERO, 11},
    {DISP_E_TYPEMISMATCH, 13},
    {DISP_E_BADVARTYPE, 13},
    {DISP_E_UNKNOWNNAME, 438},
    {DISP_E_MEMBERNOTFOUND, 438},
    {DISP_E_PARAMNOTOPTIONAL, 449},
    {DISP_E_BADPARAMCOUNT, 450},
    {ToHresult(5), 5},
    {ToHresult(65535), 65535},
    {ToHresult(0), 0},
    {ToHresult(-1), -1},
    {E_FAIL, E_FAIL},
    {static_cast<HRESULT>(0x800A0000), static_cast<std::int32_t>(0x800A0000)},
    {0x000A0005, 0x000A0005},  // no failure, though of the facility of runtime errors
};

TEST(TranslateTest, NumbersAreThoseThatHostsShow) {
  for (const Number& number : kNumbers)
    EXPECT_EQ(number.of_client, FromHresult(number.of_platform));
}

TEST(TranslateTest, RefusalsOfThePlatformAreRaisedByTheirNumber) {
  for (const auto raise : {RaiseRefusal, RaiseValueRefusal}) {
    EXPECT_THROW(raise(E_OUTOFMEMORY), std::bad_alloc);
    EXPECT_THROW(raise(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY)), std::bad_alloc);
    EXPECT_EQ(6, NumberRaisedBy([&] { raise(DISP_E_OVERFLOW); }));
  }
  EXPECT_EQ(E_INVALIDARG, NumberRaisedBy([] { RaiseRefusal(E_INVALIDARG); }));
  EXPECT_EQ(13, NumberRaisedBy([] { RaiseValueRefusal(E_INVALIDARG); }));
}

HRESULT WINAPI CreateNone(ICreateErrorInfo** result) {
  *result = nullptr;
  return E_OUTOFMEMORY;
}

class WithoutErrorInfo : public probe::ProbeTest {};

// No text of an earlier error may be taken for this one's.
TEST_F(WithoutErrorInfo, AnErrorWithoutATextIsOutOfMemory) {
  BSTR result = nullptr;
  EXPECT_EQ(ToHresult(6), vtable()->Fail(static_cast<long>(ProbeFailure::kRuntimeError), &result));
  EXPECT_TRUE(probe::HasErrorInfo());
  EXPECT_EQ(ToHresult(6), vtable()->Fail(static_cast<long>(ProbeFailure::kRuntimeError), &result));
  const ImportHook<&__imp_CreateErrorInfo> hook(CreateNone);
  EXPECT_EQ(ToHresult(7), vtable()->Fail(static_cast<long>(ProbeFailure::kRuntimeError), &result));
  EXPECT_FALSE(probe::HasErrorInfo());
  EXPECT_EQ(nullptr, result);
}

}  // namespace
}  // namespace zepkit10
