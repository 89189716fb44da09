#pragma once

#include <memory>
#include <string>

namespace monkey {

/// Keeps the component, linked into this program, inside a folder of its own: while this lives, no
/// file operation reaches anything outside, and the disk in it is small.
class Jail {
 public:
  Jail();
  ~Jail();
  Jail(const Jail&) = delete;
  Jail& operator=(const Jail&) = delete;

  /// Puts the folder into the state in which every round begins. Files that are left open by
  /// documents, which the library keeps until it goes, are closed.
  void CleanUp();
  /// Gives the disk its free space back; for the beginning of a call.
  void Refill();

  /// The folder, with a backslash at its end; as long for every process.
  const std::wstring& Path() const { return path_; }

 private:
  struct Hooks;

  const std::wstring path_;
  const std::unique_ptr<Hooks> hooks_;
};

}  // namespace monkey
