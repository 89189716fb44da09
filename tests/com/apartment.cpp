#include "com/apartment.h"

#include <windows.h>
#include <objbase.h>

#include <thread>

#include "com/component.h"
#include "frame/shared_library_object.h"

namespace component {

void InNewApartment(const std::function<void()>& body) {
  std::thread thread([&] {
    EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    body();
    CoUninitialize();
    // Only a DLL is told of the end of a thread.
    if (IsLinked()) zepkit10::EndApartment();
  });
  thread.join();
}

}  // namespace component
