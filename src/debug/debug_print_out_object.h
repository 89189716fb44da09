#pragma once

#include <string>

#include "debug_print_out_shim.h"
#include "enums.h"
#include "vars/collection_object.h"

namespace zepkit10 {

class DebugPrintOuts;

/// A target of `DebugPrint`: a member of a client's object that takes text. The member's errors
/// keep their number, source and description.
class DebugPrintOut final
    : public ItemOf<Deletable<DebugPrintOut, DebugPrintOutShim>, DebugPrintOuts> {
 public:
  DebugPrintOut(IDispatch* object, std::u16string_view call, ZepDPOCallType type);
  ~DebugPrintOut() override;

  std::u16string LinkedCall() const;
  ZepDPOCallType LinkedCallType() const;
  Microsoft::WRL::ComPtr<IDispatch> LinkedObject() const;

  /// Delivers a text in the characters of the ANSI code page. `zepErrUnexpected` for an unknown
  /// call type, error 28 where members that print call each other without end.
  void PrintText(std::u16string_view Text);

  /// Whether a trial delivery succeeds now; whatever makes it fail only makes the result false.
  bool Usable();

  /// Lets the linked object go; called when the target is deleted.
  void ReleaseContent() { object_ = nullptr; }

 private:
  Microsoft::WRL::ComPtr<IDispatch> object_;
  const std::u16string call_;
  const ZepDPOCallType type_;
};

}  // namespace zepkit10
