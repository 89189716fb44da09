// The properties of file dialogs; dialogs are shown in the other tests called after them.
#include "com/both_bindings.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

using Values = std::vector<Value>;

constexpr wchar_t kOverflow[] = L"Overflow";
constexpr wchar_t kBadPropertyValue[] = L"Invalid property value";

class FileDialogTest : public BothBindings {
 protected:
  Object dialog_ = Create(CLSID_FileDialog);
};

struct Flag {
  const wchar_t* name;
  bool preset;
};

constexpr Flag kFlags[] = {
    {L"ReadOnly", false},    {L"OverwritePrompt", true},     {L"HideReadOnly", false},
    {L"NoChangeDir", false}, {L"HelpButton", false},         {L"NoValidate", false},
    {L"Multiselect", false}, {L"PathMustExist", true},       {L"FileMustExist", false},
    {L"CreatePrompt", true}, {L"ShareAware", false},         {L"NoReadOnlyReturn", false},
    {L"NoLongNames", false}, {L"NoDereferenceLinks", false}, {L"LongNames", true},
};

constexpr const wchar_t* kTexts[] = {L"DefaultExt", L"DialogTitle", L"FileName", L"FileTitle",
                                     L"HelpFile",   L"HelpKey",     L"InitDir"};

TEST_P(FileDialogTest, StartsWithTheDefaults) {
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
  EXPECT_EQ(dialog_.Get(L"CancelError"), true);
  EXPECT_EQ(dialog_.Get(L"Filter"),
            L"Alle Dateien (*.*)|*.*|Textdateien (*.txt)|*.txt|Protokolldateien (*.log)|*.log|"
            L"Initialisierungsdateien (*.ini)|*.ini|DOS Batchdateien (*.bat)|*.bat");
  EXPECT_EQ(dialog_.Get(L"FilterIndex"), 2);
  EXPECT_EQ(dialog_.Get(L"MaxFileSize"), 256);
  EXPECT_EQ(dialog_.Get(L"HelpCommand"), 0);
  EXPECT_EQ(dialog_.Get(L"HelpContext"), 0);
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
  for (const Flag& flag : kFlags) EXPECT_EQ(dialog_.Get(flag.name), flag.preset) << flag.name;
  for (const wchar_t* text : kTexts) EXPECT_EQ(dialog_.Get(text), L"") << text;
}

TEST_P(FileDialogTest, EachFlagIsABitOfItsOwn) {
  for (const Flag& changed : kFlags) {
    SCOPED_TRACE(std::string(changed.name, changed.name + wcslen(changed.name)));
    for (const bool value : {!changed.preset, changed.preset}) {
      EXPECT_OK(dialog_.Let(changed.name, {value}));
      EXPECT_OK(dialog_.Let(changed.name, {value}));
      for (const Flag& flag : kFlags) {
        EXPECT_EQ(dialog_.Get(flag.name), flag.name == changed.name ? value : flag.preset);
      }
      EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
    }
  }
}

TEST_P(FileDialogTest, AllFlagsTogetherAreOneWord) {
  for (const bool value : {true, false}) {
    for (const Flag& flag : kFlags) EXPECT_OK(dialog_.Let(flag.name, {value}));
    for (const Flag& flag : kFlags) EXPECT_EQ(dialog_.Get(flag.name), value);
    EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
  }
}

TEST_P(FileDialogTest, CancelErrorIsAFieldOfItsOwn) {
  EXPECT_OK(dialog_.Let(L"CancelError", {false}));
  EXPECT_EQ(dialog_.Get(L"CancelError"), false);
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
  EXPECT_OK(dialog_.Let(L"CancelError", {true}));
  EXPECT_EQ(dialog_.Get(L"CancelError"), true);
}

TEST_P(FileDialogTest, CancelAndExtensionDifferentAreRead) {
  EXPECT_FALSE(dialog_.Let(L"Cancel", {true}).ok());
  EXPECT_FALSE(dialog_.Let(L"ExtensionDifferent", {true}).ok());
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
}

TEST_P(FileDialogTest, TextsPassThroughUnchanged) {
  const std::wstring texts[] = {L"a",
                                L" a ",
                                L"",
                                L".txt",
                                L"x|y",
                                L"\x4E2D\xD83D\xDE00",
                                std::wstring(L"a\0b", 3),
                                std::wstring(40000, L'x')};
  for (const wchar_t* name : kTexts) {
    for (const std::wstring& text : texts) {
      EXPECT_OK(dialog_.Let(name, {text}));
      EXPECT_EQ(dialog_.Get(name), text) << name;
    }
    EXPECT_OK(dialog_.Let(name, {name}));
  }
  for (const wchar_t* name : kTexts) EXPECT_EQ(dialog_.Get(name), name) << "each has its own";
}

