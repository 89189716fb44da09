#include "com/type_library_dump.h"

#include <set>
#include <span>
#include <vector>

#include "com/type_library_reader.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

struct Flag {
  unsigned bit;
  const char* name;
};

constexpr Flag kLibraryFlags[] = {{LIBFLAG_FRESTRICTED, "restricted"},
                                  {LIBFLAG_FCONTROL, "control"},
                                  {LIBFLAG_FHIDDEN, "hidden"}};
constexpr Flag kTypeFlags[] = {{TYPEFLAG_FAPPOBJECT, "appobject"},
                               {TYPEFLAG_FCANCREATE, "creatable"},
                               {TYPEFLAG_FPREDECLID, "predeclared"},
                               {TYPEFLAG_FHIDDEN, "hidden"},
                               {TYPEFLAG_FDUAL, "dual"},
                               {TYPEFLAG_FNONEXTENSIBLE, "nonextensible"},
                               {TYPEFLAG_FOLEAUTOMATION, "oleautomation"},
                               {TYPEFLAG_FRESTRICTED, "restricted"},
                               {TYPEFLAG_FDISPATCHABLE, "dispatchable"}};
constexpr Flag kMemberFlags[] = {{FUNCFLAG_FRESTRICTED, "restricted"},
                                 {FUNCFLAG_FHIDDEN, "hidden"},
                                 {FUNCFLAG_FNONBROWSABLE, "nonbrowsable"}};
constexpr Flag kParameterFlags[] = {{PARAMFLAG_FIN, "in"},
                                    {PARAMFLAG_FOUT, "out"},
                                    {PARAMFLAG_FRETVAL, "retval"},
                                    {PARAMFLAG_FOPT, "optional"}};
constexpr Flag kImplementationFlags[] = {{IMPLTYPEFLAG_FDEFAULT, "default"},
                                         {IMPLTYPEFLAG_FSOURCE, "source"},
                                         {IMPLTYPEFLAG_FRESTRICTED, "restricted"}};

/// "hidden, dual"; bits without a name show as a number, so that none escapes the comparison.
std::string FlagText(unsigned bits, std::span<const Flag> known) {
  std::string text;
  const auto append = [&text](const std::string& name) {
    text += (text.empty() ? "" : ", ") + name;
  };
  for (const Flag& flag : known) {
    if (bits & flag.bit) append(flag.name);
    bits &= ~flag.bit;
  }
  if (bits != 0) append(std::to_string(bits));
  return text;
}

std::string Bracketed(const std::string& flags) { return flags.empty() ? "" : "[" + flags + "] "; }

std::string GuidText(const GUID& guid) {
  OLECHAR text[40];
  const int size_with_end = StringFromGUID2(guid, text, 40);
  return Utf8(text, size_with_end - 1);
}

std::string ValueText(VARIANT& value) {
  VARIANT text;
  VariantInit(&text);
  Check(VariantChangeTypeEx(&text, &value, LOCALE_INVARIANT, VARIANT_ALPHABOOL, VT_BSTR),
        "VariantChangeTypeEx");
  const std::string utf8 = TakeUtf8(text.bstrVal);
  return value.vt == VT_BSTR ? '"' + utf8 + '"' : utf8;
}

std::string HelpLine(const Documentation& documentation) {
  return '"' + documentation.help + "\" " + std::to_string(documentation.help_context) + "\n";
}

std::string ParameterText(ITypeInfo& type, const ELEMDESC& parameter, const std::string& name) {
  const PARAMDESC& description = parameter.paramdesc;
  std::string flags = FlagText(description.wParamFlags & ~PARAMFLAG_FHASDEFAULT, kParameterFlags);
  if (description.wParamFlags & PARAMFLAG_FHASDEFAULT) {
    flags += ", default " + ValueText(description.pparamdescex->varDefaultValue);
  }
  return Bracketed(flags) + TypeName(type, parameter.tdesc) + (name.empty() ? "" : " " + name);
}

const char* InvokeKindName(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_FUNC:
      return "method";
    case INVOKE_PROPERTYGET:
      return "get";
    case INVOKE_PROPERTYPUT:
      return "put";
    case INVOKE_PROPERTYPUTREF:
      return "putref";
  }
  return "unknown";
}

/// Names of the member and its parameters. Only those of the first function with a DISPID can be
/// asked for; those of a property's writer stay empty.
std::vector<std::string> NamesOf(ITypeInfo& type, const FUNCDESC& function, bool is_first) {
  std::vector<BSTR> names(function.cParams + 1);
  UINT count = 0;
  const UINT wanted = is_first ? static_cast<UINT>(names.size()) : 1;
  Check(type.GetNames(function.memid, names.data(), wanted, &count), "GetNames");
  std::vector<std::string> texts;
  for (BSTR name : names) texts.push_back(TakeUtf8(name));
  return texts;
}

