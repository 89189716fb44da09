#include "faults/fault_session.h"

#include <gtest/gtest.h>

#include "com/every_member/call_table.h"
#include "com/type_library_reader.h"
#include "faults/allowed_outcomes.h"

namespace faults {

using call_table::Narrow;
using call_table::Row;
using client::Outcome;

namespace {

/// Some platforms give the empty text where a slot gave none.
bool IsCleared(const VARIANT& result) {
  return result.vt == VT_BSTR ? SysStringLen(result.bstrVal) == 0 : result.llVal == 0;
}

std::string Joined(const std::vector<std::wstring>& names) {
  std::string joined;
  for (const std::wstring& name : names) joined += " " + Narrow(name);
  return joined;
}

/// For the case that the program ends here.
std::string current_call;

}  // namespace

const std::string& CurrentCall() { return current_call; }

Tally& Tally::operator+=(const Tally& more) {
  error_7 += more.error_7;
  absorbed += more.absorbed;
  for (const auto& [member, count] : more.other) other[member] += count;
  return *this;
}

FaultSession::~FaultSession() {
  current_call = "release";
  Begin(Kind::kMemory, 1, Lasting::kFromThenOn);
  {
    const InsideCall inside;
    End();
  }
  faults::End();
}

Outcome FaultSession::Call(const Row& row) {
  const std::size_t position = position_++;
  if (schedule_.next.size() <= position) schedule_.next.push_back(1);
  int& next = schedule_.next[position];
  const std::string member = MemberOf(row);
  IDispatch* const object = ObjectOf(row);
  const std::wstring property = row.text().substr(row.text().find(L'.') + 1);
  ObjectState before;
  if (object && next) before = ObjectState(object, property);
  for (;;) {
    const bool fails = next && !(schedule_.one_by_one && failures_);
    if (!fails) return Session::Call(row);
    current_call = member + ", failing operation " + std::to_string(next);
    Begin(Kind::kMemory, next, schedule_.lasting);
    const Outcome outcome = Session::Call(row);
    if (faults::End() == 0) {
      next = 0;
      return outcome;
    }
    SCOPED_TRACE("failing operation " + std::to_string(next));
    ++next;
    ++failures_;
    if (!IsFailure(row, member, outcome)) return outcome;
    if (SpoilsObject(member) && outcome.number == 7) {
      const Outcome again = Session::Call(row);
      EXPECT_TRUE(again.ok()) << member << " done again: " << again;
      throw Ended();
    }
    if (!object) continue;
    const auto changed = before.Difference(ObjectState(object, property));
    EXPECT_TRUE(MayChange(member, object, changed)) << member << " changed" << Joined(changed);
  }
}

bool FaultSession::IsFailure(const Row& row, const std::string& member, const Outcome& outcome) {
  if (EndedAsContractSays(member, outcome, ObjectOf(row))) {
    ++tally_.other[member];
    return true;
  }
  if (outcome.ok()) {
    ++tally_.absorbed;
    return false;
  }
  ++tally_.error_7;
  EXPECT_TRUE(IsCleared(outcome.value.raw())) << "a result of type " << outcome.value.type();
  // Before the member was reached: what hosts themselves make error 7 of.
  const bool refused = outcome.number == E_OUTOFMEMORY && outcome.source.empty();
  EXPECT_TRUE(outcome.number == 7 || refused) << member << ": " << outcome;
  // There may be no memory left for more than the number.
  const bool bare = schedule_.lasting == Lasting::kFromThenOn && outcome.source.empty();
  if (refused || bare) return true;
  EXPECT_EQ(SourceOfError7(member), outcome.source) << member;
  EXPECT_EQ(L"Out of memory", outcome.description) << member;
  return true;
}

std::string FaultSession::MemberOf(const Row& row) {
  IDispatch* object = ObjectOf(row);
  if (!object) return Narrow(row.text()) + " new";
  Microsoft::WRL::ComPtr<ITypeInfo> type;
  EXPECT_EQ(S_OK, object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type));
  return zepkit10::DocumentationOf(*type.Get()).name + "." +
         Narrow(row.text().substr(row.text().find(L'.') + 1)) + call_table::KindName(row.kind());
}

}  // namespace faults