TEST_P(FileDialogTest, FilterTakesPairs) {
  for (const wchar_t* filter : {L"All|*.*", L"a|*.a|b|*.b;*.c", L"", L" | "}) {
    EXPECT_OK(dialog_.Let(L"Filter", {filter}));
    EXPECT_EQ(dialog_.Get(L"Filter"), filter);
  }
}

TEST_P(FileDialogTest, FilterRefusesWhatIsNoPairs) {
  EXPECT_OK(dialog_.Let(L"Filter", {L"All|*.*"}));
  for (const std::wstring& filter :
       {std::wstring(L"All"), std::wstring(L"a|*.a|b"), std::wstring(L"a|*.a|"), std::wstring(L"|"),
        std::wstring(L"a||b|*.b"), std::wstring(L"a|*.\0a", 6)}) {
    EXPECT_ZEP_ERROR(dialog_.Let(L"Filter", {filter}), zepErrBadPropValue, L"FileDialog");
    EXPECT_EQ(dialog_.Get(L"Filter"), L"All|*.*");
  }
}

TEST_P(FileDialogTest, FilterIndexHas16Bits) {
  for (const int index : {0, 1, -1, 32767, -32768, 3}) {
    EXPECT_OK(dialog_.Let(L"FilterIndex", {index}));
    EXPECT_EQ(dialog_.Get(L"FilterIndex"), index);
  }
  for (const int index : {32768, 40000, -32769, 65538, INT_MAX, INT_MIN}) {
    EXPECT_ZEP_ERROR(dialog_.Let(L"FilterIndex", {index}), zepErrBadPropValue, L"FileDialog");
    EXPECT_EQ(dialog_.Get(L"FilterIndex"), 3);
  }
}

TEST_P(FileDialogTest, MaxFileSizeHas16BitsAndIsPositive) {
  for (const int size : {1, 32767, 2048}) {
    EXPECT_OK(dialog_.Let(L"MaxFileSize", {size}));
    EXPECT_EQ(dialog_.Get(L"MaxFileSize"), size);
  }
  for (const int size : {32768, -32769, 65792, INT_MAX, INT_MIN}) {
    EXPECT_ERROR(dialog_.Let(L"MaxFileSize", {size}), 6, L"Zepkit10.FileDialog", kOverflow);
  }
  for (const int size : {0, -1, -32768}) {
    EXPECT_ERROR(dialog_.Let(L"MaxFileSize", {size}), 380, L"Zepkit10.FileDialog",
                 kBadPropertyValue);
  }
  EXPECT_EQ(dialog_.Get(L"MaxFileSize"), 2048);
}

TEST_P(FileDialogTest, HelpCommandHas16BitsAndPassesThrough) {
  for (const int command : {1, 2, 3, 4, 5, 8, 9, 257, 258, 261, 0, 77, 32767, -1, -32768}) {
    EXPECT_OK(dialog_.Let(L"HelpCommand", {command}));
    EXPECT_EQ(dialog_.Get(L"HelpCommand"), command);
  }
  for (const int command : {32768, -32769, INT_MAX, INT_MIN}) {
    EXPECT_ERROR(dialog_.Let(L"HelpCommand", {command}), 6, L"Zepkit10.FileDialog", kOverflow);
    EXPECT_EQ(dialog_.Get(L"HelpCommand"), -32768);
  }
}

TEST_P(FileDialogTest, HelpContextHas32Bits) {
  for (const int context : {1, -1, INT_MAX, INT_MIN}) {
    EXPECT_OK(dialog_.Let(L"HelpContext", {context}));
    EXPECT_EQ(dialog_.Get(L"HelpContext"), context);
  }
}

TEST(FileDialogConstantsTest, HelpCommandsAreTheHelpEngines) {
  EXPECT_EQ(HELP_CONTEXT, static_cast<unsigned>(zepFDHelpContext));
  EXPECT_EQ(HELP_QUIT, static_cast<unsigned>(zepFDHelpQuit));
  EXPECT_EQ(HELP_CONTENTS, static_cast<unsigned>(zepFDHelpContents));
  EXPECT_EQ(HELP_INDEX, static_cast<unsigned>(zepFDHelpIndex));
  EXPECT_EQ(HELP_HELPONHELP, static_cast<unsigned>(zepFDHelpHelpOnHelp));
  EXPECT_EQ(HELP_SETCONTENTS, static_cast<unsigned>(zepFDHelpSetContents));
  EXPECT_EQ(HELP_SETINDEX, static_cast<unsigned>(zepFDHelpSetIndex));
  EXPECT_EQ(HELP_CONTEXTPOPUP, static_cast<unsigned>(zepFDHelpContextPopup));
  EXPECT_EQ(HELP_FORCEFILE, static_cast<unsigned>(zepFDHelpForceFile));
  EXPECT_EQ(HELP_KEY, static_cast<unsigned>(zepFDHelpKey));
  EXPECT_EQ(HELP_COMMAND, static_cast<unsigned>(zepFDHelpCommandHelp));
  EXPECT_EQ(HELP_PARTIALKEY, static_cast<unsigned>(zepFDHelpPartialKey));
}

