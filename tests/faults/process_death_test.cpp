// A process that dies while a document is transferred: what its file holds then.
#include "com/doc_hand_fixture.h"
#include "faults/dying_process.h"

namespace {

using faults::kDied;
using faults::LetProcessDie;
using faults::Transfer;

class ProcessDeathTest : public WithDocument {
 protected:
  /// Another process could open the file and finds what it holds.
  void ExpectOpens(const std::string& content) {
    EXPECT_OK(Open(path_));
    EXPECT_EQ(content, Bytes());
    EXPECT_OK(Close());
  }
};

// The file is emptied first and then written in place: there is no copy of what it held.
TEST_P(ProcessDeathTest, ASavingLeavesTheBytesWrittenSoFar) {
  const std::string content = faults::SavedContent();
  const int length = static_cast<int>(content.size());
  for (const int bytes : {0, 1, length / 2, length - 1, length}) {
    folder_.File(L"a.txt", Pattern(5000));
    EXPECT_EQ(kDied, LetProcessDie(Transfer::kSave, bytes, path_)) << bytes;
    EXPECT_EQ(content.substr(0, static_cast<std::size_t>(bytes)), folder_.Read(L"a.txt")) << bytes;
    ExpectOpens(content.substr(0, static_cast<std::size_t>(bytes)));
  }
}

TEST_P(ProcessDeathTest, AnOpeningLeavesTheFileAsItWas) {
  constexpr int kFileLength = 5000;
  for (const int bytes : {0, 1, kFileLength / 2, kFileLength - 1, kFileLength}) {
    folder_.File(L"a.txt", Pattern(kFileLength));
    EXPECT_EQ(kDied, LetProcessDie(Transfer::kOpen, bytes, path_)) << bytes;
    EXPECT_EQ(Pattern(kFileLength), folder_.Read(L"a.txt")) << bytes;
    ExpectOpens(Pattern(kFileLength));
  }
}

INSTANTIATE_TEST_SUITE_P(LateBound, ProcessDeathTest, testing::Values(client::Binding::kDispatch),
                         testing::PrintToStringParamName());

}  // namespace
