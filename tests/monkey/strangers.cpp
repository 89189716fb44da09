#include "monkey/strangers.h"

#include <cwchar>

#include "com/foreign.h"

namespace monkey {
namespace {

using Interfere = std::function<void()>;

long live_enumerators = 0;

/// Has every member and takes everything.
class Patient : public foreign::Object<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID,
                                          DISPID* ids) override {
    for (UINT i = 0; i < count; ++i) ids[i] = static_cast<DISPID>(i) + 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return S_OK;
  }
};

/// Raises an error in every member, in one of the ways that there are.
class Raiser final : public Patient {
 public:
  explicit Raiser(std::mt19937& random) : random_(random) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*,
                                   EXCEPINFO* exception, UINT*) override {
    const auto way = random_() % 4;
    if (way == 0 || !exception) return DISP_E_TYPEMISMATCH;
    *exception = {};
    if (way == 1) {
      exception->pfnDeferredFillIn = FillIn;
    } else {
      FillIn(exception);
    }
    if (way == 2) {
      exception->scode = 0;
      exception->wCode = 1234;
    }
    return DISP_E_EXCEPTION;
  }

 private:
  static HRESULT WINAPI FillIn(EXCEPINFO* exception) {
    exception->scode = kStrangersError;
    exception->bstrSource = SysAllocString(kStrangersSource);
    exception->bstrDescription = SysAllocString(L"raised");
    return S_OK;
  }

  std::mt19937& random_;
};

/// Does something whenever it is asked for its identity or its value, or released.
class Meddler final : public Patient {
 public:
  Meddler(std::mt19937& random, const Interfere& interfere)
      : random_(random), interfere_(interfere) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (iid == IID_IUnknown) interfere_();
    return Object::QueryInterface(iid, result);
  }
  ULONG STDMETHODCALLTYPE Release() override {
    --references;
    interfere_();
    return 1;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    interfere_();
    if (!result) return S_OK;
    result->vt = VT_I4;
    result->lVal = static_cast<LONG>(random_() % 5);
    if (random_() % 4 == 0) {
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(L"Text");
    }
    return S_OK;
  }

 private:
  std::mt19937& random_;
  const Interfere& interfere_;
};

/// Gives a few numbers and texts, and now and then an error.
class Numbers final : public IEnumVARIANT {
 public:
  Numbers(std::mt19937& random, const Interfere& interfere)
      : random_(random), interfere_(interfere), left_(random() % 6) {
    ++live_enumerators;
  }
  virtual ~Numbers() { --live_enumerators; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IEnumVARIANT;
    *result = known ? this : nullptr;
    if (known) ++references_;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override {
    interfere_();
    ULONG given = 0;
    for (; given < count && left_ > 0; ++given, --left_) {
      values[given].vt = VT_I4;
      values[given].lVal = static_cast<LONG>(random_() % 100);
      if (random_() % 2) {
        values[given].vt = VT_BSTR;
        values[given].bstrVal = SysAllocString(L"element");
      }
    }
    if (fetched) *fetched = given;
    if (given < count && random_() % 8 == 0) return E_FAIL;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

 private:
  std::mt19937& random_;
  const Interfere& interfere_;
  std::size_t left_;
  ULONG references_ = 1;
};

/// A collection as a client writes one.
class Collection final : public foreign::Object<IDispatch> {
 public:
  Collection(std::mt19937& random, const Interfere& interfere)
      : random_(random), interfere_(interfere) {}

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    constexpr std::pair<const wchar_t*, DISPID> kMembers[] = {
        {L"Item", 0}, {L"Add", 1}, {L"Count", 2}, {L"Remove", 3}, {L"_NewEnum", DISPID_NEWENUM}};
    for (const auto& [name, id] : kMembers) {
      if (_wcsicmp(names[0], name) == 0) return ids[0] = id, S_OK;
    }
    return ids[0] = DISPID_UNKNOWN, DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    interfere_();
    if (random_() % 16 == 0) return DISP_E_OVERFLOW;
    if (!result) return S_OK;
    if (id == DISPID_NEWENUM) {
      result->vt = VT_UNKNOWN;
      result->punkVal = new Numbers(random_, interfere_);
    } else {
      result->vt = VT_I4;
      result->lVal = static_cast<LONG>(random_() % 4);
    }
    return S_OK;
  }

 private:
  std::mt19937& random_;
  const Interfere& interfere_;
};

}  // namespace

struct Strangers::Residents {
  Residents(std::mt19937& random, const Interfere& interfere)
      : raiser(random), meddler(random, interfere), collection(random, interfere) {}

  foreign::Expression expression;
  foreign::VarSet var_set;
  foreign::ZepVariant buffer;
  Patient patient;
  Raiser raiser;
  Meddler meddler;
  Collection collection;
};

Strangers::Strangers(std::mt19937& random, const Interfere& interfere)
    : residents_(std::make_unique<Residents>(random, interfere)) {
  Residents& all = *residents_;
  all_ = {&all.expression, &all.var_set, &all.buffer,    &all.patient,
          &all.raiser,     &all.meddler, &all.collection};
}

Strangers::~Strangers() = default;

long Strangers::References() const {
  const Residents& all = *residents_;
  const ULONG references = all.expression.references + all.var_set.references +
                           all.buffer.references + all.patient.references + all.raiser.references +
                           all.meddler.references + all.collection.references;
  return static_cast<long>(references) - static_cast<long>(all_.size()) + live_enumerators;
}

}  // namespace monkey
