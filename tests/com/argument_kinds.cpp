// The table of what there is.
#include <limits>

#include "com/argument_catalogue.h"

using C = ArgumentCatalogue;

const std::vector<C::Kind> C::kNumbers = {
    {"VT_EMPTY", 2, &C::MakeNumber, VT_EMPTY},
    {"VT_NULL", 2, &C::MakeNumber, VT_NULL},
    {"VT_I1", 1, &C::MakeNumber, VT_I1},
    {"VT_UI1", 1, &C::MakeNumber, VT_UI1},
    {"VT_I2", 2, &C::MakeNumber, VT_I2},
    {"VT_UI2", 1, &C::MakeNumber, VT_UI2},
    {"VT_I4", 6, &C::MakeNumber, VT_I4},
    {"VT_UI4", 1, &C::MakeNumber, VT_UI4},
    {"VT_I8", 1, &C::MakeNumber, VT_I8},
    {"VT_UI8", 1, &C::MakeNumber, VT_UI8},
    {"VT_INT", 1, &C::MakeNumber, VT_INT},
    {"VT_UINT", 1, &C::MakeNumber, VT_UINT},
    {"VT_R4", 1, &C::MakeNumber, VT_R4},
    {"VT_R8", 3, &C::MakeNumber, VT_R8},
    {"VT_CY", 1, &C::MakeNumber, VT_CY},
    {"VT_DATE", 1, &C::MakeNumber, VT_DATE},
    {"VT_BOOL", 2, &C::MakeNumber, VT_BOOL},
    {"VT_DECIMAL", 1, &C::MakeNumber, VT_DECIMAL},
    {"small whole number", 12, &C::MakeSmallNumber, 4},
    {"not a number", 1, &C::MakeSpecialNumber, 0},
    {"infinity", 1, &C::MakeSpecialNumber, 1},
    {"a Boolean that is neither True nor False", 1, &C::MakeSpecialNumber, 2},
    {"omitted argument", 4, &C::MakeError, DISP_E_PARAMNOTFOUND},
    {"VT_ERROR", 1, &C::MakeError, E_FAIL}};

const std::vector<C::Kind> C::kTexts = {
    {"null text", 20, &C::MakeNullText, 0},
    {"empty text", 30, &C::MakeRepeatedText, 0},
    {"text of 1 character", 30, &C::MakeRepeatedText, 1},
    {"text of 259 characters", 5, &C::MakeRepeatedText, 259},
    {"text of 260 characters", 5, &C::MakeRepeatedText, 260},
    {"text of 261 characters", 5, &C::MakeRepeatedText, 261},
    {"text of 2,000 characters", 5, &C::MakeRepeatedText, 2000},
    {"text of 32,767 characters", 2, &C::MakeRepeatedText, 32767},
    {"text from the list", 200, &C::MakeListedText, 0},
    {"path", 80, &C::MakePath, 0},
    {"text of 3 bytes", 10, &C::MakeOddText, 3},
    {"text of 1 byte", 5, &C::MakeOddText, 1},
    {"text with NUL", 10, &C::MakeTextWithNul, 4},
    {"text that begins with NUL", 5, &C::MakeTextWithNul, 1}};

const std::vector<C::Kind> C::kObjects = {
    {"object as VT_DISPATCH", 8, &C::MakeObject, VT_DISPATCH},
    {"object as VT_UNKNOWN", 4, &C::MakeObject, VT_UNKNOWN},
    {"Nothing as VT_DISPATCH", 2, &C::MakeNothing, VT_DISPATCH},
    {"Nothing as VT_UNKNOWN", 1, &C::MakeNothing, VT_UNKNOWN}};

