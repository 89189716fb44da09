#include "monkey/round.h"

#include <wrl/client.h>

#include <iterator>

#include "Zepkit10.h"
#include "frame/shared_library_object.h"
#include "monkey/chart_limits.h"
#include "monkey/journal.h"
#include "monkey/listener.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** result);

namespace monkey {
namespace {

using Microsoft::WRL::ComPtr;

constexpr std::size_t kDeepest = 4;  // calls inside of calls
constexpr int kCallsInside = 12;     // of an outermost call
constexpr int kEventsHeard = 1000;   // in an outermost call

ComPtr<IDispatch> Create(const CLSID& clsid) {
  ComPtr<IClassFactory> factory;
  ComPtr<IDispatch> made;
  if (SUCCEEDED(DllGetClassObject(clsid, IID_PPV_ARGS(&factory)))) {
    factory->CreateInstance(nullptr, IID_PPV_ARGS(&made));
  }
  return made;
}

HWND MakeMessageWindow(WNDPROC procedure) {
  static const ATOM atom = [procedure] {
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"monkey";
    return RegisterClassW(&description);
  }();
  return CreateWindowExW(0, MAKEINTATOM(atom), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

}  // namespace

Round::Round(std::uint64_t seed, const std::vector<Class>& classes, std::vector<Target>& targets,
             const std::vector<std::size_t>& chosen, Jail& jail, Kind kind)
    : random_(static_cast<std::mt19937::result_type>(seed)),
      classes_(classes),
      targets_(targets),
      chosen_(chosen),
      jail_(jail),
      stand_ins_(random_, interfere_, kind == Kind::kWarmUp),
      population_(random_, classes,
                  [this](IDispatch* object, const Class& its_class) {
                    return ConnectTo(object, its_class);
                  }),
      window_(MakeMessageWindow(OnMessage)) {
  for (std::size_t i = 0; i < kDeepest; ++i)
    catalogues_.emplace_back(random_, population_.Arguments());
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  population_.AddStrangers(strangers_.All());
  if (seed % 2) root_ = Create(CLSID_Global);
  journal::BeginRound(seed);
  jail_.CleanUp();
}

Round::~Round() {
  population_.LetAllGo();
  root_ = nullptr;
  DestroyWindow(window_);
  zepkit10::EndApartment();
  SetErrorInfo(0, nullptr);
  jail_.CleanUp();
  if (strangers_.References() != 0) {
    journal::ReportLeak(std::to_string(strangers_.References()) +
                        " references to a client's objects");
  }
  if (Listener::Live() != 0) {
    journal::ReportLeak(std::to_string(Listener::Live()) + " sinks");
  }
}

void Round::Play(std::uint64_t calls) {
  // Now and then there is no object of a class, nor one that could make it.
  constexpr std::uint64_t kMostVain = 1000;
  for (std::uint64_t vain = 0; vain < kMostVain && journal::CallsOfRound() < calls; ++vain) {
    const std::uint64_t before = journal::CallsOfRound();
    calls_left_ = kCallsInside;
    events_left_ = kEventsHeard;
    jail_.Refill();
    CallAnything();
    population_.SeeOff();
    if (journal::CallsOfRound() > before) vain = 0;
  }
}

void Round::CallAnything() {
  if (OneIn(64)) return CallEnumerator();
  Call(targets_[chosen_[Below(chosen_.size())]]);
}

void Round::Call(Target& target) {
  if (IDispatch* object = Obtain(target.class_index)) Call(target, object);
}

IDispatch* Round::Obtain(int class_index) {
  constexpr int kAttempts = 8;
  if (IDispatch* object = population_.AnyOf(class_index)) return object;
  if (ClassAt(class_index).clsid != GUID_NULL) {
    population_.Join(Create(ClassAt(class_index).clsid).Get());
    return population_.AnyOf(class_index);
  }
  std::vector<Target*> makers;
  for (Target& each : targets_) {
    const auto& parameters = each.member->parameters;
    if (each.class_index != class_index && !parameters.empty() && parameters.back().is_result &&
        parameters.back().class_index == class_index) {
      makers.push_back(&each);
    }
  }
  for (int i = 0; i < kAttempts && !makers.empty(); ++i) {
    Target& maker = *makers[Below(makers.size())];
    IDispatch* owner = population_.AnyOf(maker.class_index);
    if (!owner && ClassAt(maker.class_index).clsid != GUID_NULL) owner = Obtain(maker.class_index);
    if (!owner && i > kAttempts / 2) owner = Obtain(maker.class_index);
    if (owner && OneIn(2)) Fill(owner, maker.class_index);
    if (owner && population_.Has(owner)) Call(maker, owner);
    if (IDispatch* object = population_.AnyOf(class_index)) return object;
    if (owner && OneIn(4)) population_.LetGo(owner);  // which may be dead
  }
  return nullptr;
}

void Round::Fill(IDispatch* owner, int class_index) {
  for (Target& each : targets_) {
    if (each.class_index == class_index && each.member->name == "Add") Call(each, owner);
  }
}

void Round::Call(Target& target, IDispatch* object) {
  if (depth_ == kDeepest) return;
  ArgumentCatalogue& catalogue = catalogues_[depth_++];
  {
    const bool by_vtable = OneIn(2);
    const journal::Running running({&ClassAt(target.class_index), target.member,
                                    by_vtable ? "vtable" : "IDispatch", &catalogue});
    ++target.called;
    const auto start = __builtin_ia32_rdtsc();
    target.through_vtable += by_vtable;
    const bool succeeded = by_vtable ? CallThroughVtable(object, target, catalogue)
                                     : CallThroughDispatch(object, target, catalogue);
    target.succeeded += succeeded;
    if (target.member->kind == INVOKE_PROPERTYPUT && population_.Has(object)) LimitChart(object);
    catalogue.Clear();
    target.time += __builtin_ia32_rdtsc() - start;
  }
  --depth_;
}

void Round::TakeNoteOf(HRESULT error, IDispatch* object, Target& target) {
  constexpr auto kDead = static_cast<HRESULT>(zepErrAwaitTerm);
  target.last_error = error;
  if (error == kDead && OneIn(4)) population_.LetGo(object);
}

void Round::Consume(VARIANT& result) {
  if ((result.vt == VT_DISPATCH || result.vt == VT_UNKNOWN) && result.punkVal) {
    population_.Join(result.punkVal);
  }
  if (FAILED(VariantClear(&result))) journal::ReportWrongOutcome("a result cannot be cleared");
}

void Round::CallEnumerator() {
  static const Class kEnumerator{"IEnumVARIANT", IID_IEnumVARIANT, {}, {}, {}, {}};
  static const Member kMembers[] = {
      {"Next", 0, 0, 0, {}}, {"Skip", 0, 0, 0, {}}, {"Reset", 0, 0, 0, {}}, {"Clone", 0, 0, 0, {}}};
  ComPtr<IEnumVARIANT> enumerator = population_.AnyEnumerator();
  if (!enumerator || depth_ == kDeepest) return Call(targets_[chosen_[Below(chosen_.size())]]);
  ArgumentCatalogue& catalogue = catalogues_[depth_++];
  {
    const unsigned which = Below(std::size(kMembers));
    const journal::Running running({&kEnumerator, &kMembers[which], "vtable", &catalogue});
    VARIANT values[4] = {};
    ULONG fetched = 0;
    ComPtr<IEnumVARIANT> clone;
    if (which == 0) {
      const ULONG wanted = Below(5);
      const HRESULT hr =
          enumerator->Next(wanted, values, wanted == 1 && OneIn(2) ? nullptr : &fetched);
      if (hr != S_OK && hr != S_FALSE) journal::ReportWrongOutcome("Next fails");
      if (fetched > wanted) journal::ReportWrongOutcome("Next fetches more than wanted");
      for (VARIANT& value : values) Consume(value);
    } else if (which == 1) {
      enumerator->Skip(OneIn(4) ? 0xFFFFFFFF : Below(4));
    } else if (which == 2) {
      enumerator->Reset();
    } else if (SUCCEEDED(enumerator->Clone(&clone))) {
      population_.Join(clone.Get());
    }
    enumerator.Reset();
  }
  --depth_;
}

}  // namespace monkey
