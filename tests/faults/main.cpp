#include <gtest/gtest.h>
#include <ole2.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "com/fault_plan.h"
#include "faults/dying_process.h"
#include "faults/fault_session.h"

namespace {

/// An exception left where none may.
void TellWhere() {
  std::printf("terminated in %s\n", faults::CurrentCall().c_str());
  std::fflush(stdout);
  std::abort();
}

}  // namespace

int main(int argc, char** argv) {
  faults::DieIfAskedTo(GetCommandLineW());
  testing::InitGoogleTest(&argc, argv);
  std::set_terminate(TellWhere);
  OleInitialize(nullptr);
  const int result = RUN_ALL_TESTS();
  OleUninitialize();
  faults::TellFailures();
  return result;
}
