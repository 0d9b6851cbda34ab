#include "runtime/debug_log.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "support/unit_debug_log.h"

namespace {

using Strings = std::vector<std::string>;

// The mask

TEST_F(DebugLogTest, MaskIsTheDecimalNumberOfTheVariable) {
  SetMask("65535");
  EXPECT_EQ(DebugMask(), 65535);
  SetMask(" 12abc");
  EXPECT_EQ(DebugMask(), 12);
  SetMask("-1");
  EXPECT_EQ(DebugMask(), -1);
}

TEST_F(DebugLogTest, UnsetOrNonNumericVariableGivesMaskZero) {
  SetMask("5");
  unsetenv("ZNFC_DEBUG_LEVEL");
  InitDebugLog();
  EXPECT_EQ(DebugMask(), 0);
  for (const char* value : {"", "abc", "0x10", "+", "-"}) {
    SetMask("5");
    SetMask(value);
    EXPECT_EQ(DebugMask(), 0) << value;
  }
}

TEST_F(DebugLogTest, MaskKeepsTheLow32BitsOfTheNumber) {
  SetMask("4294967297");
  EXPECT_EQ(DebugMask(), 1);
  SetMask("2147483648");
  EXPECT_EQ(DebugMask(), INT32_MIN);
  SetMask("99999999999999999999");
  EXPECT_EQ(DebugMask(), -1);
}

TEST_F(DebugLogTest, IsDebugLevelOnTestsTheBits) {
  SetMask("5");
  EXPECT_TRUE(IsDebugLevelOn(1));
  EXPECT_TRUE(IsDebugLevelOn(4));
  EXPECT_TRUE(IsDebugLevelOn(6));
  EXPECT_FALSE(IsDebugLevelOn(2));
  EXPECT_FALSE(IsDebugLevelOn(0));
}

// The line

TEST_F(DebugLogTest, Level1ShowsTracesAndDebugLogLinesButNotLevel4) {
  SetMask("1");
  DebugLogLevel(1, "trace %d", 1);
  DebugLogLevel(4, "failure");
  DebugLog("plain %s", "line");
  EXPECT_EQ(Lines(), (Strings{Head("INFORMATION") + "trace 1", Head() + "plain line"}));
}

TEST_F(DebugLogTest, Level4ShowsOnlyLevel4AmongDebugLogLevelAndDebugLogAsWell) {
  SetMask("4");
  DebugLogLevel(1, "trace");
  DebugLogLevel(2, "warning");
  DebugLogLevel(4, "failure");
  DebugLogLevel(16, "diagnostics");
  DebugLog("plain");
  EXPECT_EQ(Lines(), (Strings{Head("DEBUG      ") + "failure", Head() + "plain"}));
}

TEST_F(DebugLogTest, MaskZeroWritesNothing) {
  DebugLog("plain");
  DebugLogLevel(-1, "all levels");
  EXPECT_NE(access(path_.c_str(), F_OK), 0);
}

TEST_F(DebugLogTest, DebugLogWritesForAnyNonzeroMask) {
  SetMask("1024");
  DebugLog("plain");
  EXPECT_EQ(Lines(), Strings{Head() + "plain"});
}

TEST_F(DebugLogTest, NullOrEmptyFormatWritesNothing) {
  SetMask("-1");
  const char* null_format = nullptr;
  const char* empty_format = "";
  DebugLog(null_format, 0);
  DebugLog(empty_format, 0);
  DebugLogLevel(1, null_format, 0);
  DebugLogLevel(1, empty_format, 0);
  EXPECT_NE(access(path_.c_str(), F_OK), 0);
}

TEST_F(DebugLogTest, TagIsThatOfTheLowestBit) {
  EXPECT_STREQ(DebugLevelTag(1), "INFORMATION");
  EXPECT_STREQ(DebugLevelTag(2), "WARNING    ");
  EXPECT_STREQ(DebugLevelTag(4), "DEBUG      ");
  EXPECT_STREQ(DebugLevelTag(16), "DIAG_ERROR ");
  EXPECT_STREQ(DebugLevelTag(31), "INFORMATION");
  EXPECT_STREQ(DebugLevelTag(22), "WARNING    ");
  EXPECT_STREQ(DebugLevelTag(20), "DEBUG      ");
  EXPECT_STREQ(DebugLevelTag(24), "DIAG_ERROR ");
}

TEST_F(DebugLogTest, TagIsTakenFromTheLevelAndNotFromTheMask) {
  SetMask("16");
  DebugLogLevel(17, "both");
  EXPECT_EQ(Lines(), Strings{Head("INFORMATION") + "both"});
}

TEST_F(DebugLogTest, LevelWithoutTagHasAnEmptyOne) {
  EXPECT_STREQ(DebugLevelTag(8), "");
  EXPECT_STREQ(DebugLevelTag(0), "");
  SetMask("8");
  DebugLogLevel(8, "step");
  EXPECT_EQ(Lines(), Strings{Head("") + "step"});
}

TEST_F(DebugLogTest, LineEndsWithCarriageReturnAndNewline) {
  SetMask("1");
  DebugLog("plain");
  EXPECT_TRUE(Content().ends_with(": plain\r\n"));
}

TEST_F(DebugLogTest, TimeIsThePresentLocalTime) {
  SetMask("1");
  const std::time_t before = std::time(nullptr);
  DebugLog("plain");
  const std::time_t after = std::time(nullptr);
  const std::string content = Content();
  std::tm read{};
  ASSERT_EQ(std::sscanf(content.c_str(), "%d/%d/%d %d:%d:%d.", &read.tm_mon, &read.tm_mday, &read.tm_year,
                        &read.tm_hour, &read.tm_min, &read.tm_sec),
            6);
  read.tm_mon -= 1;
  read.tm_year -= 1900;
  read.tm_isdst = -1;
  const std::time_t logged = std::mktime(&read);
  EXPECT_GE(logged, before);
  EXPECT_LE(logged, after);
}

TEST_F(DebugLogTest, MessageOf2000CharactersEndsAt1024CharactersOfTheLineWithoutLineEnd) {
  SetMask("1");
  DebugLog("%s", std::string(2000, 'x').c_str());
  const std::string line = Head() + std::string(1024 - Head().size(), 'x');
  EXPECT_EQ(WithoutTime(Content()), line);
}

TEST_F(DebugLogTest, CutLineIsFollowedDirectlyByTheNext) {
  SetMask("4");
  DebugLogLevel(4, "%s", std::string(2000, 'x').c_str());
  DebugLog("next");
  const std::string head = Head("DEBUG      ");
  const std::string content = WithoutTime(Content());
  ASSERT_GT(content.size(), 1024U);
  EXPECT_EQ(content.substr(0, 1024), head + std::string(1024 - head.size(), 'x'));
  EXPECT_EQ(WithoutTime(content.substr(1024)), Head() + "next\r\n");
}

TEST_F(DebugLogTest, MessageLongerThanItsBufferIsCut) {
  SetMask("1");
  DebugLog("%s", std::string(3000000, 'x').c_str());
  EXPECT_EQ(WithoutTime(Content()), Head() + std::string(1024 - Head().size(), 'x'));
}

TEST_F(DebugLogTest, LongestMessageWithLineEnd) {
  SetMask("1");
  const std::string message(1024 - Head().size() - 2, 'x');
  DebugLog("%s", message.c_str());
  EXPECT_EQ(WithoutTime(Content()), Head() + message + "\r\n");
}

TEST_F(DebugLogTest, KeepsPercentSignsInArguments) {
  SetMask("1");
  DebugLog("%s", "100% %s %n");
  EXPECT_EQ(Lines(), Strings{Head() + "100% %s %n"});
}

// What comes from outside makes no line of its own, and nothing in it is obeyed by a terminal.
TEST_F(DebugLogTest, ShowsOtherBytesThanPrintableOnesAsNumbers) {
  SetMask("1");
  DebugLog("got %s", "a\nb\r\n\tc\x1b[2J\x7f\xc2\x9b~ \\");
  EXPECT_EQ(WithoutTime(Content()), Head() + R"(got a\x0ab\x0d\x0a\x09c\x1b[2J\x7f\xc2\x9b~ \)" + "\r\n");
}

TEST_F(DebugLogTest, KeepsLineEndsAtTheEndOfAMessage) {
  SetMask("1");
  DebugLog("%s", "text\r\n\n");
  EXPECT_EQ(WithoutTime(Content()), Head() + "text\r\n\n\r\n");
}

TEST_F(DebugLogTest, KeepsLineEndsAtTheStartOfAFormatAndOfNoText) {
  SetMask("1");
  DebugLog("\r\n%s", "\ntext");
  EXPECT_EQ(WithoutTime(Content()), Head() + "\r\n\\x0atext\r\n");
}

TEST_F(DebugLogTest, NumberAtTheEndOfALineIsCutWithIt) {
  SetMask("1");
  const std::string message(1024 - Head().size() - 2, 'x');
  DebugLog("%s\n!", message.c_str());
  EXPECT_EQ(WithoutTime(Content()), Head() + message + "\\x");
}

TEST_F(DebugLogTest, FailedConversionLeavesTheMessageEmpty) {
  SetMask("1");
  DebugLog("before");
  DebugLog("part %ls", L"\x20ac");  // no such character in the C locale
  EXPECT_EQ(Lines(), (Strings{Head() + "before", Head()}));
}

// The file

TEST_F(DebugLogTest, FileIsOpenedAndClosedForEachLine) {
  SetMask("1");
  const int free_descriptor = dup(0);
  ASSERT_GE(free_descriptor, 0);
  close(free_descriptor);
  DebugLog("first");
  ASSERT_EQ(unlink(path_.c_str()), 0);
  DebugLog("second");
  EXPECT_EQ(Lines(), Strings{Head() + "second"});
  const int free_after = dup(0);
  close(free_after);
  EXPECT_EQ(free_after, free_descriptor);
}

TEST_F(DebugLogTest, FileIsMadeAsModeAPlusMakesIt) {
  SetMask("1");
  const mode_t mask = umask(022);
  DebugLog("plain");
  umask(mask);
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFREG | 0644));
}

