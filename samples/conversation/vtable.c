/* The conversation in C, early bound through the vtables of the component's header:
 *     x86_64-w64-mingw32-gcc -static vtable.c Zepkit10_i.c -lole32 -loleaut32 -luuid
 * _Counter_Increment(counter, 3) is short for counter->lpVtbl->Increment(counter, 3). */
#define COBJMACROS
#include <windows.h>
#include <ocidl.h>
#include <stdio.h>
#include <stdlib.h>

#include "Zepkit10.h"

/* Every text that is passed or received, until FreeTexts. */
static BSTR texts[100];
static int text_count = 0;

static BSTR Keep(BSTR text) { return texts[text_count++] = text; }
static BSTR Text(const wchar_t* text) { return Keep(SysAllocString(text)); }
static void FreeTexts(void) {
  while (text_count > 0) SysFreeString(texts[--text_count]);
}

/* The lower half of the number is that of ZepErrors or of the runtime error. */
static void ShowError(HRESULT result) {
  IErrorInfo* info = NULL;
  BSTR source = NULL, text = NULL;
  if (GetErrorInfo(0, &info) == S_OK) {
    IErrorInfo_GetSource(info, &source);
    IErrorInfo_GetDescription(info, &text);
    IErrorInfo_Release(info);
  }
  printf("  error %ld: %ls\n    raised by %ls\n", HRESULT_CODE(result), Keep(text), Keep(source));
}

static void Check(HRESULT result) {
  if (SUCCEEDED(result)) return;
  ShowError(result);
  exit(1);
}

static void* Create(const CLSID* clsid, const IID* iid) {
  void* object = NULL;
  Check(CoCreateInstance(clsid, NULL, CLSCTX_INPROC_SERVER, iid, &object));
  return object;
}

/* ---- A sink, which hears the events of a source. Arguments arrive last first. ---- */

typedef struct Sink {
  IDispatch base;
  const IID* events;
  void (*handler)(DISPID event, VARIANT* arguments);
  IConnectionPoint* point;
  DWORD cookie;
} Sink;

static HRESULT STDMETHODCALLTYPE QueryInterface(IDispatch* sink, REFIID iid, void** result) {
  const BOOL known = IsEqualIID(iid, &IID_IUnknown) || IsEqualIID(iid, &IID_IDispatch) ||
                     IsEqualIID(iid, ((Sink*)sink)->events);
  *result = known ? sink : NULL;
  return known ? S_OK : E_NOINTERFACE;
}
static ULONG STDMETHODCALLTYPE AddRef(IDispatch* sink) { return sink ? 2 : 0; }
static ULONG STDMETHODCALLTYPE Release(IDispatch* sink) { return sink ? 1 : 0; }
static HRESULT STDMETHODCALLTYPE Invoke(IDispatch* sink, DISPID event, REFIID iid, LCID locale,
                                        WORD kind, DISPPARAMS* given, VARIANT* result,
                                        EXCEPINFO* error, UINT* bad) {
  (void)iid, (void)locale, (void)kind, (void)result, (void)error, (void)bad;
  ((Sink*)sink)->handler(event, given->rgvarg);
  return S_OK;
}
static IDispatchVtbl sink_members = {QueryInterface, AddRef, Release, NULL, NULL, NULL, Invoke};

static void Connect(Sink* sink, void* source) {
  IConnectionPointContainer* container = NULL;
  sink->base.lpVtbl = &sink_members;
  Check(IUnknown_QueryInterface((IUnknown*)source, &IID_IConnectionPointContainer,
                                (void**)&container));
  Check(IConnectionPointContainer_FindConnectionPoint(container, sink->events, &sink->point));
  Check(IConnectionPoint_Advise(sink->point, (IUnknown*)sink, &sink->cookie));
  IConnectionPointContainer_Release(container);
}

static void Disconnect(Sink* sink) {
  IConnectionPoint_Unadvise(sink->point, sink->cookie);
  IConnectionPoint_Release(sink->point);
}

