#pragma once

#include <functional>
#include <memory>
#include <random>

namespace monkey {

/// Stands in for what a run must not reach: the dialogs' user, the pointer, the settings and the
/// loudspeaker of the machine. As long as it lives.
class StandIns {
 public:
  /// `interfere` is run now and then while a dialog is up.
  /// Of the about windows only some are made, because they cost time, or all.
  StandIns(std::mt19937& random, const std::function<void()>& interfere, bool makes_all_windows);
  ~StandIns();
  StandIns(const StandIns&) = delete;
  StandIns& operator=(const StandIns&) = delete;

 private:
  struct Hooks;
  const std::unique_ptr<Hooks> hooks_;
};

}  // namespace monkey
