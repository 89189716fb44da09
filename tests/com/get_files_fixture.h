#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "com/both_roots.h"
#include "com/temporary_folder.h"

using Texts = std::vector<std::wstring>;

/// A client's variable for an array of strings.
class TextVariable {
 public:
  TextVariable() = default;
  explicit TextVariable(SAFEARRAY* array) : array_(array) {}
  ~TextVariable() { SafeArrayDestroy(array_); }
  TextVariable(const TextVariable&) = delete;
  TextVariable& operator=(const TextVariable&) = delete;

  client::Value Reference() {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
    reference.pparray = &array_;
    return client::Value(reference);
  }

  SAFEARRAY* array() const { return array_; }
  SAFEARRAY** address() { return &array_; }

  /// What GetFiles put there: an array of strings from 0.
  Texts Read() const {
    Texts texts;
    if (!array_) return texts;
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(S_OK, SafeArrayGetVartype(array_, &type));
    EXPECT_EQ(VT_BSTR, type);
    EXPECT_EQ(1, array_->cDims);
    EXPECT_EQ(0, array_->rgsabound[0].lLbound);
    for (ULONG i = 0; i < array_->rgsabound[0].cElements; ++i) {
      BSTR text = static_cast<BSTR*>(array_->pvData)[i];
      texts.emplace_back(text, SysStringLen(text));
    }
    return texts;
  }

 private:
  SAFEARRAY* array_ = nullptr;
};

/// A folder whose files are listed.
class WithListing : public BothRoots {
 protected:
  client::Outcome Call(const std::wstring& path, const std::wstring& spec,
                       const client::Value& files, bool recursive) const {
    return root_.Call(L"GetFiles", {path, spec, files, recursive});
  }

  /// Lists into a new variable; the result must be the number of files.
  Texts List(const std::wstring& path, const std::wstring& spec, bool recursive = false) const {
    TextVariable files;
    const client::Outcome outcome = Call(path, spec, files.Reference(), recursive);
    const Texts texts = files.Read();
    EXPECT_EQ(outcome, static_cast<int>(texts.size()));
    return texts;
  }

  Texts In(std::wstring_view directory, const Texts& names) const {
    Texts paths;
    for (const std::wstring& name : names) {
      paths.push_back((folder_ / directory).append(name));
    }
    return paths;
  }

  /// What a listing of a tree means, step by step.
  void ListStepByStep(const std::wstring& directory, const std::wstring& spec, Texts* all) const {
    const Texts files = List(directory, spec);
    all->insert(all->end(), files.begin(), files.end());
    for (short i = 1;; ++i) {
      const client::Outcome name = root_.Call(L"GetSubDir", {directory, i});
      if (!name.ok() || name == L"") return;
      ListStepByStep(directory + name.value.raw().bstrVal + L"\\", spec, all);
    }
  }

  TemporaryFolder folder_;
};

inline Texts Sorted(Texts texts) {
  std::sort(texts.begin(), texts.end());
  return texts;
}