/// "slot 8 id 2 method HRESULT Increment([in, optional, default 1] long IncrByWhat)"
std::string FunctionText(ITypeInfo& type, const FUNCDESC& function, bool is_first) {
  std::string text;
  if (function.funckind != FUNC_DISPATCH) {
    text += "slot " + std::to_string(function.oVft / static_cast<int>(sizeof(void*))) + " ";
  }
  const std::vector<std::string> names = NamesOf(type, function, is_first);
  text += "id " + std::to_string(function.memid) + " " + InvokeKindName(function.invkind) + " " +
          Bracketed(FlagText(function.wFuncFlags, kMemberFlags)) +
          TypeName(type, function.elemdescFunc.tdesc) + " " + names[0] + "(";
  for (SHORT i = 0; i < function.cParams; ++i) {
    if (i > 0) text += ", ";
    text += ParameterText(type, function.lprgelemdescParam[i], names[i + 1]);
  }
  text += ")";
  constexpr SHORT kParameterArray = -1;
  if (function.cParamsOpt == kParameterArray) text += " vararg";
  if (function.callconv != CC_STDCALL) text += " convention " + std::to_string(function.callconv);
  return text;
}

std::string FunctionLines(ITypeInfo& type, UINT count) {
  std::string text;
  std::set<MEMBERID> described;
  for (UINT i = 0; i < count; ++i) {
    const FunctionDescription function = FunctionAt(type, i);
    const bool is_first = described.insert(function->memid).second;
    text += "  " + FunctionText(type, *function, is_first) + "\n";
    if (is_first) text += "    " + HelpLine(DocumentationOf(type, function->memid));
  }
  return text;
}

std::string VariableLines(ITypeInfo& type, UINT count) {
  std::string text;
  for (UINT i = 0; i < count; ++i) {
    const VariableDescription variable = VariableAt(type, i);
    text += "  " + Bracketed(FlagText(variable->wVarFlags, {})) +
            DocumentationOf(type, variable->memid).name;
    if (variable->varkind == VAR_CONST) text += " = " + ValueText(*variable->lpvarValue);
    text += "\n";
  }
  return text;
}

std::string ImplementedLines(ITypeInfo& type, UINT count) {
  std::string text;
  for (UINT i = 0; i < count; ++i) {
    INT flags = 0;
    Check(type.GetImplTypeFlags(i, &flags), "GetImplTypeFlags");
    text += "  " + Bracketed(FlagText(flags, kImplementationFlags)) +
            QualifiedName(type, *Implemented(type, i).Get()) + "\n";
  }
  return text;
}

const char* KindName(TYPEKIND kind) {
  switch (kind) {
    case TKIND_ENUM:
      return "enum";
    case TKIND_INTERFACE:
      return "interface";
    case TKIND_DISPATCH:
      return "dispinterface";
    case TKIND_COCLASS:
      return "coclass";
    default:
      return "other type";
  }
}

std::string TypeLines(ITypeInfo& type) {
  const TypeAttributes attributes = AttributesOf(type);
  const Documentation documentation = DocumentationOf(type);
  const std::string flags = FlagText(attributes->wTypeFlags, kTypeFlags);
  std::string text = std::string(KindName(attributes->typekind)) + " " + documentation.name + " " +
                     GuidText(attributes->guid) + (flags.empty() ? "" : " [" + flags + "]") +
                     "\n  " + HelpLine(documentation);
  if (attributes->typekind == TKIND_INTERFACE) {
    text += "  extends " + QualifiedName(type, *Implemented(type, 0).Get()) + "\n";
  }
  if (attributes->typekind == TKIND_COCLASS) {
    text += ImplementedLines(type, attributes->cImplTypes);
  }
  return text + VariableLines(type, attributes->cVars) + FunctionLines(type, attributes->cFuncs);
}

std::string LibraryLines(ITypeLib& library) {
  TLIBATTR* attributes = nullptr;
  Check(library.GetLibAttr(&attributes), "GetLibAttr");
  const std::unique_ptr<TLIBATTR, std::function<void(TLIBATTR*)>> owner(
      attributes, [&library](TLIBATTR* taken) { library.ReleaseTLibAttr(taken); });
  // Without its help context: Wine always tells 0.
  const Documentation documentation = DocumentationOf(library);
  // Whether the library came from a file is no part of what it says.
  const std::string flags = FlagText(attributes->wLibFlags & ~LIBFLAG_FHASDISKIMAGE, kLibraryFlags);
  return "library " + documentation.name + " " + std::to_string(attributes->wMajorVerNum) + "." +
         std::to_string(attributes->wMinorVerNum) + " " + GuidText(attributes->guid) + " locale " +
         std::to_string(attributes->lcid) + (flags.empty() ? "" : " [" + flags + "]") + " help " +
         documentation.help_file + "\n  \"" + documentation.help + "\"\n";
}

}  // namespace

std::string DumpTypeLibrary(ITypeLib& library) {
  std::string text = LibraryLines(library);
  for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    Check(library.GetTypeInfo(i, &type), "GetTypeInfo");
    text += "\n" + TypeLines(*VtableHalf(*type.Get()).Get());
  }
  return text;
}

}  // namespace zepkit10