const std::vector<C::Kind> C::kArrays = {
    {"array of VT_VARIANT", 6, &C::MakeArray, VT_VARIANT},
    {"array of VT_BSTR", 4, &C::MakeArray, VT_BSTR},
    {"array of VT_UI1", 3, &C::MakeArray, VT_UI1},
    {"array of VT_I1", 1, &C::MakeArray, VT_I1},
    {"array of VT_I2", 2, &C::MakeArray, VT_I2},
    {"array of VT_UI2", 1, &C::MakeArray, VT_UI2},
    {"array of VT_I4", 3, &C::MakeArray, VT_I4},
    {"array of VT_UI4", 1, &C::MakeArray, VT_UI4},
    {"array of VT_I8", 1, &C::MakeArray, VT_I8},
    {"array of VT_UI8", 1, &C::MakeArray, VT_UI8},
    {"array of VT_INT", 1, &C::MakeArray, VT_INT},
    {"array of VT_UINT", 1, &C::MakeArray, VT_UINT},
    {"array of VT_R4", 1, &C::MakeArray, VT_R4},
    {"array of VT_R8", 2, &C::MakeArray, VT_R8},
    {"array of VT_CY", 1, &C::MakeArray, VT_CY},
    {"array of VT_DATE", 1, &C::MakeArray, VT_DATE},
    {"array of VT_BOOL", 1, &C::MakeArray, VT_BOOL},
    {"array of VT_DECIMAL", 1, &C::MakeArray, VT_DECIMAL},
    {"array of VT_ERROR", 1, &C::MakeArray, VT_ERROR},
    {"array of VT_DISPATCH", 2, &C::MakeArray, VT_DISPATCH},
    {"array of VT_UNKNOWN", 1, &C::MakeArray, VT_UNKNOWN},
    {"null array", 2, &C::MakeNullArray, 0},
    {"array that was never allocated", 2, &C::MakeUnallocatedArray, 0},
    {"array without elements", 2, &C::MakeEmptyArray, 0},
    {"array of 2 dimensions", 2, &C::MakeArrayOfDimensions, 2},
    {"array of 3 dimensions", 1, &C::MakeArrayOfDimensions, 3},
    {"array of 60 dimensions", 1, &C::MakeArrayOfDimensions, 60},
    {"array from the lowest bound", 2, &C::MakeArrayFrom, std::numeric_limits<LONG>::min()},
    {"array to the highest bound", 2, &C::MakeArrayFrom, std::numeric_limits<LONG>::max() - 3},
    {"locked array", 3, &C::MakeLockedArray, 0},
    {"fixed array", 3, &C::MakeFixedArray, 0}};

const std::vector<C::Kind> C::kReferences = {
    {"reference to a Variant with", 12, &C::MakeReference, 0},
    {"reference to a variable of", 12, &C::MakeTypedReference, 0},
    {"null reference", 2, &C::MakeNullReference, 0},
    {"reference to itself", 1, &C::MakeReferenceToItself, 0},
    {"reference to a null reference", 1, &C::MakeReferenceToNothing, 0},
    {"reference to a reference to", 2, &C::MakeDoubleReference, 0}};

const std::vector<C::Kind> C::kIllegal = {{"type 15", 1, &C::MakeIllegal, 15},
                                          {"VT_VARIANT by value", 1, &C::MakeIllegal, VT_VARIANT},
                                          {"VT_RECORD", 1, &C::MakeIllegal, VT_RECORD},
                                          {"VT_FILETIME", 1, &C::MakeIllegal, VT_FILETIME},
                                          {"VT_BLOB", 1, &C::MakeIllegal, VT_BLOB},
                                          {"VT_CLSID", 1, &C::MakeIllegal, VT_CLSID},
                                          {"VT_VECTOR", 1, &C::MakeIllegal, VT_VECTOR | VT_I4},
                                          {"VT_VOID", 1, &C::MakeIllegal, VT_VOID},
                                          {"VT_HRESULT", 1, &C::MakeIllegal, VT_HRESULT},
                                          {"VT_PTR", 1, &C::MakeIllegal, VT_PTR},
                                          {"VT_LPWSTR", 1, &C::MakeIllegal, VT_LPWSTR},
                                          {"type 4095", 1, &C::MakeIllegal, 0x0FFF},
                                          {"VT_RESERVED", 1, &C::MakeIllegal, VT_RESERVED | VT_I4}};

std::size_t ArgumentCatalogue::KindCount() {
  constexpr std::size_t kHugeText = 1;
  return kNumbers.size() + kTexts.size() + kHugeText + kObjects.size() + kArrays.size() +
         kReferences.size() + kIllegal.size();
}
