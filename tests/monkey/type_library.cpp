#include "monkey/type_library.h"

#include <algorithm>

#include "com/type_library_reader.h"

namespace monkey {
namespace {

using Microsoft::WRL::ComPtr;
using namespace zepkit10;

/// Types of one library, which its parameters refer to.
class Reader {
 public:
  explicit Reader(const std::wstring& path) {
    Check(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library_), "LoadTypeLibEx");
  }

  std::vector<Class> Read() {
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
      ComPtr<ITypeInfo> type;
      Check(library_->GetTypeInfo(i, &type), "GetTypeInfo");
      types_.push_back(type);
    }
    for (const auto& type : types_) AddInterface(*type.Get());
    for (const auto& type : types_) AddClass(*type.Get());
    for (std::size_t i = 0; i < classes_.size(); ++i) AddMembers(classes_[i], *duals_[i].Get());
    return classes_;
  }

 private:
  int IndexOf(const IID& iid) const {
    const auto found = std::find_if(classes_.begin(), classes_.end(),
                                    [&](const Class& each) { return each.iid == iid; });
    return found == classes_.end() ? kNoClass : static_cast<int>(found - classes_.begin());
  }

  void AddInterface(ITypeInfo& type) {
    const TypeAttributes attributes = AttributesOf(type);
    if (attributes->typekind != TKIND_DISPATCH || !(attributes->wTypeFlags & TYPEFLAG_FDUAL))
      return;
    Class& added = classes_.emplace_back();
    added.name = DocumentationOf(type).name.substr(1);  // without its underscore
    added.iid = attributes->guid;
    duals_.push_back(VtableHalf(type));
  }

  void AddClass(ITypeInfo& type) {
    const TypeAttributes attributes = AttributesOf(type);
    if (attributes->typekind != TKIND_COCLASS) return;
    Class* described = nullptr;
    for (UINT i = 0; i < attributes->cImplTypes; ++i) {
      INT flags = 0;
      Check(type.GetImplTypeFlags(i, &flags), "GetImplTypeFlags");
      const ComPtr<ITypeInfo> implemented = Implemented(type, i);
      if (flags & IMPLTYPEFLAG_FSOURCE) {
        AddEvents(*described, *implemented.Get());
      } else {
        described =
            &classes_.at(static_cast<std::size_t>(IndexOf(AttributesOf(*implemented.Get())->guid)));
      }
    }
    if (attributes->wTypeFlags & TYPEFLAG_FCANCREATE) described->clsid = attributes->guid;
  }

  static void AddEvents(Class& to, ITypeInfo& events) {
    to.events_iid = AttributesOf(events)->guid;
    for (UINT i = 0; i < AttributesOf(events)->cFuncs; ++i) {
      const FunctionDescription function = FunctionAt(events, i);
      Event event{function->memid, {}};
      for (SHORT p = 0; p < function->cParams; ++p) {
        const TYPEDESC& type = function->lprgelemdescParam[p].tdesc;
        event.types.push_back(type.vt == VT_PTR ? static_cast<VARTYPE>(VT_BYREF | type.lptdesc->vt)
                              : type.vt == VT_USERDEFINED ? VARTYPE{VT_I4}
                                                          : type.vt);
      }
      to.events.push_back(std::move(event));
    }
  }

  void AddMembers(Class& to, ITypeInfo& type) {
    for (UINT i = 0; i < AttributesOf(type)->cFuncs; ++i) {
      const FunctionDescription function = FunctionAt(type, i);
      Member member{DocumentationOf(type, function->memid).name,
                    function->memid,
                    static_cast<WORD>(function->invkind),
                    static_cast<ULONG>(function->oVft),
                    {},
                    function->cParamsOpt == -1};
      for (SHORT p = 0; p < function->cParams; ++p) {
        const ELEMDESC& described = function->lprgelemdescParam[p];
        Parameter parameter = Describe(type, described.tdesc);
        const USHORT flags = described.paramdesc.wParamFlags;
        parameter.is_result = (flags & PARAMFLAG_FRETVAL) != 0;
        parameter.is_optional = parameter.type == VT_VARIANT && (flags & PARAMFLAG_FOPT) != 0;
        member.parameters.push_back(parameter);
      }
      to.members.push_back(std::move(member));
    }
  }

  Parameter Describe(ITypeInfo& referrer, const TYPEDESC& type) const {
    Parameter parameter;
    if (type.vt == VT_PTR) {
      parameter = Describe(referrer, *type.lptdesc);
      // An interface is always behind a pointer, which does not make it one by reference.
      if (parameter.type != VT_USERDEFINED) {
        parameter.by_reference = true;
      } else {
        parameter.type = VT_DISPATCH;
      }
    } else if (type.vt == VT_SAFEARRAY) {
      parameter = Describe(referrer, *type.lptdesc);
      parameter.is_array = true;
    } else if (type.vt == VT_USERDEFINED) {
      ComPtr<ITypeInfo> referenced;
      Check(referrer.GetRefTypeInfo(type.hreftype, &referenced), "GetRefTypeInfo");
      const TypeAttributes attributes = AttributesOf(*referenced.Get());
      const bool is_enumeration = attributes->typekind == TKIND_ENUM;
      parameter.type = is_enumeration ? VT_I4 : VT_USERDEFINED;
      parameter.class_index = IndexOf(attributes->guid);
      parameter.is_platforms = !is_enumeration && parameter.class_index == kNoClass;
    } else {
      parameter.type = type.vt;
    }
    return parameter;
  }

  ComPtr<ITypeLib> library_;
  std::vector<ComPtr<ITypeInfo>> types_, duals_;
  std::vector<Class> classes_;
};

}  // namespace

std::vector<Class> ReadClasses(const std::wstring& path) { return Reader(path).Read(); }

std::string NameOf(const Class& described, const Member& member) {
  std::string name = described.name + "." + member.name;
  if (member.kind == INVOKE_PROPERTYPUT) name += " (let)";
  if (member.kind == INVOKE_PROPERTYPUTREF) name += " (set)";
  return name;
}

}  // namespace monkey
