#include <gtest/gtest.h>
#include <wrl/client.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

#include "com/component.h"
#include "com/type_library_dump.h"
#include "com/type_library_reader.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const char* kUpdateVariable = "ZEPKIT10_UPDATE_GOLDEN";

class TypeLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(S_OK, LoadTypeLibEx(component::ComponentPath().c_str(), REGKIND_NONE, &library_));
  }

  ComPtr<ITypeInfo> TypeAt(UINT position) {
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(S_OK, library_->GetTypeInfo(position, &type));
    return VtableHalf(*type.Get());
  }

  ComPtr<ITypeInfo> TypeNamed(const std::string& name) {
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
      ComPtr<ITypeInfo> type = TypeAt(i);
      if (DocumentationOf(*type.Get()).name == name) return type;
    }
    ADD_FAILURE() << "no type " << name;
    return nullptr;
  }

  ComPtr<ITypeLib> library_;
};

/// Wine shows the files of its host on drive Z.
std::string GoldenPath() {
  const std::string path = ZEPKIT10_SOURCE_DIR "/tests/com/golden/type_library.txt";
  return path.front() == '/' ? "Z:" + path : path;
}

std::string ReadGolden() {
  std::ifstream file(GoldenPath(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// "line 7: expected … found …" for the first line in which the texts differ.
std::string FirstDifference(const std::string& expected, const std::string& found) {
  std::istringstream expected_lines(expected);
  std::istringstream found_lines(found);
  for (int number = 1;; ++number) {
    std::string expected_line = "(end)";
    std::string found_line = "(end)";
    const bool more_expected = static_cast<bool>(std::getline(expected_lines, expected_line));
    const bool more_found = static_cast<bool>(std::getline(found_lines, found_line));
    if (expected_line != found_line || !(more_expected || more_found)) {
      return "line " + std::to_string(number) + "\n  expected " + expected_line + "\n  found    " +
             found_line;
    }
  }
}

std::map<std::string, MEMBERID> Dispids(ITypeInfo& type) {
  std::map<std::string, MEMBERID> dispids;
  const UINT count = AttributesOf(type)->cFuncs;
  for (UINT i = 0; i < count; ++i) {
    const MEMBERID dispid = FunctionAt(type, i)->memid;
    dispids[DocumentationOf(type, dispid).name] = dispid;
  }
  return dispids;
}

std::map<std::string, LONG> Constants(ITypeInfo& enumeration) {
  std::map<std::string, LONG> constants;
  const UINT count = AttributesOf(enumeration)->cVars;
  for (UINT i = 0; i < count; ++i) {
    const VariableDescription constant = VariableAt(enumeration, i);
    constants[DocumentationOf(enumeration, constant->memid).name] = constant->lpvarValue->lVal;
  }
  return constants;
}

TEST_F(TypeLibrary, EqualsItsGoldenDump) {
  const std::string dump = DumpTypeLibrary(*library_.Get());
  if (std::getenv(kUpdateVariable)) {
    std::ofstream(GoldenPath(), std::ios::binary) << dump;
  }
  const std::string golden = ReadGolden();
  EXPECT_TRUE(golden == dump) << FirstDifference(golden, dump)
                              << "\nIf the change is meant, run this test with " << kUpdateVariable
                              << "=1 and review the difference of " << GoldenPath();
}

TEST_F(TypeLibrary, DescribesEveryTypeAndMember) {
  EXPECT_NE("", DocumentationOf(*library_.Get()).help);
  for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
    const ComPtr<ITypeInfo> type = TypeAt(i);
    const Documentation documentation = DocumentationOf(*type.Get());
    EXPECT_NE("", documentation.help) << documentation.name;
    EXPECT_NE(0u, documentation.help_context) << documentation.name;
    for (const auto& [member, dispid] : Dispids(*type.Get())) {
      const Documentation of_member = DocumentationOf(*type.Get(), dispid);
      EXPECT_NE("", of_member.help) << documentation.name << "." << member;
      EXPECT_NE(0u, of_member.help_context) << documentation.name << "." << member;
    }
  }
}

TEST_F(TypeLibrary, GivesLibraryAndGlobalTheSameMembersUnderTheSameDispids) {
  const ComPtr<ITypeInfo> root = TypeNamed("_Library");
  const ComPtr<ITypeInfo> application = TypeNamed("_Global");
  ASSERT_TRUE(root && application);
  std::map<std::string, MEMBERID> expected = Dispids(*application.Get());
  EXPECT_EQ(1u, expected.erase("Zep"));
  EXPECT_EQ(expected, Dispids(*root.Get()));
}

TEST_F(TypeLibrary, HasBothNumbersOfOutOfMemory) {
  const ComPtr<ITypeInfo> runtime = TypeNamed("ZepVbErrors3To98");
  const ComPtr<ITypeInfo> objects = TypeNamed("ZepVbErrors31001To32811");
  ASSERT_TRUE(runtime && objects);
  EXPECT_EQ(7, Constants(*runtime.Get())["zepVbErrOutOfMemory"]);
  EXPECT_EQ(31001, Constants(*objects.Get())["zepVbErrOutOfMemory"]);
}

}  // namespace
}  // namespace zepkit10
