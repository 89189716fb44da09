#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <random>
#include <string>
#include <vector>

/// Arguments for calls at random: every type by value and by reference, texts, objects and arrays
/// at the edges of what is legal, and some that are not legal at all. Only pointers are always
/// sound.
class ArgumentCatalogue {
 public:
  using Objects = std::vector<IDispatch*>;

  /// `objects` are what an object-valued argument may be.
  ArgumentCatalogue(std::mt19937& random, const Objects& objects)
      : random_(random), objects_(objects) {}
  ~ArgumentCatalogue() { Clear(); }
  ArgumentCatalogue(const ArgumentCatalogue&) = delete;
  ArgumentCatalogue& operator=(const ArgumentCatalogue&) = delete;

  // What these return, and all that it leads to, lives until Clear.

  /// An argument of any kind.
  VARIANT Any();
  /// A variable of a client: whatever may stand in one, references included.
  VARIANT& Variable();
  VARIANT& Text();
  VARIANT& Omitted();
  /// Of exactly this type, which is one without a pointer.
  VARIANT& Number(VARTYPE type);
  VARIANT& Array(VARTYPE element_type);
  /// An object that the caller chose, null included; `type` is VT_DISPATCH or VT_UNKNOWN.
  VARIANT& Hold(VARTYPE type, IUnknown* object);

  /// By reference, with its own type where it has one.
  VARIANT ReferenceTo(VARIANT& variable);

  void Clear();

  /// The kinds of what was made since Clear, in order, with those that a reference leads to.
  std::string Kinds() const;
  /// How many kinds there are.
  static std::size_t KindCount();

  /// Tells what an argument holds by value, for comparison; 0 for one that is passed by reference.
  static std::uint64_t Fingerprint(const VARIANT& argument);

 private:
  /// A kind of value. What `parameter` is, its maker knows.
  struct Kind {
    const char* name;
    unsigned weight;
    void (ArgumentCatalogue::*make)(VARIANT& to, long parameter);
    long parameter;
  };
  static const std::vector<Kind> kNumbers, kTexts, kObjects, kArrays, kReferences, kIllegal;

  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  const Kind& PickOf(const std::vector<Kind>& kinds);
  VARIANT& Own() { return owned_.emplace_back(); }
  VARIANT& Make(const std::vector<Kind>& kinds);
  VARIANT& ByValue();

  void MakeNumber(VARIANT& to, long type);
  void MakeSmallNumber(VARIANT& to, long limit);
  void MakeSpecialNumber(VARIANT& to, long which);
  void MakeError(VARIANT& to, long code);

  void MakeRepeatedText(VARIANT& to, long length);
  void MakeListedText(VARIANT& to, long which);
  void MakePath(VARIANT& to, long which);
  void MakeOddText(VARIANT& to, long bytes);
  void MakeTextWithNul(VARIANT& to, long length);
  void MakeNullText(VARIANT& to, long);

  void MakeObject(VARIANT& to, long type);
  void MakeNothing(VARIANT& to, long type);

  void MakeArray(VARIANT& to, long element_type);
  void MakeNullArray(VARIANT& to, long);
  void MakeUnallocatedArray(VARIANT& to, long);
  void MakeEmptyArray(VARIANT& to, long);
  void MakeArrayOfDimensions(VARIANT& to, long dimensions);
  void MakeArrayFrom(VARIANT& to, long lower_bound);
  void MakeLockedArray(VARIANT& to, long);
  void MakeFixedArray(VARIANT& to, long);
  void CreateArray(VARIANT& to, VARTYPE element_type, UINT dimensions,
                   const SAFEARRAYBOUND* bounds);
  void Fill(SAFEARRAY* array, VARTYPE type);
  void FillElement(void* element, VARTYPE type);

  void MakeReference(VARIANT& to, long);
  void MakeTypedReference(VARIANT& to, long);
  static void PointTo(VARIANT& variable, VARIANT& to);
  void MakeNullReference(VARIANT& to, long);
  void MakeReferenceToItself(VARIANT& to, long);
  void MakeReferenceToNothing(VARIANT& to, long);
  void MakeDoubleReference(VARIANT& to, long);

  void MakeIllegal(VARIANT& to, long type);

  std::mt19937& random_;
  const Objects& objects_;
  std::deque<VARIANT> owned_;
  std::deque<VARIANT> links_;  // Variants that only lead elsewhere
  std::vector<SAFEARRAY*> locked_, fixed_;
  std::vector<const char*> kinds_;
  int depth_ = 0;  // of an array in an array
};
