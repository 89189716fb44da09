#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zepcheck {

struct ClassOfLibrary {
  std::wstring name;
  std::wstring clsid;  // "{D66A34DB-…}"

  bool operator==(const ClassOfLibrary&) const = default;
};

/// What a type library says of itself and of the classes that clients may create.
struct TypeLibrary {
  std::wstring guid;
  int major = 0;
  int minor = 0;
  std::vector<ClassOfLibrary> classes;

  /// "1.10"
  std::wstring Version() const { return std::to_wstring(major) + L"." + std::to_wstring(minor); }
  /// Where it is registered, "TypeLib\\{683B888E-…}\\1.a": its version is hexadecimal there.
  std::wstring Key() const;
  /// "Zepkit10.Counter"
  std::wstring ProgId(const ClassOfLibrary& described) const {
    return L"Zepkit10." + described.name;
  }
  /// "Zepkit10.Counter.1"
  std::wstring VersionedProgId(const ClassOfLibrary& described) const {
    return ProgId(described) + L"." + std::to_wstring(major);
  }

  bool operator==(const TypeLibrary&) const = default;
};

/// The type library in a file, nothing if it has none.
std::optional<TypeLibrary> ReadTypeLibrary(const std::wstring& path);

}  // namespace zepcheck
