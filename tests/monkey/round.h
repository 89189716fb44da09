#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "com/argument_catalogue.h"
#include "monkey/chart_limits.h"
#include "monkey/jail.h"
#include "monkey/outcome.h"
#include "monkey/population.h"
#include "monkey/stand_ins.h"
#include "monkey/strangers.h"
#include "monkey/type_library.h"

namespace monkey {

/// A member that the monkey calls, and what became of its calls.
struct Target {
  int class_index;
  const Member* member;
  unsigned long long called = 0, succeeded = 0, through_vtable = 0;
  HRESULT last_error = S_OK;
  unsigned long long time = 0;  // in ticks of the processor, calls inside of its calls included
};

/// A number of calls that depend on their seed alone. It begins and ends with no object.
class Round {
 public:
  /// A warm-up makes all of the windows that other rounds make some of.
  enum class Kind { kWarmUp, kCounted };

  /// `chosen` are the positions of the targets to be called; the others only make objects.
  Round(std::uint64_t seed, const std::vector<Class>& classes, std::vector<Target>& targets,
        const std::vector<std::size_t>& chosen, Jail& jail, Kind kind);
  ~Round();
  Round(const Round&) = delete;
  Round& operator=(const Round&) = delete;

  void Play(std::uint64_t calls);

 private:
  /// From the entry of a call of a member to its return: the component keeps the object alive.
  class Inside {
   public:
    Inside(Round& round, IDispatch* object)
        : round_(round), before_(std::exchange(round.inside_, true)), limit_(object) {}
    ~Inside() { round_.inside_ = before_; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

   private:
    Round& round_;
    const bool before_;
    const DrawingLimit limit_;
  };

  unsigned Below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  bool OneIn(unsigned chances) { return Below(chances) == 0; }
  const Class& ClassAt(int index) const { return classes_[static_cast<std::size_t>(index)]; }

  /// Any member of any object.
  void CallAnything();
  void Call(Target& target);
  void Call(Target& target, IDispatch* object);
  /// One of a class, made by another object's member where there is none; null where that fails.
  IDispatch* Obtain(int class_index);
  /// Adds something to an owner of others.
  void Fill(IDispatch* owner, int class_index);

  // Each returns whether the member succeeded.
  bool CallThroughDispatch(IDispatch* object, Target& target, ArgumentCatalogue& catalogue);
  bool CallThroughVtable(IDispatch* object, Target& target, ArgumentCatalogue& catalogue);
  void CallEnumerator();

  std::vector<VARIANT> DispatchArguments(const Member& member, ArgumentCatalogue& catalogue);
  std::vector<DISPID> NamesOfArguments(const Member& member, std::size_t arguments);
  WORD DispatchFlags(const Member& member);
  /// What stands for a parameter: mostly what it wants.
  VARIANT ArgumentFor(const Parameter& parameter, ArgumentCatalogue& catalogue);
  VARIANT& VariableFor(const Parameter& parameter, ArgumentCatalogue& catalogue);
  IDispatch* ObjectFor(const Parameter& parameter);
  VARIANT SlotFor(const Parameter& parameter, ArgumentCatalogue& catalogue, VARTYPE* type);

  /// Keeps an error in mind. An object that is dead has not much to give.
  void TakeNoteOf(HRESULT error, IDispatch* object, Target& target);
  /// Takes what a member gave: objects join the population.
  void Consume(VARIANT& result);

  std::vector<Population::Connection> ConnectTo(IDispatch* object, const Class& its_class);
  HRESULT OnEvent(class Listener& listener, DISPID event, DISPPARAMS& parameters);
  void DoAnything(class Listener& listener, DISPPARAMS& parameters);
  /// What strange code does in the middle of a member: mostly nothing.
  void Interfere();
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wide, LPARAM parameter);

  std::mt19937 random_;
  const std::vector<Class>& classes_;
  std::vector<Target>& targets_;
  const std::vector<std::size_t>& chosen_;
  Jail& jail_;
  const std::function<void()> interfere_ = [this] { Interfere(); };
  Strangers strangers_{random_, interfere_};
  const StandIns stand_ins_;
  Population population_;
  std::deque<ArgumentCatalogue> catalogues_;  // of calls inside of calls
  Microsoft::WRL::ComPtr<IDispatch> root_;    // keeps the shared library, in every other round
  HWND window_ = nullptr;                     // whose messages interfere
  std::size_t depth_ = 0;
  bool inside_ = false;  // of the component
  int calls_left_ = 0;   // inside of the outermost call
  int events_left_ = 0;
};

}  // namespace monkey
