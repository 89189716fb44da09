// Numbers, texts and objects.
#include <iterator>
#include <limits>

#include "com/argument_catalogue.h"

namespace {

constexpr double kValues[] = {
    0,    1,     1,      2,      3,    4,      -1,     0.5,        -0.0,         10,
    16,   31,    32,     64,     255,  256,    32767,  32768,      65536,        1e6,
    1e15, 1e300, -1e300, 1e-300, -2.5, 100000, -32769, 2147483647, 2147483648.0, -2147483648.0};
const wchar_t* const kListed[] = {L"x",
                                  L"y",
                                  L"1",
                                  L"-7,5",
                                  L"1.5",
                                  L"a name",
                                  L"2*x+1",
                                  L"SIN(x)^2",
                                  L"((1",
                                  L"|x",
                                  L"True",
                                  L"1999-12-31",
                                  L"&HFFFF",
                                  L"\xFFFF",
                                  L"\xD800",
                                  L"\u00E4\u00F6\u00FC\t\r\n",
                                  L" ",
                                  L"1 2 3",
                                  L"\"a b\" c",
                                  L"Text",
                                  L"x/y",
                                  L"EXP(9^9)",
                                  L"a|*.txt|b|*.*",
                                  L"|x-y|/SQR(2)"};
const wchar_t* const kPaths[] = {L"a.txt",
                                 L"b",
                                 L"folder",
                                 L"folder\\c.txt",
                                 L".\\settings.ini",
                                 L"..\\outside.txt",
                                 L"folder\\..\\a.txt",
                                 L"CON",
                                 L"nul.txt",
                                 L"a.txt:stream",
                                 L"a.txt. ",
                                 L"*.txt",
                                 L"*",
                                 L".",
                                 L"",
                                 L"new\\deep\\er",
                                 L"C:\\outside.txt",
                                 L"\\\\server\\share\\x",
                                 L"\\\\?\\C:\\x",
                                 L"a?*<>b",
                                 L"\\",
                                 L"log.txt",
                                 L"folder\\"};

}  // namespace

// ---- numbers -----------------------------------------------------------------------------------

VARIANT& ArgumentCatalogue::Number(VARTYPE type) {
  VARIANT& value = Own();
  if (Below(2)) {
    MakeSmallNumber(value, 5);
    VariantChangeType(&value, &value, 0, type);
  } else {
    MakeNumber(value, type);
  }
  if (value.vt != type) value = {}, value.vt = type;
  kinds_.push_back("number of the parameter's type");
  return value;
}

void ArgumentCatalogue::MakeNumber(VARIANT& to, long type) {
  to.vt = VT_R8;
  to.dblVal = kValues[Below(std::size(kValues))];
  if (type == VT_EMPTY || type == VT_NULL) {
    to.vt = static_cast<VARTYPE>(type);
  } else {
    // Stays a double where it does not fit.
    VariantChangeType(&to, &to, 0, static_cast<VARTYPE>(type));
  }
}

void ArgumentCatalogue::MakeSmallNumber(VARIANT& to, long limit) {
  to.vt = VT_I4;
  to.lVal = static_cast<LONG>(Below(static_cast<unsigned>(limit)));
}

VARIANT& ArgumentCatalogue::Omitted() {
  kinds_.push_back("omitted argument");
  VARIANT& value = Own();
  MakeError(value, DISP_E_PARAMNOTFOUND);
  return value;
}

void ArgumentCatalogue::MakeSpecialNumber(VARIANT& to, long which) {
  to.vt = VT_R8;
  to.dblVal = std::numeric_limits<double>::quiet_NaN();
  if (which == 1) to.dblVal = std::numeric_limits<double>::infinity();
  if (which == 2) to.vt = VT_BOOL, to.boolVal = 2;
}

void ArgumentCatalogue::MakeError(VARIANT& to, long code) {
  to.vt = VT_ERROR;
  to.scode = code;
}

// ---- texts -------------------------------------------------------------------------------------

VARIANT& ArgumentCatalogue::Text() {
  constexpr unsigned kOneHugeIn = 200000;
  constexpr long kHuge = 16'000'000;
  if (Below(kOneHugeIn)) return Make(kTexts);
  kinds_.push_back("text of 16,000,000 characters");
  VARIANT& value = Own();
  MakeRepeatedText(value, kHuge);
  return value;
}

void ArgumentCatalogue::MakeRepeatedText(VARIANT& to, long length) {
  to.vt = VT_BSTR;
  to.bstrVal = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  // Long ones not of what may be taken for a delimiter: Wine looks for every block that a spy
  // watches in all others, and would take seconds for so many parts.
  constexpr long kLong = 3000, kHuge = 100'000;
  const wchar_t repeated = length > kHuge   ? L'#'
                           : length > kLong ? L"8[b"[Below(3)]
                                            : L"7(a "[Below(4)];
  for (long i = 0; to.bstrVal && i < length; ++i) to.bstrVal[i] = repeated;
}

void ArgumentCatalogue::MakeListedText(VARIANT& to, long) {
  to.vt = VT_BSTR;
  to.bstrVal = SysAllocString(kListed[Below(std::size(kListed))]);
}

void ArgumentCatalogue::MakePath(VARIANT& to, long) {
  to.vt = VT_BSTR;
  to.bstrVal = SysAllocString(kPaths[Below(std::size(kPaths))]);
}

void ArgumentCatalogue::MakeOddText(VARIANT& to, long bytes) {
  to.vt = VT_BSTR;
  to.bstrVal = SysAllocStringByteLen("odd", static_cast<UINT>(bytes));
}

void ArgumentCatalogue::MakeTextWithNul(VARIANT& to, long length) {
  to.vt = VT_BSTR;
  to.bstrVal = SysAllocStringLen(length > 1 ? L"x\0+1" : L"\0", static_cast<UINT>(length));
}

void ArgumentCatalogue::MakeNullText(VARIANT& to, long) { to.vt = VT_BSTR; }

// ---- objects -----------------------------------------------------------------------------------

void ArgumentCatalogue::MakeObject(VARIANT& to, long type) {
  to.vt = static_cast<VARTYPE>(type);
  if (objects_.empty()) return;
  to.pdispVal = objects_[Below(static_cast<unsigned>(objects_.size()))];
  to.pdispVal->AddRef();
}

void ArgumentCatalogue::MakeNothing(VARIANT& to, long type) { to.vt = static_cast<VARTYPE>(type); }
