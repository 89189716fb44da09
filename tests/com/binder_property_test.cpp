// Properties, default members and the codes with which late binding refuses.
#include "com/probe/probe_test.h"

namespace {

using client::Value;
using Microsoft::WRL::ComPtr;
using probe::ByReference;
using probe::ClientArray;
using probe::Elements;
using probe::Ended;
using probe::Invoke;
using probe::InvokeId;
using zepkit10::ProbeFailure;

class BinderPropertyTest : public probe::ProbeTest {
 protected:
  Ended Put(DISPID id, std::vector<VARIANT> reversed, WORD flags, UINT named = 1) {
    DISPID assigned = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), &assigned, static_cast<UINT>(reversed.size()), named};
    return InvokeId(object(), id, flags, &parameters);
  }
};

TEST_F(BinderPropertyTest, PropertiesWithParametersAreReadAndWritten) {
  const Value file(L"f"), section(L"s"), key(L"k"), entry(L"new");
  EXPECT_EQ(S_OK, Let(L"Entry", {file.raw(), section.raw(), key.raw(), entry.raw()}).result);
  EXPECT_EQ(Value(L"f|s|k|f|s|k|new"),
            Call(L"Entry", {file.raw(), section.raw(), key.raw()}).value);
  EXPECT_EQ(Value(L"k|s|f|f|s|k|new"), Call(L"Entry", {file.raw(), section.raw(), key.raw()},
                                            {L"Key", L"Section", L"FileName"})
                                           .value);
  EXPECT_EQ(S_OK, Invoke(object(), L"Entry", {key.raw(), section.raw(), file.raw(), entry.raw()},
                         DISPATCH_PROPERTYPUT, {L"Key", L"Section"})
                      .result);
  EXPECT_EQ(Value(L"f|s|k|k|f|s|new"),
            Call(L"Entry", {file.raw(), section.raw(), key.raw()}).value);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Let(L"Entry", {file.raw(), entry.raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT,
            Let(L"Entry", {file.raw(), section.raw(), key.raw(), key.raw(), entry.raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Entry", {file.raw()}).result);
}

TEST_F(BinderPropertyTest, TheValueNeedNotBeNamed) {
  const Value seven(7);
  EXPECT_EQ(S_OK, Put(DISPID_VALUE, {seven.raw()}, DISPATCH_PROPERTYPUT, 0).result);
  EXPECT_EQ(seven, Call(L"Value").value);
}

TEST_F(BinderPropertyTest, PropertiesHaveReadersAndWritersOfTheirOwn) {
  const Value one(1);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(object(), L"Value", {}, DISPATCH_METHOD).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(object(), L"Nothing", {}, DISPATCH_PROPERTYGET).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(object(), L"Nothing", {}, 0).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Let(L"Numbers", {one.raw()}).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Let(L"Nothing", {one.raw()}).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Set(L"Value", {one.raw()}).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Set(L"List", {Value(object()).raw()}).result);
}

TEST_F(BinderPropertyTest, ObjectsAreAssignedWithAndWithoutSet) {
  const auto other = zepkit10::Make<zepkit10::Probe>();
  const Value assigned(static_cast<IDispatch*>(other->Abi())), nothing = Value::Nothing();
  for (const WORD flags : {DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT,
                           DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF}) {
    EXPECT_EQ(S_OK, Put(73, {assigned.raw()}, static_cast<WORD>(flags)).result);
    EXPECT_EQ(assigned, Call(L"Companion").value);
    EXPECT_EQ(S_OK, Put(73, {nothing.raw()}, static_cast<WORD>(flags)).result);
    EXPECT_EQ(nothing, Call(L"Companion").value);
    EXPECT_EQ(S_OK, Put(72, {assigned.raw()}, static_cast<WORD>(flags)).result);
    EXPECT_EQ(assigned, Call(L"Held").value);
  }
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Set(L"Companion", {Value(5).raw()}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Set(L"Companion", {Call(L"List").value.raw()}).result);
  EXPECT_EQ(S_OK, Let(L"Held", {Value(5).raw()}).result);
  EXPECT_EQ(Value(5), Call(L"Held").value);
}

// object.Companion = 5 where only Set is there: the companion's default member takes it.
TEST_F(BinderPropertyTest, AValueForAnObjectGoesToItsDefaultMember) {
  const auto other = zepkit10::Make<zepkit10::Probe>();
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Let(L"Companion", {Value(5).raw()}).result)
      << "there is no companion";
  EXPECT_EQ(S_OK, Set(L"Companion", {Value(static_cast<IDispatch*>(other->Abi())).raw()}).result);
  EXPECT_EQ(S_OK, Let(L"Companion", {Value(5).raw()}).result);
  EXPECT_EQ(5, other->Value());
  EXPECT_EQ(S_OK, Put(73, {Value(6).raw()}, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF).result);
  EXPECT_EQ(6, other->Value());
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Let(L"Companion", {Value(L"word").raw()}).result);
}

TEST_F(BinderPropertyTest, ArgumentsOfAPropertyWithoutParametersGoToWhatItHolds) {
  const Value first = Call(L"List", {Value(1).raw()}).value;
  ASSERT_EQ(VT_DISPATCH, first.type());
  EXPECT_EQ(Value(10), Invoke(first.raw().pdispVal, L"Value").value);
  EXPECT_EQ(DISP_E_EXCEPTION, Call(L"List", {Value(3).raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"List", {Value(1).raw(), Value(1).raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Companion", {Value(1).raw()}).result)
      << "there is no companion";
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Value", {Value(1).raw()}).result);
}

// object.List(2) = 5, through the list's default member to that of the item.
TEST_F(BinderPropertyTest, AssignmentsGoThroughSeveralDefaultMembers) {
  const Ended ended = Let(L"List", {Value(2).raw(), Value(5).raw()});
  EXPECT_EQ(S_OK, ended.result);
  EXPECT_EQ(Value(5), Invoke(Call(L"List", {Value(2).raw()}).value.raw().pdispVal, L"Value").value);
  EXPECT_EQ(DISP_E_EXCEPTION, Let(L"List", {Value(3).raw(), Value(5).raw()}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Let(L"List", {Value(2).raw(), Value(L"word").raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Let(L"List", {Value(5).raw()}).result);
}

TEST_F(BinderPropertyTest, ArrayValuedPropertiesAreIndexed) {
  Value two(2), text(L"1"), inner(ByReference(two));
  EXPECT_EQ(Value(20), Call(L"Numbers", {two.raw()}).value);
  EXPECT_EQ(Value(20), Call(L"Numbers", {ByReference(two)}).value);
  EXPECT_EQ(Value(20), Call(L"Numbers", {ByReference(inner)}).value);
  EXPECT_EQ(Value(10), Call(L"Numbers", {text.raw()}).value);
  EXPECT_EQ(Value(L"two"), Call(L"Texts", {text.raw()}).value);
  EXPECT_EQ(DISP_E_BADINDEX, Call(L"Numbers", {Value(0).raw()}).result);
  EXPECT_EQ(DISP_E_BADINDEX, Call(L"Numbers", {Value(4).raw()}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"Numbers", {Value(L"word").raw()}).result);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"Numbers", {ByReference(VT_VARIANT, nullptr)}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Numbers", {two.raw(), two.raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Bytes", {two.raw()}).result) << "no array at all";
}

TEST_F(BinderPropertyTest, IndexesComeInTheOrderOfTheDimensions) {
  for (int column = 0; column <= 2; ++column) {
    for (int row = 5; row <= 6; ++row) {
      EXPECT_EQ(Value(10 * column + row),
                Call(L"Grid", {Value(column).raw(), Value(row).raw()}).value);
    }
  }
  EXPECT_EQ(DISP_E_BADINDEX, Call(L"Grid", {Value(5).raw(), Value(0).raw()}).result);
}

TEST_F(BinderPropertyTest, WhatAVariantHoldsIsIndexedToo) {
  ClientArray array({L"zero", L"one"});
  EXPECT_EQ(S_OK, Let(L"Held", {array.Raw()}).result);
  EXPECT_EQ(Value(L"one"), Call(L"Held", {Value(1).raw()}).value);
  EXPECT_EQ(S_OK, Set(L"Held", {Call(L"List").value.raw()}).result);
  EXPECT_EQ(VT_DISPATCH, Call(L"Held", {Value(1).raw()}).value.type());
  EXPECT_EQ(S_OK, Let(L"Held", {Value(5).raw()}).result);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(L"Held", {Value(1).raw()}).result);
}

TEST_F(BinderPropertyTest, AnAssignmentNamesItsValue) {
  Value five(5);
  DISPPARAMS unnamed{&five.raw(), nullptr, 1, 1};
  EXPECT_EQ(E_INVALIDARG, InvokeId(object(), DISPID_VALUE, DISPATCH_PROPERTYPUT, &unnamed).result);
  EXPECT_EQ(Value(0), Call(L"Value").value);
}

TEST_F(BinderPropertyTest, ArraysAreAssigned) {
  ClientArray script({1, L"2"});
  EXPECT_EQ(S_OK, Let(L"Bytes", {script.Raw()}).result);
  const Value bytes = Call(L"Bytes").value;
  EXPECT_EQ(VT_ARRAY | VT_UI1, bytes.type());
  EXPECT_EQ(2u, Elements(bytes.raw()).size());
}

TEST_F(BinderPropertyTest, DefaultMemberAndEnumeratorHaveTheirFixedIds) {
  DISPPARAMS none{};
  EXPECT_EQ(Value(0), InvokeId(object(), DISPID_VALUE, probe::kCall, &none).value);
  const Value list = Call(L"List").value;
  const Ended ended = InvokeId(list.raw().pdispVal, DISPID_NEWENUM, probe::kCall, &none);
  ASSERT_EQ(VT_UNKNOWN, ended.value.type());
  ComPtr<IEnumVARIANT> enumerator;
  EXPECT_EQ(S_OK, ended.value.raw().punkVal->QueryInterface(IID_PPV_ARGS(&enumerator)));
}

TEST_F(BinderPropertyTest, AnEnumeratorIsGivenHoweverItIsAskedFor) {
  const Value list = Call(L"List").value;
  for (const WORD flags :
       {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_METHOD | DISPATCH_PROPERTYGET}) {
    DISPPARAMS none{};
    const Ended ended = InvokeId(list.raw().pdispVal, DISPID_NEWENUM, flags, &none);
    EXPECT_EQ(S_OK, ended.result) << flags;
    EXPECT_EQ(VT_UNKNOWN, ended.value.type());
  }
  DISPPARAMS none{};
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, InvokeId(list.raw().pdispVal, DISPID_NEWENUM, 0, &none).result);
}

TEST_F(BinderPropertyTest, NamesAreFoundWhateverTheirCase) {
  wchar_t member[] = L"dIVIDE", second[] = L"DENOMINATOR", unknown[] = L"Divisor";
  wchar_t* names[] = {member, second, unknown, nullptr};
  DISPID ids[4] = {};
  const auto find = [&](UINT count) {
    return object()->GetIDsOfNames(IID_NULL, names, count, LOCALE_USER_DEFAULT, ids);
  };
  EXPECT_EQ(S_OK, find(2));
  EXPECT_EQ(53, ids[0]);
  EXPECT_EQ(1, ids[1]);
  EXPECT_EQ(DISP_E_UNKNOWNNAME, find(4));
  EXPECT_EQ(53, ids[0]);
  EXPECT_EQ(1, ids[1]);
  EXPECT_EQ(DISPID_UNKNOWN, ids[2]);
  EXPECT_EQ(DISPID_UNKNOWN, ids[3]);
  names[0] = nullptr;
  EXPECT_EQ(DISP_E_UNKNOWNNAME, find(2));
  EXPECT_EQ(E_INVALIDARG, find(0));
  EXPECT_EQ(E_INVALIDARG, object()->GetIDsOfNames(IID_NULL, nullptr, 1, 0, ids));
  EXPECT_EQ(E_INVALIDARG, object()->GetIDsOfNames(IID_NULL, names, 1, 0, nullptr));
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, object()->GetIDsOfNames(IID_IDispatch, names, 1, 0, ids));
}

TEST_F(BinderPropertyTest, MalformedCallsAreRefused) {
  VARIANT argument = Value(1).raw();
  DISPID named = 0;
  DISPPARAMS none{}, no_arguments{nullptr, nullptr, 1, 0}, no_names{&argument, nullptr, 1, 1},
      more_names{&argument, &named, 0, 1};
  for (DISPPARAMS* parameters :
       {static_cast<DISPPARAMS*>(nullptr), &no_arguments, &no_names, &more_names}) {
    EXPECT_EQ(E_INVALIDARG, InvokeId(object(), 1, probe::kCall, parameters).result);
  }
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, InvokeId(object(), 4711, probe::kCall, &none).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, InvokeId(object(), DISPID_UNKNOWN, probe::kCall, &none).result);
  Value result(L"old");
  VARIANT stale;
  stale.vt = VT_I4;
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, object()->Invoke(54, IID_IDispatch, 0, DISPATCH_METHOD, &none,
                                                      &stale, nullptr, nullptr));
  EXPECT_EQ(VT_EMPTY, stale.vt);
}

TEST_F(BinderPropertyTest, ResultErrorAndPositionAreOptional) {
  Value one(1), word(L"word"), how(static_cast<int>(ProbeFailure::kOwnError)),
      none(static_cast<int>(ProbeFailure::kNone));
  struct {
    DISPID id;
    Value* argument;
    HRESULT expected;
  } const calls[] = {{1, &one, S_OK},   {8, &word, S_OK},
                     {10, &word, S_OK}, {1, &word, DISP_E_TYPEMISMATCH},
                     {81, &none, S_OK}, {81, &how, DISP_E_EXCEPTION}};
  for (const auto& [id, argument, expected] : calls) {
    DISPPARAMS parameters{&argument->raw(), nullptr, 1, 0};
    EXPECT_EQ(expected, object()->Invoke(id, IID_NULL, 0, probe::kCall, &parameters, nullptr,
                                         nullptr, nullptr))
        << id;
  }
  DISPPARAMS empty{};
  for (const DISPID id : {0, 74, 75, 76, 77}) {
    EXPECT_EQ(S_OK,
              object()->Invoke(id, IID_NULL, 0, probe::kCall, &empty, nullptr, nullptr, nullptr))
        << id;
  }
  DISPPARAMS index{&one.raw(), nullptr, 1, 0};
  for (const DISPID id : {74, 75, 77}) {
    EXPECT_EQ(S_OK,
              object()->Invoke(id, IID_NULL, 0, probe::kCall, &index, nullptr, nullptr, nullptr))
        << id;
  }
}

TEST_F(BinderPropertyTest, FailuresOfMembersAreExceptions) {
  struct {
    ProbeFailure how;
    long number;
    const wchar_t* source;
  } const failures[] = {
      {ProbeFailure::kOwnError, -2147220479, L"Somewhere.Else"},
      {ProbeFailure::kRuntimeError, static_cast<long>(0x800A0006), L"Zepkit10.Probe"},
      {ProbeFailure::kBadAlloc, static_cast<long>(0x800A0007), L"Zepkit10.Probe"},
      {ProbeFailure::kLengthError, static_cast<long>(0x800A0007), L"Zepkit10.Probe"},
      {ProbeFailure::kForeignException, -2147220477, L"Zepkit10.Probe"},
      {ProbeFailure::kNumber, -2147220477, L"Zepkit10.Probe"},
  };
  for (const auto& [how, number, source] : failures) {
    const Ended ended = Call(L"Fail", {Value(static_cast<int>(how)).raw()});
    EXPECT_EQ(DISP_E_EXCEPTION, ended.result);
    EXPECT_EQ(number, ended.number);
    EXPECT_EQ(source, ended.source);
    EXPECT_NE(L"", ended.description);
    EXPECT_EQ(Value(), ended.value);
    EXPECT_EQ(Ended::kNoPosition, ended.position);
    EXPECT_FALSE(probe::HasErrorInfo()) << "it went into the EXCEPINFO";
  }
  EXPECT_EQ(L"on purpose",
            Call(L"Fail", {Value(static_cast<int>(ProbeFailure::kOwnError)).raw()}).description);
}

TEST_F(BinderPropertyTest, RefusalsLeaveNoStaleErrorBehind) {
  BSTR result = nullptr;
  const auto fail = [&] {
    EXPECT_TRUE(FAILED(vtable()->Fail(static_cast<int>(ProbeFailure::kOwnError), &result)));
  };
  fail();
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(L"EchoLong", {Value(L"word").raw()}).result);
  EXPECT_FALSE(probe::HasErrorInfo());
  fail();
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(object(), L"Nothing", {}, DISPATCH_PROPERTYGET).result);
  EXPECT_FALSE(probe::HasErrorInfo());
}

}  // namespace