TEST_F(DebugLogTest, SymbolicLinkIsNotFollowed) {
  const std::string target = path_ + ".target";
  unlink(target.c_str());
  ASSERT_EQ(symlink(target.c_str(), path_.c_str()), 0);
  SetMask("1");
  DebugLog("plain");
  EXPECT_NE(access(target.c_str(), F_OK), 0);
  struct stat status {};
  ASSERT_EQ(lstat(path_.c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
}

TEST_F(DebugLogTest, FileWithAnotherNameIsLeftAlone) {
  const std::string target = path_ + ".target";
  WriteContent(target, "not ours\n");
  ASSERT_EQ(link(target.c_str(), path_.c_str()), 0);
  SetMask("1");
  DebugLog("plain");
  EXPECT_EQ(ContentOf(target), "not ours\n");
  ASSERT_EQ(unlink(target.c_str()), 0);
  DebugLog("plain");
  EXPECT_EQ(WithoutTime(Content().substr(9)), Head() + "plain\r\n");
}

TEST_F(DebugLogTest, NoBitsOfTheMaskMakeTheFileWritableForEverybody) {
  SetMask("1");
  const mode_t mask = umask(0);
  DebugLog("plain");
  umask(mask);
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFREG | 0664));
}

TEST_F(DebugLogTest, PipeInPlaceOfTheFileDoesNotHoldTheProgram) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  const int pipe = open(path_.c_str(), O_RDWR | O_NONBLOCK);
  ASSERT_GE(pipe, 0);
  const std::string block(4096, 'x');
  while (write(pipe, block.data(), block.size()) > 0) {
  }
  SetMask("1");
  DebugLog("plain");
  EXPECT_EQ(write(pipe, block.data(), block.size()), -1);  // still full of what was there
  EXPECT_EQ(errno, EAGAIN);
  close(pipe);
}

