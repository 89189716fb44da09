#include "platform/visual_style.h"

#include "platform/automation/module.h"
#include "platform/resource_ids.h"

namespace zepkit10 {
namespace {

HANDLE MakeContext() {
  const std::wstring path = ModulePath();
  ACTCTXW description{};
  description.cbSize = sizeof description;
  description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  description.lpSource = path.c_str();
  description.hModule = ThisModule();
  description.lpResourceName = MAKEINTRESOURCEW(ZEPKIT10_MANIFEST);
  return CreateActCtxW(&description);
}

}  // namespace

VisualStyle::VisualStyle() : context_(MakeContext()) {
  active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
}

VisualStyle::~VisualStyle() {
  if (active_) DeactivateActCtx(0, cookie_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace zepkit10
