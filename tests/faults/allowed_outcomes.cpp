#include "faults/allowed_outcomes.h"

#include <algorithm>

#include "Zepkit10.h"
#include "com/every_member/call_table.h"

namespace faults {
namespace {

/// An error that a member's contract has in place of error 7.
struct OtherError {
  const char* member;
  long number;
  const wchar_t* source;
};

constexpr OtherError kOtherErrors[] = {
    // Whatever keeps a term from being evaluated is this error.
    {"_Global.Compute method", zepErrBadCharInTerm, L"Zepkit10"},
    {"_Library.Compute method", zepErrBadCharInTerm, L"Zepkit10"},
    // Whatever keeps a view from being made is this error.
    {"_ZepVariant.Range get", zepErrBadCall, L"Zepkit10.ZepVariant"},
    // Whatever keeps a variable from getting its name is this error.
    {"_VarSet.Add method", zepErrBadCall, L"Zepkit10.VarSet"},
    {"_VarSet.Item get", zepErrBadCall, L"Zepkit10.VarSet"},
    {"_Expression.Value get", zepErrBadCall, L"Zepkit10.VarSet"},
    {"_Variable.Value get", zepErrBadCall, L"Zepkit10.VarSet"},
    {"_Chart.Draw method", zepErrBadCall, L"Zepkit10.VarSet"},
    // Whatever a trial delivery ends with makes a target unusable.
    {"_DebugPrintOuts.Add method", zepErrBadCall, L"Zepkit10.DebugPrintOuts"},
    // Whatever keeps a file from being opened is this error.
    {"_DocHand.OpenFile method", zepErrOpenFile, L"Zepkit10.DocHand"},
    {"_DocHand.OpenFileByCdl method", zepErrOpenFile, L"Zepkit10.DocHand"},
    {"_DocHand.SaveAs method", zepErrOpenFile, L"Zepkit10.DocHand"},
    {"_DocHand.SaveAsByCdl method", zepErrOpenFile, L"Zepkit10.DocHand"},
    // Whatever keeps a dialog from being shown counts as its Cancel button.
    {"_DocHand.OpenFileByCdl method", zepErrCdlCancel, L"Zepkit10.DocHand"},
    {"_DocHand.SaveAsByCdl method", zepErrCdlCancel, L"Zepkit10.DocHand"},
};

/// Members that end without an error where something failed, and the property that tells.
struct Answer {
  const char* member;
  const wchar_t* property;  // null where it is the result
  bool value;
};

constexpr Answer kAnswers[] = {
    {"_FileDialog.ShowOpen method", L"Cancel", true},
    {"_FileDialog.ShowSave method", L"Cancel", true},
    {"_DebugPrintOut.Usable get", nullptr, false},
};

constexpr const char* kTransfers[] = {
    "_DocHand.OpenFile method", "_DocHand.OpenFileByCdl method", "_DocHand.UpdateFromDisk method",
    "_DocHand.Save method",     "_DocHand.SaveAsByCdl method",   "_DocHand.SaveAs method",
};

/// Properties that may differ after a failed call, with a space in front of each.
struct Change {
  const char* member;
  const char* properties;
};

constexpr Change kChanges[] = {
    {"_FileDialog.ShowOpen method", " Cancel"},
    {"_FileDialog.ShowSave method", " Cancel"},
    // A drawing ends where it is.
    {"_Chart.Draw method", " Errors"},
    // Their steps follow one another, each with its events, and an error ends them where they are.
    {"_DocHand.NewFile method", " Changed Status FileTitle"},
    {"_DocHand.OpenFile method", " FileName FileTitle OpenErr Opened ReadOnly Status"},
    {"_DocHand.OpenFileByCdl method", " FileName FileTitle OpenErr Opened ReadOnly Status"},
    {"_DocHand.SaveAs method", " FileName FileTitle OpenErr Opened Status"},
    {"_DocHand.SaveAsByCdl method", " FileName FileTitle OpenErr Opened Status"},
};

/// The drawing goes on after a point that could not be computed, and counts why.
bool CountsPointsWithoutMemory(IDispatch* chart) {
  constexpr std::size_t kOutOfMemory = 7;
  const client::Object asked(chart, client::Binding::kDispatch);
  const auto counters = call_table::Elements(asked.Get(L"Errors").value);
  return counters[kOutOfMemory - 1] != client::Value(0);
}

}  // namespace

bool EndedAsContractSays(const std::string& member, const client::Outcome& outcome,
                         IDispatch* object) {
  for (const OtherError& each : kOtherErrors) {
    if (member == each.member && outcome.number == each.number && outcome.source == each.source) {
      return true;
    }
  }
  for (const Answer& each : kAnswers) {
    if (member != each.member || !outcome.ok()) continue;
    const client::Object asked(object, client::Binding::kDispatch);
    return (each.property ? asked.Get(each.property) : outcome) == each.value;
  }
  return member == "_Chart.Draw method" && outcome.ok() && CountsPointsWithoutMemory(object);
}

std::wstring SourceOfError7(const std::string& member) {
  // Whatever happens in the evaluation of a term.
  if (member == "_Variable.Value get") return L"Zepkit10.Expression";
  const bool made = member.ends_with(" new");
  const std::string name = member.substr(made ? 0 : 1, member.find_first_of(". ") - (made ? 0 : 1));
  return L"Zepkit10." + std::wstring(name.begin(), name.end());
}

bool SpoilsObject(const std::string& member) {
  return std::any_of(std::begin(kTransfers), std::end(kTransfers),
                     [&](const char* each) { return member == each; });
}

bool MayChange(const std::string& member, IDispatch* object,
               const std::vector<std::wstring>& properties) {
  // A change that ripples on is not taken back.
  if (member.starts_with("_ZepVariant.") && member.ends_with(" put")) {
    return properties.empty() ||
           client::Object(object, client::Binding::kDispatch).Get(L"IsRange") == true;
  }
  for (const Change& each : kChanges) {
    if (member != each.member) continue;
    const std::string allowed = std::string(each.properties) + " ";
    return std::all_of(properties.begin(), properties.end(), [&](const std::wstring& property) {
      return allowed.find(" " + call_table::Narrow(property) + " ") != allowed.npos;
    });
  }
  return properties.empty();
}

}  // namespace faults
