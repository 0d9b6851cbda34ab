#include "framework/console.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "framework/serializer.h"
#include "support/unit_captured_stdout.h"
#include "support/unit_files.h"

namespace {

class Console : public testing::Test {
 protected:
  ~Console() override { CloseLogMirror(); }

  ScratchFolder folder_;
};

TEST_F(Console, PrintsToStandardOutputAtEveryLevelButOne) {
  for (const int level : {0, 10, 11, 12, 15, 3, 65534}) {
    EXPECT_EQ(PrintedBy([&] { ConsolePrint(static_cast<PrintLevel>(level), "%s-%d\r\n", "text", level); }),
              "text-" + std::to_string(level) + "\r\n");
  }
}

TEST_F(Console, Level65535WithNoLogFileOpenPrintsNothing) {
  EXPECT_EQ(PrintedBy([] { ConsolePrint(static_cast<PrintLevel>(65535), "%s", "text"); }), "");
}

TEST_F(Console, Level65535ReachesTheLogFileOnly) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  EXPECT_EQ(PrintedBy([] { ConsolePrint(kPrintLogOnly, "%s %d\n", "typed", 7); }), "");
  EXPECT_EQ(ContentOf(path), "typed 7\n");
}

TEST_F(Console, MirrorsWhatItPrints) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  EXPECT_EQ(PrintedBy([] {
              ConsolePrint(kPrintPrompt, "%s>", "$");
              ConsolePrint(kPrintError, "Unknown\r\n");
            }),
            "$>Unknown\r\n");
  EXPECT_EQ(ContentOf(path), "$>Unknown\r\n");
}

TEST_F(Console, CutsAMirroredPrintAt4095Characters) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  const std::string text = std::string(4090, 'a') + "0123456789";
  EXPECT_EQ(PrintedBy([&] { ConsolePrint(kPrintText, "%s", text.c_str()); }), text);
  EXPECT_EQ(ContentOf(path), std::string(4090, 'a') + "01234");
}

TEST_F(Console, MirrorsAPrintOf4095CharactersWhole) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  const std::string text = std::string(4094, 'a') + "\n";
  PrintedBy([&] { ConsolePrint(kPrintText, "%s", text.c_str()); });
  EXPECT_EQ(ContentOf(path), text);
}

TEST_F(Console, MirrorsATextAsItStands) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  EXPECT_EQ(PrintedBy([] { MirrorToLogFile("no line end %s %n"); }), "");
  EXPECT_EQ(ContentOf(path), "no line end %s %n");
}

TEST_F(Console, MirrorsALongTextWhole) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  const std::string text(10000, 'm');
  MirrorToLogFile(text.c_str());
  EXPECT_EQ(ContentOf(path), text);
}

TEST_F(Console, MirrorsNoDocument) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  Serializer out;
  PrintedBy([&] {
    out.Open(OUTPUT_CLI);
    out.WriteStringField("Message", "Success");
    out.Close();
  });
  EXPECT_EQ(ContentOf(path), "");
}

TEST_F(Console, MirrorIsWritableByItsOwnerAlone) {
  const auto path = folder_ / "mirror.log";
  const mode_t mask = umask(0);
  const bool opened = OpenLogMirror(path.c_str());
  umask(mask);
  ASSERT_TRUE(opened);
  struct stat status = {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777u, 0200u);
}

TEST_F(Console, MirrorIsOpenForWritingOnly) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  const int mirror = DescriptorOf(path);
  ASSERT_GE(mirror, 0);
  EXPECT_EQ(fcntl(mirror, F_GETFL) & O_ACCMODE, O_WRONLY);
}

TEST_F(Console, TruncatesAMirrorThatIsThere) {
  const auto path = folder_ / "mirror.log";
  WriteContent(path, "from yesterday");
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  EXPECT_EQ(ContentOf(path), "");
}

TEST_F(Console, CannotOpenAMirrorInAMissingFolder) {
  const auto path = folder_ / "missing" / "mirror.log";
  errno = 0;
  EXPECT_FALSE(OpenLogMirror(path.c_str()));
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(Console, CannotOpenAFolderAsMirror) {
  const auto path = folder_ / "folder";
  std::filesystem::create_directory(path);
  errno = 0;
  EXPECT_FALSE(OpenLogMirror(path.c_str()));
  EXPECT_EQ(errno, EISDIR);
}

TEST_F(Console, SecondOpenLeavesTheFirstDescriptorOpen) {
  const auto first = folder_ / "first.log";
  const auto second = folder_ / "second.log";
  ASSERT_TRUE(OpenLogMirror(first.c_str()));
  MirrorToLogFile("one");
  ASSERT_TRUE(OpenLogMirror(second.c_str()));
  MirrorToLogFile("two");
  EXPECT_EQ(ContentOf(first), "one");
  EXPECT_EQ(ContentOf(second), "two");

  CloseLogMirror();
  EXPECT_EQ(DescriptorOf(second), -1);
  const int left_open = DescriptorOf(first);
  EXPECT_GE(left_open, 0);
  close(left_open);
}

TEST_F(Console, WritesNoMoreToAClosedMirror) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  CloseLogMirror();
  EXPECT_EQ(DescriptorOf(path), -1);
  EXPECT_EQ(PrintedBy([] {
              ConsolePrint(kPrintText, "printed");
              ConsolePrint(kPrintLogOnly, "logged");
              MirrorToLogFile("mirrored");
            }),
            "printed");
  EXPECT_EQ(ContentOf(path), "");
}

TEST_F(Console, ClosesNothingTwice) {
  const auto path = folder_ / "mirror.log";
  ASSERT_TRUE(OpenLogMirror(path.c_str()));
  const int mirror = DescriptorOf(path);
  CloseLogMirror();
  // The number of the closed mirror is taken by somebody else.
  const int other = open("/dev/null", O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(other, mirror);
  CloseLogMirror();
  EXPECT_EQ(fcntl(other, F_GETFL) & O_ACCMODE, O_RDONLY);
  close(other);
}

TEST_F(Console, IgnoresAMirrorThatCannotBeWritten) {
  ASSERT_TRUE(OpenLogMirror("/dev/full"));
  EXPECT_EQ(PrintedBy([] { ConsolePrint(kPrintText, "printed"); }), "printed");
}

}  // namespace
