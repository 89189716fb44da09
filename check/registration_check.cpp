#include "registration_check.h"

#include "advice.h"
#include "bitness.h"
#include "dll_file.h"

namespace zepcheck {
namespace {

std::wstring Joined(const std::vector<std::wstring>& names) {
  std::wstring text;
  for (const std::wstring& name : names) text += (text.empty() ? L"" : L", ") + name;
  return text;
}

std::wstring ClassKey(const ClassOfLibrary& described) { return L"CLSID\\" + described.clsid; }

bool IsSameText(const std::wstring& first, const std::wstring& second) {
  return IsSamePath(first, second);  // GUIDs and names are compared as paths are
}

/// A path of the registry may stand in quotes.
std::wstring WithoutQuotes(std::wstring path) {
  if (path.size() > 1 && path.front() == L'"' && path.back() == L'"') {
    path = path.substr(1, path.size() - 2);
  }
  return path;
}

}  // namespace

bool RegistrationCheck::IsRegistered(const TypeLibrary& expected, const Place& place,
                                     std::wstring* dll) {
  for (const ClassOfLibrary& each : expected.classes) {
    const auto server = ReadClasses(place, ClassKey(each) + L"\\InprocServer32");
    if (server && dll) *dll = WithoutQuotes(*server);
    if (server) return true;
  }
  return false;
}

bool RegistrationCheck::Run() {
  const bool is_for_all = place_.root == HKEY_LOCAL_MACHINE;
  report_.Heading(is_for_all ? L"Registered for all users" : L"Registered for you alone");
  if (!IsRegistered(expected_, place_, nullptr)) {
    report_.Fact(L"nothing", std::wstring(L"for ") + BitnessText(kIs64Bit) + L" programs");
    return false;
  }
  for (const ClassOfLibrary& each : expected_.classes) CheckClass(each);
  if (!missing_.empty()) Fault(L"These classes are not registered: " + Joined(missing_) + L".");
  CheckFiles();
  CheckTypeLibrary();
  return true;
}

void RegistrationCheck::CheckClass(const ClassOfLibrary& described) {
  const std::wstring key = ClassKey(described);
  const auto server = ReadClasses(place_, key + L"\\InprocServer32");
  if (!server) {
    missing_.push_back(described.name);
    return;
  }
  files_[WithoutQuotes(*server)].push_back(described.name);
  report_.Fact(described.name, expected_.ProgId(described) + L", " +
                                   expected_.VersionedProgId(described) + L", " + described.clsid);
  CheckValue(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  CheckValue(key + L"\\ProgID", nullptr, expected_.VersionedProgId(described));
  CheckValue(key + L"\\VersionIndependentProgID", nullptr, expected_.ProgId(described));
  CheckValue(key + L"\\TypeLib", nullptr, expected_.guid);
  CheckValue(key + L"\\Version", nullptr, expected_.Version());
  CheckProgId(described, expected_.ProgId(described));
  CheckProgId(described, expected_.VersionedProgId(described));
  CheckValue(expected_.ProgId(described) + L"\\CurVer", nullptr,
             expected_.VersionedProgId(described));
}

void RegistrationCheck::CheckProgId(const ClassOfLibrary& described, const std::wstring& prog_id) {
  const auto clsid = ReadClasses(place_, prog_id + L"\\CLSID");
  if (!clsid) {
    Fault(L"The name " + prog_id + L" leads nowhere.");
  } else if (!IsSameText(*clsid, described.clsid)) {
    Fault(
        L"The name " + prog_id + L" leads to the class " + *clsid + L" instead of " +
            described.clsid + L".",
        L"Another program took the name: remove that program, and then register again. " + Again());
  }
}

void RegistrationCheck::CheckValue(const std::wstring& key, const wchar_t* name,
                                   const std::wstring& expected) {
  const auto found = ReadClasses(place_, key, name);
  const std::wstring value = key + (name ? std::wstring(L", ") + name : L"");
  if (!found) {
    Fault(L"The value " + value + L" is missing.");
  } else if (!IsSameText(*found, expected)) {
    Fault(L"The value " + value + L" is \"" + *found + L"\" instead of \"" + expected + L"\".");
  }
}

void RegistrationCheck::CheckFiles() {
  for (const auto& [path, names] : files_) {
    CheckFile(path);
    if (files_.size() > 1) {
      Fault(L"The classes are in different files; in " + path + L" are: " + Joined(names) + L".");
    }
  }
}

void RegistrationCheck::CheckFile(const std::wstring& path) {
  report_.Fact(L"file", path);
  if (!FileExists(path)) {
    Fault(L"The file " + path + L" is registered, but it is not there.",
          L"Put it back, or register the one that you have. " + Again());
    return;
  }
  const auto is_64_bit = Is64BitFile(path);
  if (!is_64_bit) {
    Fault(L"The file " + path + L" is registered, but it is no DLL.");
    return;
  }
  const std::wstring version = VersionOfFile(path);
  report_.Fact(L"version", version + L", " + BitnessText(*is_64_bit));
  if (*is_64_bit != kIs64Bit) {
    Fault(L"The file " + path + L" is for " + BitnessText(*is_64_bit) + L" programs, but it is " +
          L"registered for " + BitnessText(kIs64Bit) + L" ones.");
  }
  const std::wstring own = VersionOfFile(OwnPath());
  if (version != own) {
    Fault(L"The file is of version " + version + L", and this zepcheck is of version " + own + L".",
          L"Take the zepcheck of that version, or install version " + own + L". " + Again());
  }
}

void RegistrationCheck::CheckTypeLibrary() {
  const std::wstring key = expected_.Key() + L"\\0\\" + (kIs64Bit ? L"win64" : L"win32");
  const auto path = ReadClasses(place_, key);
  if (!path) {
    Fault(L"The type library is not registered.");
    return;
  }
  report_.Fact(L"type library", expected_.Version() + L", " + *path);
  const auto library = ReadTypeLibrary(*path);
  if (!library) {
    Fault(L"The registered path of the type library, " + *path + L", leads to no type library.");
  } else if (*library != expected_) {
    Fault(L"The type library in " + *path + L" describes other classes: it is " + library->guid +
          L" " + library->Version() + L".");
  } else if (!files_.empty() && !IsSamePath(*path, files_.begin()->first)) {
    Fault(L"The type library is registered in " + *path + L", but the classes are in " +
          files_.begin()->first + L".");
  }
}

void RegistrationCheck::Fault(const std::wstring& sentence, const std::wstring& advice) {
  report_.Fault(sentence, advice);
}

std::wstring RegistrationCheck::Again() const {
  return HowToRegister(place_.root == HKEY_LOCAL_MACHINE);
}

}  // namespace zepcheck
