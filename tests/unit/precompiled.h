// Read once instead of by every test. Each test still includes what it needs.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>
