// Read once instead of by every source of the component. Each still includes what it needs.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>
