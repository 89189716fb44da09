#include "unit/expr/small_stack.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace zepkit10 {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kStackSize = 1024 * 1024;
#else
constexpr std::size_t kStackSize = 256 * 1024;
#endif

void Run(void* action) { (*static_cast<const std::function<void()>*>(action))(); }

#ifdef _WIN32
DWORD WINAPI RunOnThread(void* action) {
  Run(action);
  return 0;
}
#else
void* RunOnThread(void* action) {
  Run(action);
  return nullptr;
}
#endif

}  // namespace

void OnSmallStack(const std::function<void()>& action) {
  void* argument = const_cast<std::function<void()>*>(&action);
#ifdef _WIN32
  const HANDLE thread = CreateThread(nullptr, kStackSize, RunOnThread, argument,
                                     STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
  ASSERT_TRUE(thread);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
#else
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackSize), 0);
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, RunOnThread, argument), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
#endif
}

}  // namespace zepkit10
