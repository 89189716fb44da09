// What a handler does to a client's variable while the member runs that the variable was passed to.
#include <functional>
#include <optional>

#include "com/import_hook.h"
#include "com/probe/probe_test.h"
#include "com/sink.h"

DECLARE_IMPORT(SafeArrayCreate, 12);

namespace {

using client::Event;
using client::Sink;
using client::Value;
using probe::ByReference;
using probe::ClientArray;
using probe::Elements;
using probe::Ended;

using CreateHook = ImportHook<&__imp_SafeArrayCreate>;

SAFEARRAY* WINAPI MakeNone(VARTYPE, UINT, SAFEARRAYBOUND*) { return nullptr; }

class BinderHandlerTest : public probe::ProbeTest {
 protected:
  /// Calls a member whose handlers do something before it works.
  Ended CallWhile(const std::function<void()>& meddle, const wchar_t* member,
                  const std::vector<VARIANT>& arguments) {
    const auto sink = Sink::Connect(object(), DIID___Probe, [&](const Event&) {
      meddle();
      return S_OK;
    });
    const Ended ended = Call(member, arguments);
    EXPECT_EQ(1u, sink->events().size());
    EXPECT_EQ(S_OK, sink->Disconnect());
    return ended;
  }
  Ended ChangeWhile(const std::function<void()>& meddle, Value& variable) {
    return CallWhile(meddle, L"RaiseAndChange", {ByReference(variable)});
  }
  static void ExpectRefused(HRESULT expected, UINT position, const Ended& ended) {
    EXPECT_EQ(expected, ended.result);
    EXPECT_EQ(position, ended.position);
  }
};

TEST_F(BinderHandlerTest, AVariableMayGetAnotherValueOrType) {
  Value variable(L"5");
  EXPECT_EQ(S_OK, ChangeWhile([&] { variable = L"a word"; }, variable).result);
  EXPECT_EQ(Value(6), variable) << "the member works on the value that it was called with";
  double typed = 0;
  variable = L"5";
  EXPECT_EQ(S_OK,
            ChangeWhile([&] { variable = Value(ByReference(VT_R8, &typed)); }, variable).result);
  EXPECT_EQ(6.0, typed);
}

TEST_F(BinderHandlerTest, AVariableThatLeadsNowhereAnyMoreIsRefused) {
  Value variable(L"5");
  const auto loop = [&] { variable = Value(ByReference(variable)); };
  ExpectRefused(DISP_E_TYPEMISMATCH, 0, ChangeWhile(loop, variable));
  variable = L"5";
  const auto nowhere = [&] { variable = Value(ByReference(VT_R8, nullptr)); };
  ExpectRefused(DISP_E_TYPEMISMATCH, 0, ChangeWhile(nowhere, variable));
}

TEST_F(BinderHandlerTest, AVariableOfATypeThatNoneHasIsRefused) {
  LONGLONG place = 7;
  for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_RECORD, VT_SAFEARRAY}) {
    Value variable(L"5");
    const auto retype = [&] {
      variable = Value();
      variable.raw() = ByReference(static_cast<VARTYPE>(type), &place);
    };
    ExpectRefused(DISP_E_TYPEMISMATCH, 0, ChangeWhile(retype, variable));
    EXPECT_EQ(7, place) << type;
    variable.raw().vt = VT_EMPTY;
  }
  Value variable(L"5");
  constexpr VARTYPE kNoType = 100;
  const auto spoil = [&] {
    variable = Value();
    variable.raw().vt = kNoType;
  };
  ExpectRefused(DISP_E_BADVARTYPE, 0, ChangeWhile(spoil, variable));
  EXPECT_EQ(kNoType, variable.type());
  variable.raw().vt = VT_EMPTY;
}

// Wine would lose the array.
TEST_F(BinderHandlerTest, AnArrayThatIsLockedMeanwhileIsKept) {
  const Value two(L"two");
  Value script = ClientArray({L"one"}).Take();
  SAFEARRAY* const array = script.raw().parray;
  ExpectRefused(DISP_E_ARRAYISLOCKED, 1,
                CallWhile([&] { SafeArrayLock(array); }, L"RaiseAndAppend",
                          {ByReference(script), two.raw()}));
  ASSERT_EQ(VT_ARRAY | VT_VARIANT, script.type());
  EXPECT_EQ(std::vector<Value>{L"one"}, Elements(script.raw()));
  EXPECT_EQ(S_OK, SafeArrayUnlock(array));

  SAFEARRAY* numbers = SafeArrayCreateVector(VT_I4, 0, 1);
  const Value three(3);
  ExpectRefused(DISP_E_ARRAYISLOCKED, 1,
                CallWhile([&] { SafeArrayLock(numbers); }, L"RaiseAndAppend",
                          {ByReference(VT_ARRAY | VT_I4, &numbers), three.raw()}));
  EXPECT_EQ(std::vector<Value>{0}, Elements(ByReference(VT_ARRAY | VT_I4, &numbers)));
  EXPECT_EQ(S_OK, SafeArrayUnlock(numbers));
  SafeArrayDestroy(numbers);
}

TEST_F(BinderHandlerTest, AnArrayIsKeptWhereNoneCanBeMadeForIt) {
  const Value two(L"two");
  Value script = ClientArray({L"one"}).Take();
  std::optional<CreateHook> hook;
  ExpectRefused(E_OUTOFMEMORY, 1,
                CallWhile([&] { hook.emplace(MakeNone); }, L"RaiseAndAppend",
                          {ByReference(script), two.raw()}));
  hook.reset();
  EXPECT_EQ(VT_ARRAY | VT_VARIANT, script.type());
  EXPECT_EQ(std::vector<Value>{L"one"}, Elements(script.raw()));
}

}  // namespace