/* ---- The conversation ---- */

static VARIANT Name(const wchar_t* name) {
  VARIANT value;
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = Text(name);
  return value;
}

static VARIANT Number(long number) {
  VARIANT value;
  V_VT(&value) = VT_I4;
  V_I4(&value) = number;
  return value;
}

static _VarSet* AddSet(_Global* zepkit, const wchar_t* name) {
  _VarSets* sets = NULL;
  _VarSet* set = NULL;
  VARIANT key = Name(name);
  Check(_Global_get_VarSets(zepkit, &sets));
  Check(_VarSets_Add(sets, &key, &set));
  _VarSets_Release(sets);
  return set;
}

static _Variable* ItemOf(_VarSet* set, VARIANT index) {
  _Variable* variable = NULL;
  Check(_VarSet_get_Item(set, index, &variable));
  return variable;
}

static double ValueOf(_Variable* variable) {
  double value = 0;
  Check(_Variable_get_Value(variable, &value));
  return value;
}

static BSTR TextOf(_ZepVariant* buffer) {
  BSTR text = NULL;
  Check(_ZepVariant_get_DataString(buffer, &text));
  return Keep(text);
}

static void Terms(_Global* zepkit) {
  double value = 0;
  _VarSet* letters = AddSet(zepkit, L"letters");
  _Variable* x = ItemOf(letters, Name(L"x"));
  _Expression* term = Create(&CLSID_Expression, &IID__Expression);
  printf("Terms\n");
  Check(_Global_Compute(zepkit, Text(L"2*SIN(0)^2+|1-3|"), &value));
  printf("  2*SIN(0)^2+|1-3| is %g\n", value);
  Check(_Variable_put_Value(x, 3));
  Check(_Expression_putref_VarSet(term, letters));
  Check(_Expression_put_EString(term, Text(L"x^2/4")));
  Check(_Expression_get_Value(term, &value));
  printf("  x^2/4 is %g where x is 3\n", value);
  Check(_VarSet_Delete(letters));
  _Expression_Release(term);
  _Variable_Release(x);
  _VarSet_Release(letters);
}

/* A variable holds a number or a term, which follows the variables that it names. */
static void Variables(_VarSet* circle) {
  _Variable *radius = ItemOf(circle, Name(L"r")), *diameter = ItemOf(circle, Name(L"d"));
  _Expression* term = NULL;
  printf("Variables\n");
  Check(_Variable_get_Expression(diameter, &term));
  Check(_Expression_put_EString(term, Text(L"2*r")));
  Check(_Variable_put_Value(radius, 2));
  printf("  radius 2, diameter %g\n", ValueOf(diameter));
  Check(_Variable_put_Value(radius, 5));
  printf("  radius 5, diameter %g\n", ValueOf(diameter));
  _Expression_Release(term);
  _Variable_Release(diameter);
  _Variable_Release(radius);
}

static void ShowVariable(IDispatch* item) {
  _Variable* variable = NULL;
  _Expression* term = NULL;
  BSTR name = NULL, text = NULL;
  Check(IDispatch_QueryInterface(item, &IID__Variable, (void**)&variable));
  Check(_Variable_get_Name(variable, &name));
  Check(_Variable_get_Expression(variable, &term));
  Check(_Expression_get_EString(term, &text));
  printf("  %ls = %ls\n", Keep(name), Keep(text));
  _Expression_Release(term);
  _Variable_Release(variable);
}

static void Collections(_VarSet* circle) {
  IUnknown* unknown = NULL;
  IEnumVARIANT* items = NULL;
  VARIANT item;
  long count = 0;
  _Variable* first = ItemOf(circle, Number(1));
  BSTR name = NULL;
  printf("Collections\n");
  Check(_VarSet_get_NewEnum(circle, &unknown));
  Check(IUnknown_QueryInterface(unknown, &IID_IEnumVARIANT, (void**)&items));
  VariantInit(&item);
  for (; IEnumVARIANT_Next(items, 1, &item, NULL) == S_OK; VariantClear(&item))
    ShowVariable(V_DISPATCH(&item));
  Check(_VarSet_get_Count(circle, &count));
  Check(_Variable_get_Name(first, &name));
  printf("  %ld variables, the first is %ls\n", count, Keep(name));
  _Variable_Release(first);
  IEnumVARIANT_Release(items);
  IUnknown_Release(unknown);
}

