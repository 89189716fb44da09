#include "frame/shared_library_object.h"

#include <windows.h>

#include <vector>

#include "frame/library_object.h"

namespace zepkit10 {
namespace {

/// What the objects of one apartment share.
struct Apartment {
  Ref<Library> library;
  long users = 0;

  void TearDown() noexcept {
    if (const Ref<Library> ended = std::exchange(library, nullptr)) ended->TearDown();
  }
};

// A TLS slot of the platform's: unlike thread_local it has no destructor that could outlive the DLL.
const DWORD slot = TlsAlloc();
SRWLOCK registry_lock = SRWLOCK_INIT;
std::vector<Apartment*> registry;  // of all threads, for the end of the DLL

Apartment* Existing() { return static_cast<Apartment*>(TlsGetValue(slot)); }

class RegistryLock {
 public:
  RegistryLock() { AcquireSRWLockExclusive(&registry_lock); }
  ~RegistryLock() { ReleaseSRWLockExclusive(&registry_lock); }
};

Apartment& Current() {
  if (Apartment* apartment = Existing()) return *apartment;
  auto created = std::make_unique<Apartment>();
  const RegistryLock lock;
  registry.push_back(created.get());
  TlsSetValue(slot, created.get());
  return *created.release();
}

}  // namespace

Ref<Library> GetSharedLibrary() {
  Apartment& apartment = Current();
  if (!apartment.library) apartment.library = Make<Library>();
  return apartment.library;
}

UserCount::UserCount() { ++Current().users; }

UserCount::~UserCount() {
  Apartment* apartment = Existing();
  if (apartment && --apartment->users == 0) apartment->TearDown();
}

void EndApartment() noexcept {
  Apartment* apartment = Existing();
  if (!apartment) return;
  apartment->TearDown();
  {
    const RegistryLock lock;
    std::erase(registry, apartment);
  }
  TlsSetValue(slot, nullptr);
  delete apartment;
}

void EndAllApartments() noexcept {
  // The loader calls alone: no other thread is inside the DLL any more.
  for (Apartment* apartment : std::exchange(registry, {})) {
    apartment->TearDown();
    delete apartment;
  }
  TlsFree(slot);
}

}  // namespace zepkit10
