#pragma once

#include <functional>
#include <string>

#include "com/client.h"

/// Every test with memory that fails: a call that a test makes of the component is first made with
/// allocation 1 failing, then with allocation 2, and so on. A call that fails must leave everything
/// as it was; so it is made again until it does not fail, and then must give what the test expects.
/// What handlers call meanwhile does not fail.
namespace failing_memory {

/// A call of a member.
struct Call {
  std::function<client::Outcome()> perform;
  IDispatch* object;
  std::function<std::string()> member;  // as faults/allowed_outcomes.h writes it
};

/// Makes a call, once where memory does not fail.
client::Outcome Perform(const Call& call);
/// The same of something else that the component does for a client.
HRESULT Perform(const char* name, const std::function<HRESULT()>& call);

/// Nothing fails any more in the test that runs. Its destructors must not be left.
void EndBody();

/// Whether the test that runs was left in its middle: what its handlers refer to is gone.
bool HasLeftTest();

/// Runs the tests of the program with each allocation failing once; returns the exit code. Nothing
/// fails behind the first event of a call or in a member that cannot be repeated, and nothing more
/// in a call that succeeds although something failed. With `all` a test is left there, or goes on,
/// and is run again for the next allocation; and all tests run once more, with all allocations
/// failing from each on.
int RunTests(bool all);

}  // namespace failing_memory
