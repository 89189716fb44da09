#include "com/probe/probe_object.h"

#include <new>
#include <stdexcept>

#include "vars/collection_object.h"

namespace zepkit10 {
namespace {

void Check(HRESULT hr) {
  if (FAILED(hr)) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrArrayFixedOrLocked);
}

ULONG LengthOf(const SAFEARRAY* array) { return array ? array->rgsabound[0].cElements : 0; }

Array CopyOf(SAFEARRAY* array) {
  SAFEARRAY* copy = nullptr;
  if (array) Check(SafeArrayCopy(array, &copy));
  return {copy};
}

/// Makes room for one more element and returns its index.
LONG Grow(SAFEARRAY** array, VARTYPE type) {
  if (!*array) {
    SAFEARRAYBOUND bound{1, 0};
    *array = SafeArrayCreate(type, 1, &bound);
    return 0;
  }
  SAFEARRAYBOUND bound = (*array)->rgsabound[0];
  ++bound.cElements;
  Check(SafeArrayRedim(*array, &bound));
  return bound.lLbound + static_cast<LONG>(bound.cElements) - 1;
}

/// Replaces what a client's variable holds, but no array that someone has locked.
void Assign(VARIANT* to, Variant value) {
  // Looked at first: Wine's VariantClear loses a locked array.
  const bool locked =
      (to->vt & VT_ARRAY) && !(to->vt & VT_BYREF) && to->parray && to->parray->cLocks > 0;
  Check(locked ? DISP_E_ARRAYISLOCKED : VariantClear(to));
  *to = value.Detach();
}

std::u16string TextOrType(const VARIANT& value) {
  if (IsMissing(&value)) return u"missing";
  return ConvertToText(value).value_or(u"?");
}

void Append(std::u16string& line, std::u16string_view part) { line.append(u"|").append(part); }

std::u16string_view Digits(std::wstring_view digits) { return ViewOf(digits); }

}  // namespace

Variant Probe::EchoValue(const VARIANT& given) {
  Variant copy;
  const HRESULT hr = VariantCopyInd(copy.Out(), const_cast<VARIANT*>(&given));
  if (hr == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(hr)) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  return copy;
}

Ref<Probe> Probe::EchoProbe(::_Probe* given) {
  Probe* own = From(given);
  if (given && !own) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  return Ref<Probe>(own);
}

Array Probe::EchoLongs(SAFEARRAY* given) { return CopyOf(given); }

void Probe::ChangeText(BSTR* changed) {
  BSTR longer = MakeBstr(std::u16string(ViewOf(*changed)) + u"!");
  SysFreeString(*changed);
  *changed = longer;
}

void Probe::ChangeKind(ProbeKind* changed) {
  *changed = *changed == ProbeKind::probeKindFirst ? ProbeKind::probeKindSecond
                                                   : ProbeKind::probeKindFirst;
}

void Probe::ChangeValue(VARIANT* changed) { Assign(changed, Variant(u"changed")); }

void Probe::ChangeProbe(::_Probe** changed) {
  if (*changed) (*changed)->Release();
  *changed = Abi();
  (*changed)->AddRef();
}

void Probe::ChangeDispatch(IDispatch** changed) {
  if (*changed) (*changed)->Release();
  *changed = Abi();
  (*changed)->AddRef();
}

void Probe::ChangeUnknown(IUnknown** changed) {
  if (*changed) (*changed)->Release();
  *changed = Abi();
  (*changed)->AddRef();
}

std::int32_t Probe::AppendText(SAFEARRAY** texts, std::u16string_view added) {
  BSTR text = MakeBstr(added);
  LONG index = Grow(texts, VT_BSTR);
  const HRESULT hr = SafeArrayPutElement(*texts, &index, text);
  SysFreeString(text);
  Check(hr);
  return static_cast<std::int32_t>(LengthOf(*texts));
}

void Probe::AppendByte(SAFEARRAY** bytes, std::uint8_t added) {
  LONG index = Grow(bytes, VT_UI1);
  Check(SafeArrayPutElement(*bytes, &index, &added));
}

void Probe::AppendValue(SAFEARRAY** values, const VARIANT& added) {
  LONG index = Grow(values, VT_VARIANT);
  Check(SafeArrayPutElement(*values, &index, const_cast<VARIANT*>(&added)));
}

std::int32_t Probe::ReadBytes(SAFEARRAY** bytes) {
  std::int32_t sum = 0;
  for (ULONG i = 0; i < LengthOf(*bytes); ++i) sum += static_cast<const BYTE*>((*bytes)->pvData)[i];
  return sum;
}

std::u16string Probe::Defaults(std::int32_t number, std::u16string_view text, bool flag,
                               ProbeKind kind, const VARIANT& step, const VARIANT& anything) {
  std::u16string line(Digits(std::to_wstring(number)));
  Append(line, text);
  Append(line, flag ? u"true" : u"false");
  Append(line, Digits(std::to_wstring(static_cast<std::int32_t>(kind))));
  Append(line, TextOrType(step));
  Append(line, TextOrType(anything));
  return line;
}

