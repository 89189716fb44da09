#include "com/allocation_spy.h"

#include <windows.h>
#include <objidl.h>

#include <cstdint>
#include <map>
#include <mutex>

#include "com/fault_plan.h"

// Without WINAPI, for which the 32-bit import library has no name; without arguments it is all the
// same.
extern "C" void SetOaNoCache();

namespace allocation_spy {
namespace {

class Spy final : public IMallocSpy {
 public:
  static Spy& Registered() {
    static Spy& spy = *[] {
      // Freed strings would otherwise wait in a cache for their next use.
      SetOaNoCache();
      auto* made = new Spy;
      CoRegisterMallocSpy(made);
      // Wine looks blocks up in a table that it makes with the first one allocated.
      CoTaskMemFree(CoTaskMemAlloc(1));
      return made;
    }();
    return spy;
  }

  std::size_t Now() {
    const std::scoped_lock lock(mutex_);
    return serial_;
  }

  std::string OutstandingSince(std::size_t then) {
    const std::scoped_lock lock(mutex_);
    std::string text;
    for (const auto& [address, block] : blocks_) {
      if (block.serial <= then) continue;
      text += "block " + std::to_string(block.serial - then) + " of " + std::to_string(block.size) +
              " bytes\n";
    }
    return text;
  }

  std::size_t CountSince(std::size_t then) {
    const std::scoped_lock lock(mutex_);
    std::size_t count = 0;
    for (const auto& [address, block] : blocks_) count += block.serial > then;
    return count;
  }

  void Limit(std::size_t bytes) { limit_ = bytes; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    *result = iid == IID_IUnknown || iid == IID_IMallocSpy ? this : nullptr;
    return *result ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  SIZE_T STDMETHODCALLTYPE PreAlloc(SIZE_T size) override {
    requested_ = size;
    return Granted(size);
  }
  void* STDMETHODCALLTYPE PostAlloc(void* block) override {
    Add(block);
    return block;
  }
  void* STDMETHODCALLTYPE PreFree(void* block, BOOL) override {
    Remove(block);
    return block;
  }
  void STDMETHODCALLTYPE PostFree(BOOL) override {}
  SIZE_T STDMETHODCALLTYPE PreRealloc(void* block, SIZE_T size, void** request, BOOL) override {
    *request = block;
    if (Granted(size) == 0 && size > 0) return 0;
    requested_ = size;
    Remove(block);
    return size;
  }
  void* STDMETHODCALLTYPE PostRealloc(void* block, BOOL) override {
    Add(block);
    return block;
  }
  void* STDMETHODCALLTYPE PreGetSize(void* block, BOOL) override { return block; }
  SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T size, BOOL) override { return size; }
  void* STDMETHODCALLTYPE PreDidAlloc(void* block, BOOL) override { return block; }
  int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int allocated) override { return allocated; }
  void STDMETHODCALLTYPE PreHeapMinimize() override {}
  void STDMETHODCALLTYPE PostHeapMinimize() override {}

 private:
  struct Block {
    std::size_t serial;
    SIZE_T size;
  };

  /// 0 refuses a block.
  SIZE_T Granted(SIZE_T size) const { return size > limit_ ? 0 : size; }

  void Add(void* block) {
    const faults::InsideHook hook;
    const std::scoped_lock lock(mutex_);
    if (block) blocks_[block] = {++serial_, requested_};
  }
  void Remove(void* block) {
    const faults::InsideHook hook;
    const std::scoped_lock lock(mutex_);
    blocks_.erase(block);
  }

  std::mutex mutex_;
  std::map<void*, Block> blocks_;
  std::size_t serial_ = 0;
  std::size_t limit_ = SIZE_MAX;
  static thread_local SIZE_T requested_;
};

thread_local SIZE_T Spy::requested_ = 0;

}  // namespace

std::size_t Now() { return Spy::Registered().Now(); }

std::string OutstandingSince(std::size_t then) { return Spy::Registered().OutstandingSince(then); }

std::size_t CountSince(std::size_t then) { return Spy::Registered().CountSince(then); }

void Limit(std::size_t bytes) { Spy::Registered().Limit(bytes); }

}  // namespace allocation_spy
