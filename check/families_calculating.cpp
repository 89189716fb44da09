#include "families.h"

namespace zepcheck {
namespace {

constexpr HRESULT kDivisionByZero = static_cast<HRESULT>(0x800A000B);

void Counter(const Workbench&) {
  const Object counter = Object::Create(L"Zepkit10.Counter");
  counter.Get(L"Increment", {3});
  counter.Get(L"Decrement");
  Expect(L"a counter", counter.Get(L"Value"), L"2");
}

void Terms(const Workbench& bench) {
  Expect(L"SQR(2^2)*|3-5|", bench.zepkit.Get(L"Compute", {L"SQR(2^2)*|3-5|"}), L"4");
  const Object term = Object::Create(L"Zepkit10.Expression");
  term.Put(L"EString", {L"2*COS(0)^2+|1-3|"});
  Expect(L"2*COS(0)^2+|1-3|", term.Get(L"Value"), L"4");
}

void Errors(const Workbench&) {
  const Object term = Object::Create(L"Zepkit10.Expression");
  term.Put(L"EString", {L"1/0"});
  try {
    term.Get(L"Value");
  } catch (const Failure& failure) {
    if (failure.code == kDivisionByZero) return;
    throw;
  }
  throw Failure{E_UNEXPECTED, L"1/0 raises no error"};
}

Object Circle(const Workbench& bench) {
  const Object circle = bench.zepkit.Get(L"VarSets").AsObject().Get(L"Add").AsObject();
  circle.Get(L"Add", {L"r"}).AsObject().Put(L"Value", {2});
  return circle;
}

void Variables(const Workbench& bench) {
  const Object circle = Circle(bench);
  const Object diameter = circle.Get(L"Add", {L"d"}).AsObject();
  diameter.Get(L"Expression").AsObject().Put(L"EString", {L"2*r"});
  Expect(L"the diameter of a circle", diameter.Get(L"Value"), L"4");
  circle.Get(L"Delete");
}

void Charts(const Workbench& bench) {
  const Object circle = Circle(bench);
  const Object chart = bench.zepkit.Get(L"Charts").AsObject().Get(L"Add", {L"zepcheck"}).AsObject();
  chart.Set(L"VarSet", {circle});
  const Object f = chart.Get(L"FncInfos").AsObject().Get(L"Add", {L"f"}).AsObject();
  f.Put(L"XLow", {-2});
  f.Put(L"XHigh", {2});
  f.Put(L"YHigh", {4});
  f.Put(L"Interval", {0.5});
  f.Get(L"Expression").AsObject().Put(L"EString", {L"x^2"});
  chart.Get(L"Draw");
  Expect(L"the width of a chart", chart.Get(L"PictureWidth"), L"480");
  chart.Get(L"Picture").AsObject();
  chart.Get(L"Delete");
  circle.Get(L"Delete");
}

constexpr Family kFamilies[] = {{L"counter", Counter},
                                {L"terms", Terms},
                                {L"errors", Errors},
                                {L"variables", Variables},
                                {L"charts", Charts}};

}  // namespace

std::span<const Family> CalculatingFamilies() { return kFamilies; }

}  // namespace zepcheck
