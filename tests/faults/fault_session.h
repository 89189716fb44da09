#pragma once

#include <map>
#include <string>
#include <vector>

#include "com/every_member/session.h"
#include "com/fault_plan.h"
#include "faults/object_state.h"

namespace faults {

/// How calls ended in which something failed.
struct Tally {
  long error_7 = 0;                   // which leaves everything as it was
  long absorbed = 0;                  // the call gave what it gives without a failure
  std::map<std::string, long> other;  // by member: the contract's own error

  Tally& operator+=(const Tally& more);
};

/// The call that is being made, and which of its operations fails.
const std::string& CurrentCall();

/// What is still to be failed: for each call of a table the number of the operation that fails
/// next, and 0 where no more fail.
struct Schedule {
  Lasting lasting;
  /// Once per performance of the table; otherwise each call fails on and on until it succeeds.
  bool one_by_one;
  std::vector<int> next;
};

/// Thrown where the rest of a table cannot be performed, because a failure has left an object that
/// does not work as the table expects, as its contract says.
struct Ended {};

/// Performs rows while operations of the component fail. A call that fails must give error 7, or
/// the error that the contract has for it instead, and leave its object as it was; it is then made
/// again, and what the row expects is expected of the call that succeeds.
class FaultSession final : public call_table::Session {
 public:
  FaultSession(client::Binding binding, Schedule& schedule)
      : Session(binding), schedule_(schedule) {}
  /// Lets go of everything without any memory.
  ~FaultSession() override;

  /// How many calls were made to fail.
  long failures() const { return failures_; }
  const Tally& tally() const { return tally_; }

 protected:
  client::Outcome Call(const call_table::Row& row) override;

 private:
  /// False where the outcome is what a call gives that was not hit.
  bool IsFailure(const call_table::Row& row, const std::string& member,
                 const client::Outcome& outcome);
  std::string MemberOf(const call_table::Row& row);

  Schedule& schedule_;
  std::size_t position_ = 0;
  long failures_ = 0;
  Tally tally_;
};

}  // namespace faults
