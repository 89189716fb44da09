#include <windows.h>

#include "frame/shared_library_object.h"
#include "platform/automation/module.h"
#include "platform/thread_slots.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID process_ends) {
  if (reason == DLL_THREAD_DETACH) {
    zepkit10::EndApartment();
  } else if (reason == DLL_PROCESS_DETACH && !process_ends) {
    // At the end of the process other libraries may be gone already, and memory goes anyway.
    zepkit10::EndAllApartments();
    zepkit10::ForgetTypeLibrary();
    zepkit10::FreeThreadSlots();
  }
  return TRUE;
}
