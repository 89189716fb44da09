#pragma once

#include <cstddef>
#include <utility>

namespace zepkit10 {

/// A counted reference from one object of the library to another. It keeps the object alive but,
/// unlike a client's reference, does not keep the DLL loaded.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}
  explicit Ref(T* object) : object_(object) {
    if (object_) object_->Retain();
  }
  Ref(const Ref& other) : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~Ref() {
    if (object_) object_->Drop();
  }

  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* get() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

  friend bool operator==(const Ref&, const Ref&) = default;

 private:
  T* object_ = nullptr;
};

/// Makes a new object of the library and its first reference.
template <class T, class... Arguments>
Ref<T> Make(Arguments&&... arguments) {
  return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace zepkit10