TEST_P(FileDialogTest, FileNamesSplitsFileNameAtEveryNul) {
  EXPECT_EQ(dialog_.GetObject(L"FileNames").Values(), Values{});
  EXPECT_OK(dialog_.Let(L"FileName", {L"C:\\a b.txt"}));
  EXPECT_EQ(dialog_.GetObject(L"FileNames").Values(), (Values{L"C:\\a b.txt"}));
  EXPECT_OK(dialog_.Let(L"FileName", {std::wstring(L"C:\\d\0a\0\"b\"", 10)}));
  EXPECT_EQ(dialog_.GetObject(L"FileNames").Values(), (Values{L"C:\\d", L"a", L"\"b\""}));
  EXPECT_OK(dialog_.Let(L"FileName", {std::wstring(L"a\0\0b", 4)}));
  EXPECT_EQ(dialog_.GetObject(L"FileNames").Values(), (Values{L"a", L"", L"b"}));
}

TEST_P(FileDialogTest, FileNamesIsANewCollectionEachTime) {
  EXPECT_OK(dialog_.Let(L"FileName", {L"a"}));
  const Object first = dialog_.GetObject(L"FileNames");
  const Object second = dialog_.GetObject(L"FileNames");
  EXPECT_NE(first.get(), second.get());
  EXPECT_OK(first.Call(L"Add", {L"b"}));
  EXPECT_EQ(dialog_.Get(L"FileName"), L"a");
  EXPECT_EQ(second.Get(L"Count"), 1);
}

TEST_P(FileDialogTest, FileNamesJoinsACollectionWithNuls) {
  EXPECT_OK(dialog_.Let(L"FileName", {std::wstring(L"C:\\d\0a\0", 7)}));
  const Object names = dialog_.GetObject(L"FileNames");
  EXPECT_OK(names.Call(L"Add", {L"b"}));
  EXPECT_OK(dialog_.Let(L"FileName", {L""}));
  EXPECT_OK(dialog_.Set(L"FileNames", {names}));
  EXPECT_EQ(dialog_.Get(L"FileName"), std::wstring(L"C:\\d\0a\0\0b", 9));
  const Object list = Create(CLSID_List);
  EXPECT_OK(list.Let(L"ListString", {L"x y"}));
  EXPECT_OK(dialog_.Set(L"FileNames", {list}));  // any collection will do
  EXPECT_EQ(dialog_.Get(L"FileName"), std::wstring(L"x\0y", 3));
  EXPECT_OK(dialog_.Set(L"FileNames", {Value::Nothing()}));
  EXPECT_EQ(dialog_.Get(L"FileName"), L"");
}

TEST_P(FileDialogTest, FileNamesRefusesItemsThatAreNoStrings) {
  EXPECT_OK(dialog_.Let(L"FileName", {L"a"}));
  const Object names = dialog_.GetObject(L"FileNames");
  EXPECT_OK(names.Call(L"Add", {1}));
  EXPECT_ZEP_ERROR(dialog_.Set(L"FileNames", {names}), zepErrBadCall, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"FileName"), L"a");
}

TEST_P(FileDialogTest, FileNamesRefusesWhatIsNoCollection) {
  EXPECT_OK(dialog_.Let(L"FileName", {L"a"}));
  const auto refused = dialog_.Set(L"FileNames", {dialog_});
  EXPECT_EQ(451, refused.number);
  EXPECT_EQ(dialog_.Get(L"FileName"), L"a");
}

TEST_P(FileDialogTest, TwoObjectsHaveTwoControls) {
  Object other = Create(CLSID_FileDialog);
  EXPECT_OK(dialog_.Let(L"FileName", {L"a"}));
  EXPECT_OK(dialog_.Let(L"Multiselect", {true}));
  EXPECT_OK(dialog_.Let(L"CancelError", {false}));
  EXPECT_OK(dialog_.Let(L"FilterIndex", {5}));
  EXPECT_EQ(other.Get(L"FileName"), L"");
  EXPECT_EQ(other.Get(L"Multiselect"), false);
  EXPECT_EQ(other.Get(L"CancelError"), true);
  EXPECT_EQ(other.Get(L"FilterIndex"), 2);
  other.Reset();
  EXPECT_EQ(dialog_.Get(L"FileName"), L"a") << "the other's end is not this one's";
  dialog_.Reset();
  EXPECT_EQ(Create(CLSID_FileDialog).Get(L"FileName"), L"") << "nothing outlives the last one";
}

RUN_IN_BOTH_BINDINGS(FileDialogTest);

}  // namespace
