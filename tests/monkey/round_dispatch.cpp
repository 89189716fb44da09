// Calls through IDispatch.
#include <algorithm>
#include <iterator>

#include "monkey/round.h"

namespace monkey {

VARIANT& Round::VariableFor(const Parameter& parameter, ArgumentCatalogue& catalogue) {
  if (parameter.is_array) return catalogue.Array(parameter.type);
  switch (parameter.type) {
    case VT_VARIANT:
      if (parameter.is_optional && OneIn(2)) return catalogue.Omitted();
      return catalogue.Variable();
    case VT_BSTR:
      return catalogue.Text();
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return catalogue.Hold(VT_DISPATCH, ObjectFor(parameter));
    default:
      return catalogue.Number(parameter.type);
  }
}

IDispatch* Round::ObjectFor(const Parameter& parameter) {
  if (parameter.class_index != kNoClass && !OneIn(4)) {
    if (IDispatch* object = population_.AnyOf(parameter.class_index)) return object;
  }
  if (parameter.is_platforms && population_.Guest() && !OneIn(4)) return population_.Guest();
  if (OneIn(8)) return nullptr;
  if (OneIn(2)) return strangers_.All()[Below(strangers_.All().size())];
  return population_.Arguments()[Below(population_.Arguments().size())];
}

VARIANT Round::ArgumentFor(const Parameter& parameter, ArgumentCatalogue& catalogue) {
  if (OneIn(parameter.is_optional ? 8 : 4)) return catalogue.Any();
  VARIANT& variable = VariableFor(parameter, catalogue);
  const bool by_reference = OneIn(parameter.by_reference ? 2 : 6);
  return by_reference ? catalogue.ReferenceTo(variable) : variable;
}

std::vector<VARIANT> Round::DispatchArguments(const Member& member, ArgumentCatalogue& catalogue) {
  std::vector<Parameter> parameters = member.parameters;
  std::erase_if(parameters, [](const Parameter& each) { return each.is_result; });
  if (member.takes_more) {
    const Parameter more{VT_VARIANT};
    parameters.back() = more;
    parameters.resize(parameters.size() - 1 + Below(5), more);
  }
  if (OneIn(8)) parameters.resize(Below(6), Parameter{VT_VARIANT});
  std::vector<VARIANT> arguments(parameters.size());
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    arguments[parameters.size() - 1 - i] = ArgumentFor(parameters[i], catalogue);
  }
  return arguments;
}

std::vector<DISPID> Round::NamesOfArguments(const Member& member, std::size_t arguments) {
  std::vector<DISPID> names;
  const bool assigns = member.kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
  if (assigns && !OneIn(16)) names.push_back(DISPID_PROPERTYPUT);
  while (OneIn(12)) names.push_back(static_cast<DISPID>(Below(5)) - 1);
  if (names.size() > arguments) names.resize(arguments);
  return names;
}

WORD Round::DispatchFlags(const Member& member) {
  if (OneIn(16)) return static_cast<WORD>(Below(16));
  if (member.kind & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) {
    return DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  }
  return member.kind;
}

bool Round::CallThroughDispatch(IDispatch* object, Target& target, ArgumentCatalogue& catalogue) {
  constexpr LCID kLocales[] = {LOCALE_USER_DEFAULT, LOCALE_NEUTRAL, 1031, 1033, 0xFFFF};
  std::vector<VARIANT> arguments = DispatchArguments(*target.member, catalogue);
  std::vector<DISPID> names = NamesOfArguments(*target.member, arguments.size());
  Unchanged by_value;
  for (const VARIANT& argument : arguments) by_value.Watch(argument);
  DISPPARAMS parameters{arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                        static_cast<UINT>(names.size())};
  VARIANT result;
  result.vt = VT_I4;  // left over from an earlier call
  EXCEPINFO exception{};
  UINT position = 0;
  const WORD flags = DispatchFlags(*target.member);
  const LCID locale = kLocales[Below(std::size(kLocales))];
  const bool wanted = !OneIn(8), explained = !OneIn(8);
  SetErrorInfo(0, nullptr);
  HRESULT hr = S_OK;
  {
    const Inside inside(*this, object);
    hr = object->Invoke(target.member->id, IID_NULL, locale, flags, &parameters,
                        wanted ? &result : nullptr, explained ? &exception : nullptr,
                        explained ? &position : nullptr);
  }
  // A call that was meant for a stranger brings what the stranger filled in.
  if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
  if (exception.scode == 0 && exception.wCode != 0) exception.scode = kStrangersError;
  CheckDispatchOutcome(hr, explained ? &exception : nullptr, position, parameters.cArgs,
                       wanted ? &result : nullptr);
  by_value.Check();
  if (FAILED(hr)) TakeNoteOf(hr == DISP_E_EXCEPTION ? exception.scode : hr, object, target);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  if (wanted && SUCCEEDED(hr)) Consume(result);
  return SUCCEEDED(hr);
}

}  // namespace monkey