static void OnCounter(DISPID event, VARIANT* arguments) {
  if (event == 1) /* ValueChanged */
    printf("  event: the counter goes from %ld to %ld\n", V_I4(&arguments[0]), V_I4(&arguments[1]));
}

static void OnBuffer(DISPID event, VARIANT* arguments) {
  if (event != 1) return; /* BeforeROChange */
  printf("  event: may the buffer be protected? No.\n");
  *V_BOOLREF(&arguments[0]) = VARIANT_TRUE;
}

static void OnLetter(DISPID event, VARIANT* arguments) {
  if (event == 12) printf("  event: the status is %ld\n", V_I4(&arguments[0])); /* StatusChange */
}

static void Events(void) {
  Sink counting = {.events = &DIID___Counter, .handler = OnCounter};
  Sink guarding = {.events = &DIID___ZepVariant, .handler = OnBuffer};
  _Counter* counter = Create(&CLSID_Counter, &IID__Counter);
  _ZepVariant* buffer = Create(&CLSID_ZepVariant, &IID__ZepVariant);
  long value = 0;
  printf("Events\n");
  Connect(&counting, counter);
  Check(_Counter_Increment(counter, 3));
  Check(_Counter_Decrement(counter, 1));
  Check(_Counter_get_Value(counter, &value));
  printf("  the counter is at %ld\n", value);
  Connect(&guarding, buffer);
  ShowError(_ZepVariant_put_ReadOnly(buffer, VARIANT_TRUE));
  Disconnect(&counting);
  Disconnect(&guarding);
  _ZepVariant_Release(buffer);
  _Counter_Release(counter);
}

/* A view shows a part of a buffer; both follow each other. */
static void Buffers(void) {
  _ZepVariant *buffer = Create(&CLSID_ZepVariant, &IID__ZepVariant), *view = NULL;
  long start = 0, length = 0;
  BYTE byte = 0;
  printf("Buffers\n");
  Check(_ZepVariant_put_DataString(buffer, Text(L"Dear Ada")));
  Check(_ZepVariant_get_Range(buffer, 6, 3, VARIANT_FALSE, &view));
  Check(_ZepVariant_put_DataString(view, Text(L"Grace")));
  printf("  %ls\n", TextOf(buffer));
  Check(_ZepVariant_put_RangeString(buffer, 6, 5, Text(L"GRACE")));
  Check(_ZepVariant_get_RangeLength(view, &length));
  Check(_ZepVariant_get_RangeStart(view, &start));
  printf("  %ls, %ld bytes from byte %ld\n", TextOf(view), length, start);
  Check(_ZepVariant_get_DataByte(buffer, 1, &byte));
  printf("  the first byte is %d\n", byte);
  _ZepVariant_Release(view);
  _ZepVariant_Release(buffer);
}

static void Document(void) {
  Sink listening = {.events = &DIID___DocHand, .handler = OnLetter};
  _DocHand* letter = Create(&CLSID_DocHand, &IID__DocHand);
  _ZepVariant* content = NULL;
  BSTR title = NULL;
  wchar_t path[MAX_PATH];
  printf("Document\n");
  GetTempPathW(MAX_PATH, path);
  lstrcatW(path, L"zepkit10-letter.txt");
  Check(_DocHand_NewFile(letter));
  Check(_DocHand_get_Content(letter, &content));
  Check(_ZepVariant_put_DataString(content, Text(L"Dear Ada")));
  Check(_DocHand_SaveAs(letter, Text(path)));
  Connect(&listening, letter);
  Check(_ZepVariant_put_RangeString(content, 6, 3, Text(L"Grace")));
  Check(_DocHand_Save(letter));
  Check(_DocHand_CloseFile(letter));
  Check(_DocHand_OpenFile(letter, Text(path), VARIANT_FALSE));
  Check(_DocHand_get_FileTitle(letter, &title));
  printf("  %ls: %ls\n", Keep(title), TextOf(content));
  Check(_DocHand_CloseFile(letter));
  Disconnect(&listening);
  DeleteFileW(path);
  _ZepVariant_Release(content);
  _DocHand_Release(letter);
}

