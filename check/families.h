#pragma once

#include <span>
#include <string>

#include "client.h"

namespace zepcheck {

/// What there is to use in a family's test: a root object and an empty folder.
struct Workbench {
  Object zepkit;
  std::wstring folder;
};

/// A group of classes or members and its test, which throws Failure.
struct Family {
  const wchar_t* name;
  void (*test)(const Workbench& bench);
};

std::span<const Family> CalculatingFamilies();  // terms, variables, charts …
std::span<const Family> HoldingFamilies();      // buffers, lists, arrays …
std::span<const Family> OutsideFamilies();      // documents, files, keyboard …

/// Throws Failure unless the value reads as this text.
void Expect(const wchar_t* what, const Value& found, const std::wstring& expected);

}  // namespace zepcheck
