#include "com/argument_catalogue.h"

#include <cstring>

namespace {

std::uint64_t Mix(std::uint64_t hash, const void* from, std::size_t size) {
  constexpr std::uint64_t kPrime = 0x100000001B3;
  const auto* bytes = static_cast<const unsigned char*>(from);
  for (; size >= sizeof(std::uint64_t); size -= sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    bytes += sizeof word;
    hash = (hash ^ word) * kPrime;
    hash ^= hash >> 32;
  }
  for (; size > 0; --size) hash = (hash ^ *bytes++) * kPrime;
  return hash;
}

std::size_t SizeOf(const SAFEARRAY* array) {
  if (!array->pvData) return 0;
  std::size_t size = array->cbElements;
  for (USHORT i = 0; i < array->cDims; ++i) size *= array->rgsabound[i].cElements;
  return size;
}

}  // namespace

void ArgumentCatalogue::Clear() {
  for (SAFEARRAY* array : locked_) SafeArrayUnlock(array);
  for (SAFEARRAY* array : fixed_) array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  // A member may have put something into any of them; clearing may call back.
  while (!owned_.empty()) {
    VARIANT last = owned_.back();
    owned_.pop_back();
    VariantClear(&last);
  }
  for (VARIANT& link : links_) VariantClear(&link);
  links_.clear();
  locked_.clear();
  fixed_.clear();
  kinds_.clear();
}

std::string ArgumentCatalogue::Kinds() const {
  std::string all;
  for (const char* kind : kinds_) all.append(all.empty() ? "" : ", ").append(kind);
  return all.empty() ? "none" : all;
}

std::uint64_t ArgumentCatalogue::Fingerprint(const VARIANT& argument) {
  if (argument.vt & VT_BYREF) return 0;
  std::uint64_t print = Mix(1, &argument, sizeof argument);
  if (argument.vt == VT_BSTR) {
    print = Mix(print, argument.bstrVal, SysStringByteLen(argument.bstrVal));
  }
  if ((argument.vt & VT_ARRAY) && argument.parray) {
    const SAFEARRAY* array = argument.parray;
    print = Mix(print, array, sizeof *array);
    print = Mix(print, array->pvData, SizeOf(array));
  }
  return print;
}

const ArgumentCatalogue::Kind& ArgumentCatalogue::PickOf(const std::vector<Kind>& kinds) {
  unsigned total = 0;
  for (const Kind& kind : kinds) total += kind.weight;
  unsigned rest = Below(total);
  const Kind* picked = kinds.data();
  while (rest >= picked->weight) rest -= (picked++)->weight;
  return *picked;
}

VARIANT& ArgumentCatalogue::Make(const std::vector<Kind>& kinds) {
  const Kind& kind = PickOf(kinds);
  if (depth_ == 0) kinds_.push_back(kind.name);
  VARIANT& made = Own();
  std::memset(&made, 0, sizeof made);  // a record's description lies beyond the value
  (this->*kind.make)(made, kind.parameter);
  return made;
}

VARIANT& ArgumentCatalogue::ByValue() {
  constexpr int kDeepest = 2;
  switch (Below(8)) {
    case 0:
    case 1:
    case 2:
      return Make(kNumbers);
    case 3:
    case 4:
      return Text();
    case 5:
    case 6:
      return Make(kObjects);
    default:
      return Make(depth_ < kDeepest ? kArrays : kNumbers);
  }
}

VARIANT& ArgumentCatalogue::Variable() { return Below(8) ? ByValue() : Make(kReferences); }

VARIANT ArgumentCatalogue::Any() {
  switch (Below(16)) {
    case 0:
      return Make(kIllegal);
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
      return Make(kReferences);
    default:
      return ByValue();
  }
}

VARIANT& ArgumentCatalogue::Hold(VARTYPE type, IUnknown* object) {
  VARIANT& value = Own();
  value.vt = type;
  value.punkVal = object;
  if (object) object->AddRef();
  kinds_.push_back(object ? "chosen object" : "null object");
  return value;
}
