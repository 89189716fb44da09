#pragma once

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include "buffer/zep_variant_object.h"

namespace zepkit10 {

/// Whose content a buffer is.
class ContentOwner {
 public:
  virtual void ContentChanged() = 0;
  virtual void BeforeContentROChange(bool new_value, bool& cancel) = 0;
  /// Keep the owner alive for the length of a call.
  virtual void RetainOwner() = 0;
  virtual void DropOwner() = 0;

 protected:
  ~ContentOwner() = default;
};

/// Hears the events of a buffer on behalf of its owner, as any client would, as long as this lives.
class ContentConnection {
 public:
  ContentConnection(ZepVariant& content, ContentOwner& owner);
  ~ContentConnection();
  ContentConnection(const ContentConnection&) = delete;
  ContentConnection& operator=(const ContentConnection&) = delete;

 private:
  class Listener;

  const Ref<ZepVariant> content_;
  Microsoft::WRL::ComPtr<Listener> listener_;
  DWORD cookie_ = 0;
};

}  // namespace zepkit10