std::int32_t Probe::Find(std::u16string_view text, VARIANT* where, VARIANT_BOOL* found) {
  if (IsMissing(where)) return 0;
  Assign(where, Variant(text));
  if (found) *found = VARIANT_TRUE;
  return 1;
}

double Probe::Divide(double numerator, double denominator) {
  if (denominator == 0) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrDivisionByZero);
  return numerator / denominator;
}

std::int32_t Probe::Count(SAFEARRAY** items) { return static_cast<std::int32_t>(LengthOf(*items)); }

void Probe::Fill(std::u16string_view text, SAFEARRAY** items) {
  for (ULONG i = 0; i < LengthOf(*items); ++i) {
    VARIANT& item = static_cast<VARIANT*>((*items)->pvData)[i];
    if (item.vt != (VT_BYREF | VT_VARIANT) || !item.pvarVal) continue;
    Assign(item.pvarVal, Variant(text));
  }
}

std::u16string Probe::Entry(std::u16string_view file, std::u16string_view section,
                            std::u16string_view key) {
  std::u16string line(file);
  Append(line, section);
  Append(line, key);
  Append(line, entry_);
  return line;
}

void Probe::SetEntry(std::u16string_view file, std::u16string_view section, std::u16string_view key,
                     std::u16string_view entry) {
  entry_.assign(file);
  Append(entry_, section);
  Append(entry_, key);
  Append(entry_, entry);
}

Ref<ProbeList> Probe::List() {
  if (!list_) list_ = Make<ProbeList>();
  return list_;
}

Array Probe::Numbers() { return {ToAbi(std::array<std::int32_t, 3>{10, 20, 30})}; }

Array Probe::Grid() {
  SAFEARRAYBOUND bounds[] = {{3, 0}, {2, 5}};
  SAFEARRAY* grid = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (!grid) throw std::bad_alloc();
  for (LONG column = 0; column <= 2; ++column) {
    for (LONG row = 5; row <= 6; ++row) {
      LONG indexes[] = {column, row};
      Variant element(std::int32_t{10 * column + row});
      SafeArrayPutElement(grid, indexes, element.Out());
    }
  }
  return {grid};
}

Array Probe::Texts() {
  SAFEARRAY* texts = nullptr;
  AppendText(&texts, u"one");
  AppendText(&texts, u"two");
  return {texts};
}

Array Probe::Bytes() { return CopyOf(bytes_.get().vt == VT_EMPTY ? nullptr : bytes_.get().parray); }

void Probe::SetBytes(SAFEARRAY* bytes) {
  Variant kept;
  kept.Out()->parray = CopyOf(bytes).array;
  kept.Out()->vt = VT_ARRAY | VT_UI1;
  bytes_ = std::move(kept);
}

std::u16string Probe::Fail(std::int32_t how) {
  switch (static_cast<ProbeFailure>(how)) {
    case ProbeFailure::kOwnError:
      throw Failure{static_cast<std::int32_t>(ZepErrors::zepErrBadParam), u"Somewhere.Else",
                    u"on purpose"};
    case ProbeFailure::kRuntimeError:
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
    case ProbeFailure::kBadAlloc:
      throw std::bad_alloc();
    case ProbeFailure::kLengthError:
      throw std::length_error("too long");
    case ProbeFailure::kForeignException:
      throw std::runtime_error("foreign");
    case ProbeFailure::kNumber:
      throw 5;
    default:
      return u"no failure";
  }
}

void Probe::FailAfterChange(BSTR* changed) {
  ChangeText(changed);
  RaiseRuntimeError(ZepVbErrors3To98::zepVbErrBadCall);
}

bool Probe::RaiseBefore(bool new_value) {
  bool cancel = false;
  events_.Before(new_value, cancel);
  return cancel;
}

void Probe::RaiseScalars(IDispatch* other) {
  events_.Scalars(-7, 0.5f, ProbeKind::probeKindSecond, Abi(), other);
}

Ref<Probe> ProbeList::Item(const VARIANT& index) {
  const auto position = IntegerOf(index);
  if (position == 1) return first_;
  if (position == 2) return second_;
  RaiseRuntimeError(ZepVbErrors3To98::zepVbErrSubscriptOutOfRange);
}

Microsoft::WRL::ComPtr<IUnknown> ProbeList::NewEnum() {
  auto items = std::make_shared<std::vector<Variant>>();
  items->emplace_back(first_->Abi());
  items->emplace_back(second_->Abi());
  return Enumerator<VariantEnumeratorTraits>::Create(std::move(items));
}

Ref<Probe> ProbeList::MakeProbe(std::int32_t value) {
  const auto probe = Make<Probe>();
  probe->SetValue(value);
  return probe;
}

}  // namespace zepkit10
