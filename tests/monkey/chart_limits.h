#pragma once

#include <windows.h>
#include <oaidl.h>

#include <vector>

#include "monkey/population.h"

// A drawing takes as long as its chart is large and its functions have points: both are kept small.

namespace monkey {

/// Makes a chart small that has become large; leaves every other object alone.
void LimitChart(IDispatch* object);

/// Makes a chart small and has it end every drawing after some points; leaves every other object
/// alone.
void LimitDrawing(IDispatch* object, const Class& its_class,
                  std::vector<Population::Connection>& connections);

}  // namespace monkey
