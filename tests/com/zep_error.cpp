#include "com/zep_error.h"

#include <algorithm>

namespace zep_error {
namespace {

constexpr Text kTexts[] = {
    {zepErrBadParam, L"Bad parameter (e. g. a string of wrong length)",
     L"Falscher Wert für einen Parameter (z. B. ein String mit falscher Länge)"},
    {zepErrBadPropValue, L"Bad Value assigned to property (e. g. a string of wrong length)",
     L"Versuch, einem Property einen falschen Wert zuzuweisen (z. B. einen String mit falscher "
     L"Länge)"},
    {zepErrUnexpected, L"Unexpected internal error", L"Unerwarteter interner Fehler"},
    {zepErrItemNotExistant, L"Item doesn't exist in collection",
     L"Item ist in der collection nicht vorhanden"},
    {zepErrItemAlreadyExists, L"Item already exists in collection",
     L"Item ist in der collection bereits vorhanden"},
    {zepErrBadCharInTerm, L"Bad character in function term", L"Falsches Zeichen im Funktionsterm"},
    {zepErrBadBrackets, L"Unequal count of opening and closing brackets",
     L"Ungleiche Anzahl von öffnenden und schließenden Klammern"},
    {zepErrBadValueDashes, L"Uneven count of 'value dashes'",
     L"Ungerade Anzahl von Betragsstrichen"},
    {zepErrExtractTerm, L"Error while extracting a subterm",
     L"Fehler beim Extrahieren eines Unterterms"},
    {zepErrBadCallContext, L"Procedural call in bad context",
     L"Funktionsaufruf in falschem Kontext"},
    {zepErrNotInitDone, L"Object is not yet initialized", L"Objekt ist noch nicht initialisiert"},
    {zepErrFileNotFound, L"File not found", L"Datei nicht gefunden (= Fehler 53)"},
    {zepErrEntryNotExistant, L"Initialization-file entry not existant",
     L"Eintrag in INI existiert nicht"},
    {zepErrBadCall, L"Bad property or method call", L"Falscher Property- oder Methodenaufruf"},
    {zepErrReadOnly, L"File or property is read only",
     L"Nur-lese-Eigenschaft oder Datei nur für Lesezugriff geöffnet"},
    {zepErrOpenFile, L"Error while opening file", L"Fehler beim Öffnen einer Datei"},
    {zepErrCdlCancel, L"CommonDialog cancel", L"CommonDialog-Abbruch"},
    {zepErrCallRefused,
     L"Call refused (e. g. 'Cancel' argument of 'Before...' event set to 'True')",
     L"Aufruf zurückgewiesen (z. B. 'Cancel'-Argument eines 'Before...'-Events auf 'True' "
     L"gesetzt)"},
    {zepErrIndexOutOfRange, L"Index out of range", L"Index außerhalb des gültigen Bereichs"},
};

}  // namespace

std::span<const Text> Texts() { return kTexts; }

std::wstring English(ZepErrors number) {
  if (number == zepErrAwaitTerm) return L"Description for err #-2147220480 not found";
  return std::ranges::find(kTexts, number, &Text::number)->english;
}

}  // namespace zep_error