static void Lists(void) {
  _List* list = Create(&CLSID_List, &IID__List);
  long count = 0;
  BSTR text = NULL;
  printf("Lists\n");
  Check(_List_put_ListString(list, Text(L"red green blue")));
  Check(_List_AddItem(list, Text(L"black"), 1));
  Check(_List_RemoveItem(list, 3));
  Check(_List_get_Count(list, &count));
  Check(_List_get_ListString(list, &text));
  printf("  %ld colours: %ls\n", count, Keep(text));
  _List_Release(list);
}

static void Arrays(_Global* zepkit) {
  VARIANT words, part, both;
  BSTR word = NULL, joined = NULL;
  LONG last = 0, i;
  printf("Arrays\n");
  V_VT(&words) = VT_ARRAY | VT_BSTR;
  Check(_Global_ListToStringArray(zepkit, Text(L"one two three"), Text(L" "), NULL, NULL,
                                  &V_ARRAY(&words)));
  SafeArrayGetUBound(V_ARRAY(&words), 1, &last);
  SafeArrayGetElement(V_ARRAY(&words), &last, &word);
  printf("  word %ld is %ls\n", last, Keep(word));
  Check(_Global_CutArray(zepkit, words, 2, 2, &part));
  Check(_Global_MergeArrays(zepkit, part, words, 1, &both));
  Check(_Global_StringArrayToList(zepkit, both, Text(L"-"), NULL, NULL, &joined));
  printf("  %ls\n", Keep(joined));
  VariantClear(&words);
  VariantClear(&part);
  VariantClear(&both);

  /* Members with any number of arguments take an array of Variants. */
  SAFEARRAY* numbers = SafeArrayCreateVector(VT_VARIANT, 0, 3);
  VARIANT three[] = {Number(3), Number(12), Number(7)}, greatest, number = Number(5), sum;
  for (i = 0; i < 3; ++i) SafeArrayPutElement(numbers, &i, &three[i]);
  Check(_Global_Max(zepkit, &numbers, &greatest));
  printf("  the greatest is %ld\n", V_I4(&greatest));
  SafeArrayDestroy(numbers);
  Check(_Global_Incr(zepkit, &number, Number(2), &sum));
  printf("  5 and 2 more are %ld\n", V_I4(&number));
}

static void Errors(_Global* zepkit) {
  _Expression* term = Create(&CLSID_Expression, &IID__Expression);
  _VarSets* sets = NULL;
  _VarSet* set = NULL;
  double value = 0;
  printf("Errors\n");
  Check(_Expression_put_EString(term, Text(L"1/0")));
  ShowError(_Expression_get_Value(term, &value));
  Check(_Global_get_VarSets(zepkit, &sets));
  ShowError(_VarSets_get_Item(sets, Name(L"nowhere"), &set));
  _VarSets_Release(sets);
  _Expression_Release(term);
}

int main(void) {
  CoInitialize(NULL);
  _Global* zepkit = Create(&CLSID_Global, &IID__Global);
  _VarSet* circle = AddSet(zepkit, L"circle");
  Terms(zepkit);
  Variables(circle);
  Collections(circle);
  Events();
  Buffers();
  Document();
  Lists();
  Arrays(zepkit);
  Errors(zepkit);
  Check(_VarSet_Delete(circle));
  _VarSet_Release(circle);
  _Global_Release(zepkit);
  FreeTexts();
  CoUninitialize();
  return 0;
}
