// A monkey at the gate for hostile input: calls every member through IDispatch with arguments at
// random. ZEPKIT10_MONKEY_SEED and ZEPKIT10_MONKEY_CALLS replay a run: calls depend on those
// before.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "com/argument_catalogue.h"
#include "com/client.h"
#include "com/probe/probe_test.h"

namespace {

using Microsoft::WRL::ComPtr;

struct Member {
  DISPID id;
  WORD kind;
  unsigned parameters;
};

/// An object to be called, and what it can be called for.
struct Target {
  ComPtr<IDispatch> object;
  std::vector<Member> members;
};

constexpr HRESULT kFailures[] = {
    DISP_E_EXCEPTION,     DISP_E_TYPEMISMATCH,   DISP_E_OVERFLOW,         DISP_E_BADVARTYPE,
    DISP_E_BADPARAMCOUNT, DISP_E_PARAMNOTFOUND,  DISP_E_PARAMNOTOPTIONAL, DISP_E_NONAMEDARGS,
    DISP_E_BADINDEX,      DISP_E_MEMBERNOTFOUND, DISP_E_ARRAYISLOCKED,    E_INVALIDARG,
};

unsigned FromEnvironment(const char* name, unsigned otherwise) {
  const char* text = std::getenv(name);
  return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

/// Where the monkey is, for the report of a crash.
unsigned seed = 0, call_number = 0;
DISPID called = 0;
LONG CALLBACK ReportCrash(EXCEPTION_POINTERS* exception) {
  const DWORD code = exception->ExceptionRecord->ExceptionCode;
  if (code == EXCEPTION_ACCESS_VIOLATION || code == EXCEPTION_STACK_OVERFLOW) {
    std::fprintf(stderr, "crash at call %u of seed %u, member %ld\n", call_number, seed, called);
    std::fflush(stderr);
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

class Monkey {
 public:
  explicit Monkey(unsigned calls) : calls_(FromEnvironment("ZEPKIT10_MONKEY_CALLS", calls)) {
    seed = FromEnvironment("ZEPKIT10_MONKEY_SEED", 20240229);
    random_.seed(seed);
    handler_ = AddVectoredExceptionHandler(1, ReportCrash);
  }
  ~Monkey() { RemoveVectoredExceptionHandler(handler_); }
  Monkey(const Monkey&) = delete;
  Monkey& operator=(const Monkey&) = delete;

  /// Calls members of the targets. They are made anew now and then, because some calls end them.
  template <class MakeTargets>
  void Run(MakeTargets make_targets) {
    constexpr unsigned kCallsBetween = 5000;
    for (call_number = 0; call_number < calls_ && !testing::Test::HasFailure();) {
      const std::vector<Target> targets = make_targets();
      std::vector<IDispatch*> objects;
      for (const Target& target : targets) objects.push_back(target.object.Get());
      const unsigned end = std::min(calls_, call_number + kCallsBetween);
      for (; call_number < end && !testing::Test::HasFailure(); ++call_number) {
        const Target& target = targets[random_() % targets.size()];
        Call(target, target.members[random_() % target.members.size()], objects);
      }
    }
    EXPECT_GT(succeeded_, calls_ / 50) << "hardly any call gets through";
  }

 private:
  void Call(const Target& target, const Member& member, const std::vector<IDispatch*>& objects) {
    ArgumentCatalogue catalogue(random_, objects);
    std::vector<VARIANT> arguments(member.parameters);
    if (random_() % 8 == 0) arguments.resize(random_() % 5);
    std::vector<std::uint64_t> before;
    for (VARIANT& argument : arguments) {
      argument = catalogue.Any();
      before.push_back(ArgumentCatalogue::Fingerprint(argument));
    }
    const bool assigns = member.kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
    std::vector<DISPID> named;
    if (assigns && random_() % 16) named.push_back(DISPID_PROPERTYPUT);
    while (random_() % 8 == 0) named.push_back(static_cast<DISPID>(random_() % 5) - 1);
    if (named.size() > arguments.size()) named.resize(arguments.size());
    DISPPARAMS parameters{arguments.data(), named.data(), static_cast<UINT>(arguments.size()),
                          static_cast<UINT>(named.size())};
    Invoke(target, member, Flags(member), parameters);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      EXPECT_EQ(before[i], ArgumentCatalogue::Fingerprint(arguments[i]))
          << Where(member) << ", argument " << i;
    }
  }

  WORD Flags(const Member& member) {
    if (random_() % 16 == 0) return static_cast<WORD>(random_() % 16);
    if (member.kind & (DISPATCH_METHOD | DISPATCH_PROPERTYGET))
      return DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    return member.kind;
  }

  void Invoke(const Target& target, const Member& member, WORD flags, DISPPARAMS& parameters) {
    constexpr LCID kLocales[] = {LOCALE_USER_DEFAULT, LOCALE_NEUTRAL, 1031, 1033, 0xFFFF};
    VARIANT result;
    result.vt = VT_I4;  // left over from an earlier call
    EXCEPINFO exception{};
    UINT position = 0;
    called = member.id;
    const bool wanted = random_() % 4, explained = random_() % 4;
    const HRESULT hr =
        target.object->Invoke(member.id, IID_NULL, kLocales[random_() % std::size(kLocales)], flags,
                              &parameters, wanted ? &result : nullptr,
                              explained ? &exception : nullptr, explained ? &position : nullptr);
    if (SUCCEEDED(hr)) ++succeeded_;
    EXPECT_TRUE(hr == S_OK || std::count(std::begin(kFailures), std::end(kFailures), hr))
        << Where(member) << " returns " << std::hex << hr;
    if (wanted) {
      EXPECT_TRUE(SUCCEEDED(hr) || result.vt == VT_EMPTY) << Where(member);
      EXPECT_EQ(S_OK, VariantClear(&result)) << Where(member);
    }
    if (hr == DISP_E_EXCEPTION && explained) {
      EXPECT_NE(0, exception.scode) << Where(member);
      EXPECT_NE(0u, SysStringLen(exception.bstrSource)) << Where(member);
      EXPECT_NE(0u, SysStringLen(exception.bstrDescription)) << Where(member);
    }
    EXPECT_TRUE(SUCCEEDED(hr) || position == 0 || position < parameters.cArgs) << Where(member);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
  }

  static std::string Where(const Member& member) {
    return "seed " + std::to_string(seed) + ", call " + std::to_string(call_number) + ", member " +
           std::to_string(member.id);
  }

  const unsigned calls_;
  unsigned succeeded_ = 0;
  std::mt19937 random_;
  void* handler_;
};

std::vector<Member> MembersOf(const zepkit10::ClassDescription& described) {
  std::vector<Member> members;
  for (const auto& member : described.members) {
    members.push_back({member.id, member.kind, static_cast<unsigned>(member.parameters.size())});
  }
  return members;
}

class BinderMonkeyTest : public probe::LeakTest {};

TEST_F(BinderMonkeyTest, ProbesWithstandAnything) {
  std::vector<zepkit10::Ref<zepkit10::Probe>> probes;
  const auto let_go = [&probes] {  // of what probes hold of each other
    for (const auto& probe : probes) {
      probe->SetCompanion(nullptr);
      probe->SetHeld(VARIANT{});
    }
    probes.clear();
  };
  Monkey(200000).Run([&] {
    let_go();
    std::vector<Target> targets;
    for (int i = 0; i < 2; ++i) {
      probes.push_back(zepkit10::Make<zepkit10::Probe>());
      targets.push_back({probes.back()->Abi(), MembersOf(zepkit10::kProbeClass)});
    }
    const auto list = probes[0]->List();
    for (int i = 1; i <= 2; ++i) probes.push_back(list->Item(client::Value(i).raw()));
    targets.push_back({list->Abi(), MembersOf(zepkit10::kProbeListClass)});
    return targets;
  });
  let_go();
}

}  // namespace
