#pragma once

#include <windows.h>
#include <oaidl.h>

#include <deque>
#include <random>
#include <string>
#include <vector>

/// Arguments for calls at random: every type by value and by reference, texts, objects and arrays
/// at the edges of what is legal, and some that are not legal at all. Only pointers are always
/// sound.
class ArgumentCatalogue {
 public:
  /// `objects` are what an object-valued argument may be.
  ArgumentCatalogue(std::mt19937& random, const std::vector<IDispatch*>& objects)
      : random_(random), objects_(objects) {}
  ~ArgumentCatalogue();
  ArgumentCatalogue(const ArgumentCatalogue&) = delete;
  ArgumentCatalogue& operator=(const ArgumentCatalogue&) = delete;

  /// An argument of any kind. It and all it leads to live as long as the catalogue.
  VARIANT Any();

  /// What an argument holds by value, for comparison; empty for one that is passed by reference.
  static std::string Fingerprint(const VARIANT& argument);

 private:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  VARIANT& Own() { return owned_.emplace_back(); }

  VARIANT& Scalar();
  VARIANT& Text();
  VARIANT& Object();
  VARIANT& Array(int depth);
  VARIANT& ByValue(int depth);
  VARIANT ByReference();
  VARIANT Illegal();
  void Fill(SAFEARRAY* array, VARTYPE type, int depth);

  std::mt19937& random_;
  const std::vector<IDispatch*>& objects_;
  std::deque<VARIANT> owned_;
  std::deque<VARIANT> links_;  // Variants that only lead elsewhere
  std::vector<SAFEARRAY*> locked_, fixed_;
};
