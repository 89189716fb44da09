#pragma once

#include <memory>

#include "platform/automation/ref.h"

namespace zepkit10 {

struct Apartment;
class BufferQueue;
class Library;

/// The apartment's one `Library`, created on first demand. It lives until no `Global` and none of
/// the counted singletons is left, or until the apartment or the DLL goes.
Ref<Library> GetSharedLibrary();

/// The message board of the apartment's buffers.
std::shared_ptr<BufferQueue> GetBufferQueue();

/// Counts an object as a user of the shared library of the apartment that it was made in, for as
/// long as the object lives. When the last user goes, that library is torn down.
class UserCount {
 public:
  UserCount();
  ~UserCount();
  UserCount(const UserCount&) = delete;
  UserCount& operator=(const UserCount&) = delete;

 private:
  Apartment& apartment_;
};

/// Tears down what the calling thread's apartment shares; for the end of a thread.
void EndApartment() noexcept;
/// Tears down what all apartments share; for the end of the DLL.
void EndAllApartments() noexcept;

}  // namespace zepkit10
