#include "frame/shared_library_object.h"

#include <windows.h>

#include <vector>

#include "buffer/buffer_queue_object.h"
#include "frame/library_object.h"

namespace zepkit10 {

struct Apartment {
  Ref<Library> library;
  std::weak_ptr<BufferQueue> buffer_queue;  // of the buffers, as long as there are any
  long users = 0;
  bool ended = false;  // no thread leads here any more; it goes with its last user

  void TearDown() noexcept {
    if (const Ref<Library> torn = std::exchange(library, nullptr)) torn->TearDown();
  }
  void End() noexcept {
    TearDown();
    ended = true;
    if (users == 0) delete this;
  }
};

namespace {

// A TLS slot of the platform's: unlike thread_local it has no destructor that could outlive the
// DLL.
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

std::shared_ptr<BufferQueue> GetBufferQueue() {
  Apartment& apartment = Current();
  std::shared_ptr<BufferQueue> queue = apartment.buffer_queue.lock();
  if (!queue) apartment.buffer_queue = queue = std::make_shared<BufferQueue>();
  return queue;
}

UserCount::UserCount() : apartment_(Current()) { ++apartment_.users; }

UserCount::~UserCount() {
  if (--apartment_.users > 0) return;
  apartment_.TearDown();
  if (apartment_.ended) delete &apartment_;
}

void EndApartment() noexcept {
  Apartment* apartment = Existing();
  if (!apartment) return;
  {
    const RegistryLock lock;
    std::erase(registry, apartment);
  }
  TlsSetValue(slot, nullptr);
  apartment->End();
}

void EndAllApartments() noexcept {
  TlsSetValue(slot, nullptr);
  // The loader calls alone: no other thread is inside the DLL any more.
  for (Apartment* apartment : std::exchange(registry, {})) apartment->End();
}

}  // namespace zepkit10
