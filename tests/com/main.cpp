#include <windows.h>
#include <gtest/gtest.h>
#include <ole2.h>

#include <string_view>

#include "faults/failing_memory.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  OleInitialize(nullptr);
  const std::string_view option = argc > 1 ? argv[1] : "";
  const bool all = option == "--failing-memory=all";
  const int result =
      all || option == "--failing-memory" ? failing_memory::RunTests(all) : RUN_ALL_TESTS();
  OleUninitialize();
  return result;
}
