#pragma once

#include <windows.h>
#include <oaidl.h>

#include <new>
#include <utility>

namespace zepkit10 {

/// An array of the platform's that owns its memory. Null is the array that was never allocated: it
/// has no elements and no bounds.
class SafeArray {
 public:
  SafeArray() = default;
  /// Takes over an array.
  explicit SafeArray(SAFEARRAY* array) noexcept : array_(array) {}
  SafeArray(SafeArray&& other) noexcept : array_(other.Detach()) {}
  SafeArray& operator=(SafeArray&& other) noexcept {
    std::swap(array_, other.array_);
    return *this;
  }
  ~SafeArray() {
    if (array_) SafeArrayDestroy(array_);
  }

  /// A new array of one dimension whose elements are all zero. `std::bad_alloc` where there is no
  /// room for it.
  static SafeArray Create(VARTYPE type, LONG lower_bound, ULONG count) {
    SAFEARRAYBOUND bound{count, lower_bound};
    SafeArray made(SafeArrayCreate(type, 1, &bound));
    if (!made.array_) throw std::bad_alloc();
    return made;
  }

  SAFEARRAY* get() const { return array_; }
  SAFEARRAY* Detach() noexcept { return std::exchange(array_, nullptr); }

  /// The elements, from the lower bound on.
  template <class Element>
  Element* Elements() const {
    return static_cast<Element*>(array_->pvData);
  }

 private:
  SAFEARRAY* array_ = nullptr;
};

}  // namespace zepkit10
