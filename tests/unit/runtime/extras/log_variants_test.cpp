#include "runtime/extras/log_variants.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "support/unit_debug_log.h"

namespace {

using Strings = std::vector<std::string>;
using LogVariantsTest = DebugLogTest;

std::string Process() {
  return std::to_string(getpid());
}

TEST_F(LogVariantsTest, WideLineWithAndWithoutLevel) {
  SetMask("4");
  DebugLogWide(L"port %d %ls", 3, L"up");
  DebugLogLevelWide(4, L"failed");
  DebugLogLevelWide(1, L"traced");
  EXPECT_EQ(Lines(), (Strings{Head() + "port 3 up", Head("DEBUG      ") + "failed"}));
}

TEST_F(LogVariantsTest, MaskZeroAndEmptyFormatsWriteNothing) {
  DebugLogWide(L"line");
  DebugLogLevelWide(1, L"line");
  DebugLogAt("file.cpp", 1, "line");
  DebugLogLevelAt(1, "file.cpp", 1, "line");
  SetMask("1");
  const char* empty = "";
  const char* null = nullptr;
  DebugLogWide(L"");
  DebugLogWide(nullptr);
  DebugLogLevelWide(1, nullptr);
  DebugLogAt("file.cpp", 1, empty, 0);
  DebugLogAt("file.cpp", 1, null, 0);
  DebugLogLevelAt(1, "file.cpp", 1, empty, 0);
  EXPECT_EQ(Content(), "");
}

TEST_F(LogVariantsTest, WideMessageOf2000CharactersIsCutAt1024CharactersOfTheLine) {
  SetMask("1");
  DebugLogWide(L"%ls", std::wstring(2000, L'x').c_str());
  EXPECT_EQ(WithoutTime(Content()), Head() + std::string(1024 - Head().size(), 'x'));
}

TEST_F(LogVariantsTest, WideMessageLongerThanItsBufferIsCut) {
  SetMask("1");
  DebugLogWide(L"%ls", std::wstring(600000, L'x').c_str());
  EXPECT_EQ(WithoutTime(Content()), Head() + std::string(1024 - Head().size(), 'x'));
}

TEST_F(LogVariantsTest, WideMessageIsCutWhateverHasFailedBefore) {
  SetMask("1");
  errno = EILSEQ;
  DebugLogWide(L"%ls", std::wstring(600000, L'x').c_str());
  EXPECT_EQ(WithoutTime(Content()), Head() + std::string(1024 - Head().size(), 'x'));
}

TEST_F(LogVariantsTest, CharacterThatTheLocaleCannotShowBecomesAQuestionMark) {
  SetMask("1");
  DebugLogWide(L"a%lcb", static_cast<wint_t>(0x20ac));
  EXPECT_EQ(Lines(), Strings{Head() + "a?b"});
}

TEST_F(LogVariantsTest, FailedWideConversionLeavesTheMessageEmpty) {
  SetMask("1");
  DebugLogWide(L"%s", "before");
  DebugLogWide(L"part %s", "\xff\xfe");  // no characters of this locale
  EXPECT_EQ(Lines(), (Strings{Head() + "before", Head()}));
}

TEST_F(LogVariantsTest, PlaceIsPaddedWithBlanksTo25Characters) {
  SetMask("1");
  DebugLogAt("file.cpp", 42, "line %d", 1);
  // " file.cpp (42)" has 14 characters, so 11 blanks follow.
  EXPECT_EQ(Lines(), Strings{"CIM Provider " + Process() + " file.cpp (42)           : line 1"});
}

TEST_F(LogVariantsTest, LongerPlaceIsKeptWhole) {
  SetMask("16");
  DebugLogLevelAt(16, "a_rather_long_file_name.cpp", 12345, "line");
  EXPECT_EQ(Lines(),
            Strings{"CIM Provider DIAG_ERROR  " + Process() + " a_rather_long_file_name.cpp (12345): line"});
}

TEST_F(LogVariantsTest, PlaceWithLevelTestsTheMask) {
  SetMask("2");
  DebugLogLevelAt(4, "file.cpp", 1, "failure");
  DebugLogLevelAt(2, "file.cpp", 1, "warning");
  EXPECT_EQ(Lines(), Strings{"CIM Provider WARNING     " + Process() + " file.cpp (1)            : warning"});
}

TEST_F(LogVariantsTest, LeaveErrnoAlone) {
  SetMask("1");
  errno = 1234;
  DebugLogWide(L"line");
  EXPECT_EQ(errno, 1234);
  DebugLogAt("file.cpp", 1, "line");
  EXPECT_EQ(errno, 1234);
  EXPECT_EQ(Lines().size(), 2U);
}

}  // namespace