TEST_F(DebugLogTest, LeavesErrnoAlone) {
  SetMask("1");
  errno = 1234;
  DebugLog("plain");
  EXPECT_EQ(errno, 1234);
  unlink(path_.c_str());
  ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);  // now the open fails
  errno = 1234;
  DebugLogLevel(1, "plain");
  EXPECT_EQ(errno, 1234);
  rmdir(path_.c_str());
}

TEST_F(DebugLogTest, FormatSeesTheCallersErrno) {
  SetMask("1");
  const char* format = "%m: %d";  // known to this C library only, so not where the compiler checks it
  errno = ENOENT;
  DebugLog(format, 1);
  EXPECT_EQ(Lines(), Strings{Head() + "No such file or directory: 1"});
}

TEST_F(DebugLogTest, ReadOnlyVarTmpLosesTheLineAndNothingElse) {
  SetMask("1");
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    constexpr int kNoNamespace = 77;
    if (getenv("PRIVATE_PATHS_FOLDER") != nullptr) {
      setenv("PRIVATE_PATHS_READ_ONLY", "/var/tmp", 1);  // the run has no namespace: see private_paths.c
    } else if ((unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) ||
               mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
               mount("none", "/var/tmp", "tmpfs", MS_RDONLY, nullptr) != 0) {
      _exit(kNoNamespace);
    }
    errno = 1234;
    DebugLog("plain");
    _exit(errno == 1234 && access(path_.c_str(), F_OK) != 0 ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "mounts are refused on this machine";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

// The file's name is built once, from the name that the program was started as: each case needs a process of
// its own.

std::string LogOfAProgramStartedAs(const char* name) {
  const std::string path = DebugLogPath(name);
  unlink(path.c_str());
  const pid_t child = fork();
  if (child == 0) {
    close(1);
    if (chdir("/") != 0) _exit(1);  // GoogleTest needs a folder that exists
    setenv("ZNFC_DEBUG_LEVEL", "1", 1);
    execl("/proc/self/exe", name, "--gtest_filter=DebugLogChild.*", "--gtest_also_run_disabled_tests",
          nullptr);
    _exit(1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  const std::string content = ContentOf(path);
  unlink(path.c_str());
  return content.empty() ? "no log file"
                         : WithoutTime(content).substr(0, 13) + content.substr(content.rfind(':'));
}

// Run by the tests below in a process of its own.
TEST(DebugLogChild, DISABLED_WritesOneLine) {
  InitDebugLog();
  DebugLog("child");
  EXPECT_EQ(DebugMask(), 1);
}

TEST(DebugLogFileName, IsTheLastPathComponentOfTheModule) {
  ASSERT_EQ(DebugLogPath("/no/such/folder/zfc_log_name"), "/var/tmp/zfc_log_name.log");
  EXPECT_EQ(LogOfAProgramStartedAs("/no/such/folder/zfc_log_name"), "CIM Provider : child\r\n");
}

TEST(DebugLogFileName, IsCutAtTheFirstSo) {
  ASSERT_EQ(DebugLogPath("/a.so.d/zfc_log.so.1.so"), "/var/tmp/zfc_log.log");
  EXPECT_EQ(LogOfAProgramStartedAs("/a.so.d/zfc_log.so.1.so"), "CIM Provider : child\r\n");
}

TEST(DebugLogFileName, IsVipluginForAPathWithoutSlash) {
  ASSERT_EQ(DebugLogPath("zfc_log_name"), "/var/tmp/viplugin.log");
  EXPECT_EQ(LogOfAProgramStartedAs("zfc_log_name"), "CIM Provider : child\r\n");
}

// Signals

volatile sig_atomic_t ticks = 0;

void LogTick(int) {
  ticks = ticks + 1;
  DebugLog("tick");
}

TEST_F(DebugLogTest, SignalHandlerThatLogsAmidALineNeitherDeadlocksNorDamagesIt) {
  SetMask("1");
  ticks = 0;
  struct sigaction action {};
  struct sigaction old_action {};
  action.sa_handler = LogTick;
  ASSERT_EQ(sigaction(SIGALRM, &action, &old_action), 0);
  itimerval timer{{0, 200}, {0, 200}};
  setitimer(ITIMER_REAL, &timer, nullptr);
  int lines = 0;
  while (ticks < 50) {
    DebugLog("line %d", lines++);
  }
  timer = {};
  setitimer(ITIMER_REAL, &timer, nullptr);
  sigaction(SIGALRM, &old_action, nullptr);
  int ticks_seen = 0;
  int lines_seen = 0;
  for (const std::string& line : Lines()) {
    if (line == Head() + "tick") {
      ++ticks_seen;
    } else {
      EXPECT_EQ(line, Head() + "line " + std::to_string(lines_seen++));
    }
  }
  EXPECT_EQ(ticks_seen, ticks);
  EXPECT_EQ(lines_seen, lines);
}

TEST_F(DebugLogTest, SignalMaskIsAsBeforeAfterALine) {
  SetMask("1");
  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, SIGUSR1);
  sigset_t before;
  ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &one, &before), 0);
  DebugLog("plain");
  sigset_t after;
  ASSERT_EQ(pthread_sigmask(SIG_SETMASK, &before, &after), 0);
  EXPECT_EQ(sigismember(&after, SIGUSR1), 1);
  EXPECT_EQ(sigismember(&after, SIGTERM), 0);
}

// Dumps

TEST_F(DebugLogTest, DumpMemberQualifiesTheName) {
  SetMask("1");
  const std::uint32_t member = 0;
  DumpMember("Prefix", "Class", "m_uMember", &member, sizeof member, 0xab);
  char line[128];
  std::snprintf(line, sizeof line, "Prefix::Class.m_uMember(4) at address[%p - 0xab].",
                static_cast<const void*>(&member));
  const std::string content = Content();
  EXPECT_EQ(WithoutTime(content), Head() + line + "\r\n\r\n");  // its own line end and the log's
}

TEST_F(DebugLogTest, DumpMemberTakesANullPrefixAsEmpty) {
  SetMask("1");
  DumpMember(nullptr, "Class", "m_uMember", nullptr, 1, 0);
  EXPECT_EQ(WithoutTime(Content()), Head() + "::Class.m_uMember(1) at address[(nil) - 0x0].\r\n\r\n");
}

}  // namespace
