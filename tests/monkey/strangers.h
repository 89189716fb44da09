#pragma once

#include <windows.h>
#include <oaidl.h>

#include <functional>
#include <memory>
#include <random>
#include <vector>

namespace monkey {

/// The source that errors of a stranger carry, and the number.
inline constexpr wchar_t kStrangersSource[] = L"Stranger";
inline constexpr HRESULT kStrangersError = static_cast<HRESULT>(0x80041234);

/// Objects of a client, to be passed where an object is wanted: ones that offer an interface of the
/// type library and fail every call, one that takes everything, one that raises errors, one that
/// interferes in the middle of whatever asks it, and a collection.
class Strangers {
 public:
  /// `interfere` is run by some of them in the middle of a call.
  Strangers(std::mt19937& random, const std::function<void()>& interfere);
  ~Strangers();
  Strangers(const Strangers&) = delete;
  Strangers& operator=(const Strangers&) = delete;

  const std::vector<IDispatch*>& All() const { return all_; }
  /// How many references to them are left.
  long References() const;

 private:
  struct Residents;
  const std::unique_ptr<Residents> residents_;
  std::vector<IDispatch*> all_;
};

}  // namespace monkey
