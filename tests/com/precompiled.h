// Read once instead of by every test. Each test still includes what it needs.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <map>
#include <string>
#include <vector>
