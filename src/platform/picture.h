#pragma once

#include <windows.h>
#include <ocidl.h>
#include <wrl/client.h>

#include "platform/surface.h"

namespace zepkit10 {

/// A picture of what is on the surface now. It has its own bitmap and can be saved.
Microsoft::WRL::ComPtr<IPictureDisp> MakePicture(const Surface& surface);

}  // namespace zepkit10
