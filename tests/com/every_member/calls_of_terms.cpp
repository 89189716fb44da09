// Expressions and the variables in their terms.
#include "com/every_member/calls.h"

namespace call_table {

Rows CallsOfTerms() {
  return {
      Get(L"global.VarSets").GivesA(L"VarSets", L"sets"),
      Run(L"sets.Add", {L"terms"}).GivesA(L"VarSet", L"set"),
      Run(L"set.Add", {L"x"}).GivesA(L"Variable", L"x"),
      Put(L"x.Value", {3.0}),

      New(L"Expression", L"expression"),
      Put(L"expression.EString", {L"2*x"}),
      Get(L"expression.EString").Gives(L"2*x"),
      Set(L"expression.VarSet", {The(L"set")}),
      Get(L"expression.VarSet").Gives(The(L"set")),
      Get(L"expression.Value").Gives(6.0),
      Put(L"expression.Value", {1.5}),
      Get(L"expression.Value").Gives(1.5),
      Run(L"expression.Transform", {L"SINx", zepMTCharToCChar}).Gives(L"SIN"),
      Run(L"expression.Clear"),
      Get(L"expression.EString").Gives(L"0"),
      Run(L"sets.Clear"),
  };
}

Rows CallsOfVariables() {
  return {
      Get(L"global.VarSets").GivesA(L"VarSets", L"sets"),
      Get(L"global.Zep").GivesA(L"Library", L"library"),
      Get(L"sets.Parent").Gives(The(L"library")),
      Run(L"sets.Add", {L"first"}).GivesA(L"VarSet", L"set"),
      Run(L"sets.Add", {L"second"}).GivesA(L"VarSet", L"second"),
      Get(L"sets.Count").Gives(2),
      Get(L"sets.Item", {L"first"}).Gives(The(L"set")),
      Get(L"sets.NewEnum").Lists({The(L"set"), The(L"second")}),
      Run(L"sets.Remove", {2}),
      Get(L"sets.Count").Gives(1),

      Get(L"set.Parent").Gives(The(L"sets")),
      Put(L"set.Name", {L"renamed"}),
      Get(L"set.Name").Gives(L"renamed"),
      Put(L"set.Explicit", {true}),
      Get(L"set.Explicit").Gives(true),
      Run(L"set.Add", {L"x"}).GivesA(L"Variable", L"x"),
      Run(L"set.Add", {L"y"}).GivesA(L"Variable", L"y"),
      Get(L"set.Item", {L"x"}).Gives(The(L"x")),
      Get(L"set.NewEnum").Lists({The(L"x"), The(L"y")}),
      Get(L"set.Count").Gives(2),

      Get(L"x.Parent").Gives(The(L"set")),
      Put(L"x.Value", {2.5}),
      Get(L"x.Value").Gives(2.5),
      Put(L"x.Name", {L"z"}),
      Get(L"x.Name").Gives(L"z"),
      New(L"Expression", L"expression"),
      Put(L"expression.EString", {L"1+z"}),
      Set(L"y.Expression", {The(L"expression")}),
      Get(L"y.Expression").Gives(The(L"expression")),
      Get(L"y.Value").Gives(3.5),
      Run(L"y.Delete"),
      Get(L"set.Count").Gives(1),

      Run(L"set.Remove", {L"z"}),
      Get(L"set.Count").Gives(0),
      Run(L"set.Add", {L"a"}).GivesA(L"Variable", L"a"),
      Run(L"set.Clear"),
      Get(L"set.Count").Gives(0),
      Run(L"set.Delete"),
      Get(L"sets.Count").Gives(0),
      Run(L"sets.Add").GivesA(L"VarSet", L"set"),
      Run(L"sets.Clear"),
      Get(L"sets.Count").Gives(0),
  };
}

}  // namespace call_table
