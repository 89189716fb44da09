// Every member of every class called with zeros for its arguments, early and late bound: what a
// call leaves behind, whether it succeeds or fails.
#include <algorithm>
#include <cstring>
#include <vector>

#include "com/class_walk.h"
#include "com/client.h"
#include "com/component.h"
#include "com/directory_keeper.h"
#include "com/references.h"
#include "com/temporary_folder.h"

namespace {

using class_walk::Class;
using class_walk::Slot;
using Microsoft::WRL::ComPtr;

/// A dialog would wait for its user.
bool ShowsADialog(const Slot& slot) {
  constexpr const wchar_t* kDialogs[] = {L"ShowAbout", L"ShowOpen", L"ShowSave", L"OpenFileByCdl",
                                         L"SaveAsByCdl"};
  return std::count(std::begin(kDialogs), std::end(kDialogs), slot.name) > 0;
}

/// Room for the result of a member, filled with what an earlier call left.
class Result {
 public:
  explicit Result(VARTYPE type) : type_(static_cast<VARTYPE>(type & ~VT_BYREF)) {
    std::memset(&room_, 0xCC, sizeof room_);
  }
  void* room() { return type_ == VT_VARIANT ? static_cast<void*>(&room_) : &room_.byref; }

  bool IsCleared() const {
    if (type_ == VT_VARIANT) return room_.vt == VT_EMPTY;
    constexpr char kZeros[sizeof(VARIANT)] = {};
    return std::memcmp(&room_.byref, kZeros, Size()) == 0;
  }
  /// What a member that succeeded has given.
  void Free() {
    if (type_ != VT_VARIANT) room_.vt = type_ == VT_SAFEARRAY ? VT_ARRAY | VT_VARIANT : type_;
    EXPECT_EQ(S_OK, VariantClear(&room_));
  }

 private:
  std::size_t Size() const {
    switch (type_) {
      case VT_UI1:
        return 1;
      case VT_BOOL:
      case VT_I2:
        return 2;
      case VT_I4:
      case VT_R4:
        return 4;
      case VT_R8:
      case VT_DATE:
        return 8;
      case VT_BSTR:
      case VT_DISPATCH:
      case VT_UNKNOWN:
      case VT_SAFEARRAY:
        return sizeof(void*);
    }
    ADD_FAILURE() << "a result of type " << type_;
    return 0;
  }

  const VARTYPE type_;
  VARIANT room_;
};

class ZeroArgumentsTest : public component::Test {
 protected:
  ZeroArgumentsTest() { SetCurrentDirectoryW(folder_.path().c_str()); }  // files may be made

  /// Calls a function with an object of every class and each of its members.
  template <class Call>
  void ForEveryMember(Call call) {
    int members = 0;
    for (const Class& each : class_walk::Classes()) {
      const ComPtr<IDispatch> object = class_walk::FindObjects().at(each.name);
      ComPtr<IUnknown> typed;
      ASSERT_EQ(S_OK, object->QueryInterface(each.default_interface,
                                             reinterpret_cast<void**>(typed.GetAddressOf())));
      for (const Slot& slot : class_walk::SlotsOf(each.default_interface)) {
        if (ShowsADialog(slot)) continue;
        SCOPED_TRACE(std::string(each.name.begin(), each.name.end()) + "." +
                     std::string(slot.name.begin(), slot.name.end()));
        const ULONG before = ReferencesOf(object.Get());
        call(object.Get(), typed.Get(), slot);
        EXPECT_EQ(before, ReferencesOf(object.Get()));
        ++members;
      }
      // A document leaves its file open otherwise.
      client::Object(object.Get(), client::Binding::kDispatch).Call(L"CloseFile");
    }
    EXPECT_LT(300, members);
  }

 private:
  const TemporaryFolder folder_;
  const DirectoryKeeper directory_;
};

TEST_F(ZeroArgumentsTest, LateBoundCallsLeaveNoReferences) {
  ForEveryMember([](IDispatch* object, IUnknown*, const Slot& slot) {
    std::vector<VARIANT> arguments(slot.types.size() - (slot.has_result ? 1 : 0));
    for (VARIANT& each : arguments) each.vt = VT_I4, each.lVal = 0;
    DISPID assigned = DISPID_PROPERTYPUT;
    const bool assigns = slot.kind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF);
    DISPPARAMS parameters{arguments.data(), assigns ? &assigned : nullptr,
                          static_cast<UINT>(arguments.size()), assigns ? 1u : 0u};
    VARIANT result;
    std::memset(&result, 0xCC, sizeof result);
    const HRESULT hr =
        object->Invoke(slot.id, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(slot.kind),
                       &parameters, assigns ? nullptr : &result, nullptr, nullptr);
    if (assigns) return;
    if (FAILED(hr)) {
      EXPECT_EQ(VT_EMPTY, result.vt);
    }
    EXPECT_EQ(S_OK, VariantClear(&result));
  });
}

TEST_F(ZeroArgumentsTest, FailedEarlyBoundCallsClearTheirResults) {
  int failed = 0;
  ForEveryMember([&](IDispatch*, IUnknown* typed, const Slot& slot) {
    if (!slot.has_result) return;
    Result result(slot.types.back());
    const HRESULT hr = class_walk::CallWithZeros(typed, slot, result.room());
    if (SUCCEEDED(hr)) return result.Free();
    EXPECT_TRUE(result.IsCleared());
    ++failed;
  });
  EXPECT_LT(20, failed);
}

}  // namespace
