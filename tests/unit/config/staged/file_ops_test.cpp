#include "config/staged/file_ops.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string>

#include "support/unit_debug_log.h"
#include "support/unit_files.h"
#include "support/unit_sync.h"

namespace {

using std::string_literals::operator""s;

// While an object lives, no file grows beyond `size`: its write fails, as on a full disk.
class LargestFile {
 public:
  explicit LargestFile(rlim_t size) {
    signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &usual_);
    const rlimit limit = {size, usual_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~LargestFile() { setrlimit(RLIMIT_FSIZE, &usual_); }
  LargestFile(const LargestFile&) = delete;
  LargestFile& operator=(const LargestFile&) = delete;

 private:
  rlimit usual_{};
};

// While an object lives, the process can open one more file and no second one.
class OneMoreFile {
 public:
  OneMoreFile() {
    getrlimit(RLIMIT_NOFILE, &usual_);
    const int next = open("/dev/null", O_RDONLY | O_CLOEXEC);
    close(next);
    const rlimit limit = {static_cast<rlim_t>(next) + 1, usual_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  ~OneMoreFile() { setrlimit(RLIMIT_NOFILE, &usual_); }
  OneMoreFile(const OneMoreFile&) = delete;
  OneMoreFile& operator=(const OneMoreFile&) = delete;

 private:
  rlimit usual_{};
};

class FileOpsTest : public testing::Test {
 protected:
  int Update(const char* key, const char* value) const {
    return FileOps::UpdateKeyValueInFile(path_.c_str(), key, value);
  }

  // The value of a key, or "<result>" when there is none.
  std::string Value(const char* key) const {
    std::array<char, 512> value;
    value.fill('x');
    const int result = FileOps::GetKeyValueFromFile(path_.c_str(), key, value.data(), value.size(), '=');
    return result == FileOps::kFound ? std::string(value.data())
                                     : std::string("<").append(std::to_string(result)).append(">");
  }

  // The value of "Data_Rate" in a file with this content.
  std::string ValueIn(const std::string& content) const {
    WriteContent(path_, content);
    return Value("Data_Rate");
  }

  // The content of a file with this content after an update of "Data_Rate" to 7.
  std::string Updated(const std::string& content) const {
    WriteContent(path_, content);
    EXPECT_EQ(Update("Data_Rate", "7"), FileOps::kDone);
    return ContentOf(path_);
  }

  bool TemporaryExists() const { return std::filesystem::exists(temporary_); }

  const ScratchFolder folder_;
  const std::string path_ = folder_ / "staged";
  const std::string temporary_ = path_ + "_tmp";
};

TEST_F(FileOpsTest, OnlyARegularFileIsPresent) {
  EXPECT_EQ(FileOps::IsFilePresent(path_.c_str()), 0);
  WriteContent(path_, "");
  EXPECT_EQ(FileOps::IsFilePresent(path_.c_str()), 1);
  EXPECT_EQ(FileOps::IsFilePresent((path_ + "/below").c_str()), 0);
  EXPECT_EQ(FileOps::IsFilePresent((folder_ / ".").c_str()), 0);
  EXPECT_EQ(FileOps::IsFilePresent("/dev/null"), 0);
  EXPECT_EQ(FileOps::IsFilePresent(""), 0);
}

TEST_F(FileOpsTest, ALinkToARegularFileIsPresent) {
  WriteContent(path_, "");
  const std::string link = folder_ / "link";
  ASSERT_EQ(symlink(path_.c_str(), link.c_str()), 0);
  EXPECT_EQ(FileOps::IsFilePresent(link.c_str()), 1);
  ASSERT_EQ(unlink(path_.c_str()), 0);
  EXPECT_EQ(FileOps::IsFilePresent(link.c_str()), 0);
}

TEST_F(FileOpsTest, FirstKeyCreatesTheFile) {
  EXPECT_EQ(Update("Data_Rate", "3"), 0);
  EXPECT_EQ(ContentOf(path_), "Data_Rate=3\n");
  EXPECT_FALSE(TemporaryExists());
}

TEST_F(FileOpsTest, AMissingKeyIsAppendedAtTheEnd) {
  EXPECT_EQ(Updated("B=1\nA=2\n"), "B=1\nA=2\nData_Rate=7\n");
  EXPECT_FALSE(TemporaryExists());
}

TEST_F(FileOpsTest, APresentKeyIsReplacedWhereItStands) {
  EXPECT_EQ(Updated("A=1\nData_Rate=3\nB=2\n"), "A=1\nData_Rate=7\nB=2\n");
}

TEST_F(FileOpsTest, EveryLineThatHoldsTheKeyIsReplaced) {
  EXPECT_EQ(Updated("Data_Rate=1\nA=1\nData_Rate=2\n"), "Data_Rate=7\nA=1\nData_Rate=7\n");
  EXPECT_EQ(Updated("# see Data_Rate below\nA=1\n"), "Data_Rate=7\nA=1\n");
  EXPECT_EQ(Updated("A=Data_Rate\n"), "Data_Rate=7\n");
  EXPECT_EQ(Updated("My_Data_Rate_2=1\n"), "Data_Rate=7\n");
  EXPECT_EQ(Updated("  Data_Rate = 1 # old\n"), "Data_Rate=7\n");
}

TEST_F(FileOpsTest, AKeyInAnotherCaseIsNotSeenByTheWriter) {
  EXPECT_EQ(Updated("data_rate=3\n"), "data_rate=3\nData_Rate=7\n");
  EXPECT_EQ(Value("Data_Rate"), "3");
}

TEST_F(FileOpsTest, AnEmptyFileReceivesTheKey) {
  EXPECT_EQ(Updated(""), "Data_Rate=7\n");
}

TEST_F(FileOpsTest, ALastLineWithoutEndIsCopiedAsItIs) {
  EXPECT_EQ(Updated("A=1"), "A=1Data_Rate=7\n");
  EXPECT_EQ(Updated("Data_Rate=1"), "Data_Rate=7\n");
}

TEST_F(FileOpsTest, LineEndsOfAnotherSystemAreKept) {
  EXPECT_EQ(Updated("A=1\r\nData_Rate=1\r\nB=2\r\n"), "A=1\r\nData_Rate=7\nB=2\r\n");
}

TEST_F(FileOpsTest, ALongLineArrivesInPiecesOf511Characters) {
  // The key is whole in the second piece: only that piece is replaced.
  const std::string first(511, 'x');
  EXPECT_EQ(Updated(first + "yData_Rate=1 and more\nA=1\n"), first + "Data_Rate=7\nA=1\n");
  EXPECT_EQ(Updated(first + "Data_Rate=1\n"), first + "Data_Rate=7\n");
  // A key that a piece's end cuts in two is not seen.
  const std::string cut(511 - 4, 'x');
  EXPECT_EQ(Updated(cut + "Data_Rate=1\n"), cut + "Data_Rate=1\nData_Rate=7\n");
  // A line end that is alone in the next piece stays.
  EXPECT_EQ(Updated("Data_Rate=" + std::string(501, 'y') + "\nA=1\n"), "Data_Rate=7\n\nA=1\n");
  EXPECT_EQ(Updated("Data_Rate=" + std::string(500, 'y') + "\nA=1\n"), "Data_Rate=7\nA=1\n");
}

TEST_F(FileOpsTest, BinaryContentIsCopiedUnchanged) {
  std::string bytes;
  for (int i = 0; i < 2000; ++i) bytes += static_cast<char>(i % 256);
  EXPECT_EQ(Updated(bytes), bytes + "Data_Rate=7\n");
  const std::string with_null = "A\0B\nC=1\n"s;
  EXPECT_EQ(Updated(with_null), with_null + "Data_Rate=7\n");
}

TEST_F(FileOpsTest, AStaleTemporaryFileIsTruncatedAndReused) {
  WriteContent(temporary_, std::string(10000, 'z'));
  EXPECT_EQ(Updated("A=1\n"), "A=1\nData_Rate=7\n");
  EXPECT_FALSE(TemporaryExists());
}

TEST_F(FileOpsTest, AStaleTemporaryFileStaysWhereNoFileCanBeOpened) {
  WriteContent(path_, "A=1\n");
  WriteContent(temporary_, "stale");
  {
    const OneMoreFile source_alone;
    EXPECT_EQ(Update("A", "2"), 19);
  }
  EXPECT_EQ(ContentOf(path_), "A=1\n");
  EXPECT_EQ(ContentOf(temporary_), "stale");
}

TEST_F(FileOpsTest, AMissingFolderIsAFailure) {
  const std::string below = folder_ / "missing/staged";
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(below.c_str(), "A", "1"), 19);
}

TEST_F(FileOpsTest, ATemporaryFileThatCannotBeOpenedLeavesTheSource) {
  WriteContent(path_, "A=1\n");
  ASSERT_EQ(mkdir(temporary_.c_str(), 0755), 0);
  EXPECT_EQ(Update("A", "2"), 19);
  EXPECT_EQ(ContentOf(path_), "A=1\n");
}

TEST_F(FileOpsTest, APathThatIsAFolderIsAFailure) {
  ASSERT_EQ(mkdir(path_.c_str(), 0755), 0);
  EXPECT_EQ(FileOps::IsFilePresent(path_.c_str()), 0);
  EXPECT_EQ(Update("A", "2"), 19);
  EXPECT_TRUE(std::filesystem::is_directory(path_));
}

// How many bytes a file that this process writes may have; a write of more fails.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{std::min(bytes, before_.rlim_max), before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  sighandler_t handler_;
};

TEST_F(FileOpsTest, AFullFolderKeepsTheSource) {
  const std::string full = folder_ / "full";
  ASSERT_EQ(mkdir(full.c_str(), 0755), 0);
  const bool is_mounted = mount("none", full.c_str(), "tmpfs", 0, "size=8k") == 0;
  const std::string source = full + "/staged";
  const std::string long_value(6000, 'v');
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(source.c_str(), "A", long_value.c_str()), 0);
  // Where mounts are refused, the room that a file may take is limited in place of the disk's.
  const FileSizeLimit limit(is_mounted ? RLIM_INFINITY : 4096);
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(source.c_str(), "B", "2"), 19);
  EXPECT_EQ(ContentOf(source), "A=" + long_value + "\n");
  EXPECT_FALSE(std::filesystem::exists(source + "_tmp"));
  // Nothing is left of a file whose first line could not be written.
  const std::string second = full + "/second";
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(second.c_str(), "A", long_value.c_str()), 19);
  EXPECT_FALSE(std::filesystem::exists(second));
  EXPECT_TRUE(!is_mounted || umount(full.c_str()) == 0);
}

TEST_F(FileOpsTest, RemoveFile) {
  WriteContent(path_, "A=1\n");
  EXPECT_EQ(FileOps::RemoveFile(path_.c_str()), 0);
  EXPECT_FALSE(std::filesystem::exists(path_));
  EXPECT_EQ(FileOps::RemoveFile(path_.c_str()), 19);
}

TEST_F(FileOpsTest, AReadNeedsPathKeyAndBuffer) {
  WriteContent(path_, "A=1\n");
  char value[8] = "before";
  EXPECT_EQ(FileOps::GetKeyValueFromFile(nullptr, "A", value, sizeof value, '='), -1);
  EXPECT_EQ(FileOps::GetKeyValueFromFile(path_.c_str(), nullptr, value, sizeof value, '='), -1);
  EXPECT_EQ(FileOps::GetKeyValueFromFile(path_.c_str(), "A", nullptr, sizeof value, '='), -1);
  EXPECT_EQ(FileOps::GetKeyValueFromFile(path_.c_str(), "A", value, 0, '='), -1);
  EXPECT_EQ(FileOps::GetKeyValueFromFile((path_ + "x").c_str(), "A", value, sizeof value, '='), -2);
  EXPECT_EQ(FileOps::GetKeyValueFromFile(path_.c_str(), "B", value, sizeof value, '='), 0);
  EXPECT_STREQ(value, "before");
  EXPECT_EQ(FileOps::GetKeyValueFromFile(path_.c_str(), "A", value, sizeof value, '='), 1);
  EXPECT_STREQ(value, "1");
}

class FileOpsLogTest : public DebugLogTest {};

TEST_F(FileOpsLogTest, EveryFailureHasALine) {
  const std::string gone = "/no/such/file";
  char value[8] = "";
  SetMask("4");
  FileOps::IsFilePresent(gone.c_str());
  FileOps::GetKeyValueFromFile(nullptr, "A", value, sizeof value, '=');
  FileOps::GetKeyValueFromFile(gone.c_str(), "A", nullptr, sizeof value, '=');
  FileOps::GetKeyValueFromFile(gone.c_str(), "A", value, sizeof value, '=');
  FileOps::GetKeyValueFromFile("/", "A", value, sizeof value,
                               '=');  // it opens, but no byte of it can be read
  FileOps::UpdateKeyValueInFile(gone.c_str(), "A", "1");
  FileOps::RemoveFile(gone.c_str());
  const std::string head = Head("DEBUG      ") + "FileOps::";
  EXPECT_EQ(Lines(), (std::vector<std::string>{
                         head + "GetKeyValueFromFile: no path, key or buffer: (none)",
                         head + "GetKeyValueFromFile: no path, key or buffer: /no/such/file",
                         head + "GetKeyValueFromFile: cannot read /no/such/file",
                         head + "GetKeyValueFromFile: cannot read /",
                         head + "UpdateKeyValueInFile: cannot create /no/such/file",
                         head + "RemoveFile: cannot remove /no/such/file",
                     }));
}

TEST_F(FileOpsLogTest, EveryFailureToReplaceAFileHasALine) {
  const ScratchFolder folder;
  const std::string path = folder / "staged";
  const std::string temporary = path + "_tmp";
  const std::string head = Head("DEBUG      ") + "FileOps::UpdateKeyValueInFile: ";
  const std::string content = "A=1\n#" + std::string(20000, 'x') + "\n";
  WriteContent(path, content);
  SetMask("4");
  ASSERT_EQ(symlink("/no/such/file", temporary.c_str()), 0);
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(path.c_str(), "A", "2"), 19);
  ASSERT_EQ(unlink(temporary.c_str()), 0);
  {
    const LargestFile limit(16384);  // the log needs less
    EXPECT_EQ(FileOps::UpdateKeyValueInFile(path.c_str(), "A", "2"), 19);
  }
  EXPECT_FALSE(std::filesystem::exists(temporary));
  EXPECT_EQ(Lines(), (std::vector<std::string>{head + "cannot open " + temporary,
                                               head + "cannot write " + temporary}));
  // A file that something is mounted on cannot be removed.
  if (mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) != 0)
    GTEST_SKIP() << "mounts are refused on this machine";
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(path.c_str(), "A", "2"), 19);
  EXPECT_EQ(umount(path.c_str()), 0);
  EXPECT_EQ(Lines().back(), head + "cannot replace " + path);
  EXPECT_EQ(ContentOf(path), content);
}

TEST_F(FileOpsTest, AnUpdateForTheDiskWaitsForTheCopyAndItsName) {
  WriteContent(path_, "A=1\n");
  const FailedSync counted(0);
  EXPECT_EQ(Update("A", "2"), FileOps::kDone);
  EXPECT_EQ(SyncCalls(), 0);
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(path_.c_str(), "A", "3", FileOps::kDisk), FileOps::kDone);
  EXPECT_EQ(SyncCalls(), 2);
  EXPECT_EQ(FileOps::SyncFile(path_.c_str()), FileOps::kDone);
  EXPECT_EQ(SyncCalls(), 4);
  EXPECT_EQ(FileOps::RemoveFile(path_.c_str()), FileOps::kDone);
  EXPECT_EQ(SyncCalls(), 5);
}

TEST_F(FileOpsTest, ADiskThatFailsKeepsTheOldFile) {
  for (const int good : {0, 1}) {  // the copy, its name
    WriteContent(path_, "A=1\n");
    const FailedSync failed(EIO, good);
    EXPECT_EQ(FileOps::UpdateKeyValueInFile(path_.c_str(), "A", "2", FileOps::kDisk), FileOps::kFailed);
    EXPECT_EQ(SyncCalls(), good + 1);
    EXPECT_EQ(ContentOf(path_), "A=1\n");
    EXPECT_FALSE(TemporaryExists());
  }
}

TEST_F(FileOpsTest, ADiskThatFailsLeavesNoNewFile) {
  const FailedSync failed(EIO);
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(path_.c_str(), "A", "1", FileOps::kDisk), FileOps::kFailed);
  EXPECT_EQ(FileOps::IsFilePresent(path_.c_str()), 0);
}

TEST_F(FileOpsTest, AFileSystemWithoutSyncsIsNoFailure) {
  const FailedSync unknown(EINVAL);
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(path_.c_str(), "A", "1", FileOps::kDisk), FileOps::kDone);
  EXPECT_EQ(FileOps::UpdateKeyValueInFile(path_.c_str(), "A", "2", FileOps::kDisk), FileOps::kDone);
  EXPECT_EQ(FileOps::SyncFile(path_.c_str()), FileOps::kDone);
  EXPECT_EQ(ContentOf(path_), "A=2\n");
}

TEST_F(FileOpsTest, ARemovalIsDoneWhateverTheDiskSays) {
  WriteContent(path_, "A=1\n");
  const FailedSync failed(EIO);
  EXPECT_EQ(FileOps::RemoveFile(path_.c_str()), FileOps::kDone);
  EXPECT_EQ(SyncCalls(), 1);
}

TEST_F(FileOpsLogTest, ADiskThatFailsHasALine) {
  const ScratchFolder folder;
  const std::string path = folder / "staged";
  WriteContent(path, "A=1\n");
  SetMask("4");
  for (const int good : {0, 1}) {
    const FailedSync failed(EIO, good);
    EXPECT_EQ(FileOps::SyncFile(path.c_str()), FileOps::kFailed);
  }
  const std::string line = Head("DEBUG      ") + "FileOps::SyncFile: cannot sync " + path;
  EXPECT_EQ(Lines(), (std::vector<std::string>{line, line}));
}

TEST_F(FileOpsLogTest, StepsHaveTheirValues) {
  WriteContent("/var/tmp/steps", "A=1\n");
  char value[8] = "";
  SetMask("1");
  FileOps::GetKeyValueFromFile("/var/tmp/steps", "A", value, sizeof value, '=');
  const std::string head = Head("INFORMATION") + "FileOps::GetKeyValueFromFile: ";
  EXPECT_EQ(Lines(), (std::vector<std::string>{head + "Entered", head + "/var/tmp/steps: A", head + "A=1",
                                               head + "Exiting"}));
}

TEST_F(FileOpsTest, NothingIsWrittenThroughALinkInPlaceOfTheTemporaryFile) {
  const std::string victim = folder_ / "victim";
  WriteContent(victim, "not ours");
  WriteContent(path_, "Data_Rate=3\n");
  for (const auto link : {&symlink, &::link}) {
    ASSERT_EQ(link(victim.c_str(), temporary_.c_str()), 0);
    EXPECT_EQ(Update("Data_Rate", "7"), 19);
    EXPECT_EQ(ContentOf(victim), "not ours");
    EXPECT_EQ(ContentOf(path_), "Data_Rate=3\n");
    ASSERT_EQ(unlink(temporary_.c_str()), 0);
  }
}

TEST_F(FileOpsTest, NothingIsMadeThroughADanglingLink) {
  const std::string victim = folder_ / "victim";
  ASSERT_EQ(symlink(victim.c_str(), path_.c_str()), 0);
  EXPECT_EQ(Update("Data_Rate", "7"), 19);
  EXPECT_FALSE(std::filesystem::exists(victim));
}

TEST_F(FileOpsTest, APipeDoesNotHoldTheProgram) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(Update("Data_Rate", "7"), 19);
  ASSERT_EQ(unlink(path_.c_str()), 0);
  WriteContent(path_, "Data_Rate=3\n");
  ASSERT_EQ(mkfifo(temporary_.c_str(), 0600), 0);
  EXPECT_EQ(Update("Data_Rate", "7"), 19);
  EXPECT_EQ(ContentOf(path_), "Data_Rate=3\n");
}

TEST_F(FileOpsTest, ADeviceWithoutAnEndIsNoSource) {
  ASSERT_EQ(symlink("/dev/zero", path_.c_str()), 0);
  const LargestFile limit(1 << 20);
  EXPECT_EQ(Update("Data_Rate", "7"), 19);
  EXPECT_FALSE(TemporaryExists());
}

TEST_F(FileOpsTest, AReadTakesAnySeparator) {
  WriteContent(path_, "A:1=2\n");
  char value[8] = "";
  EXPECT_EQ(FileOps::GetKeyValueFromFile(path_.c_str(), "A", value, sizeof value, ':'), 1);
  EXPECT_STREQ(value, "1=2");
}

TEST_F(FileOpsTest, AReadFindsTheKeyInAnyCase) {
  EXPECT_EQ(ValueIn("data_rate=3\n"), "3");
  EXPECT_EQ(ValueIn("DATA_RATE=3\n"), "3");
}

TEST_F(FileOpsTest, AReadNeedsTheWholeKey) {
  EXPECT_EQ(ValueIn("Data_Rate_2=3\nMy_Data_Rate=4\nData_Rat=5\n"), "<0>");
}

TEST_F(FileOpsTest, TheFirstLineWithTheKeyWins) {
  EXPECT_EQ(ValueIn("A=9\nData_Rate=1\nData_Rate=2\n"), "1");
}

TEST_F(FileOpsTest, CommentsAndLinesWithoutSeparatorAreSkipped) {
  EXPECT_EQ(ValueIn("#Data_Rate=1\n  # Data_Rate=2\n\n   \nData_Rate 3\nData_Rate=4\n"), "4");
}

TEST_F(FileOpsTest, WhiteSpaceAroundKeyAndValueIsSkipped) {
  EXPECT_EQ(ValueIn(" \t Data_Rate \t= \t 3 \n"), "3");
  EXPECT_EQ(ValueIn("\v\f\rData_Rate=3\n"), "3");
  EXPECT_EQ(ValueIn("Data_Rate with words=3\n"), "3");
}

TEST_F(FileOpsTest, AValueEndsAtWhiteSpaceOrAComment) {
  EXPECT_EQ(ValueIn("Data_Rate=3 # fixed\n"), "3");
  EXPECT_EQ(ValueIn("Data_Rate=3# fixed\n"), "3");
  EXPECT_EQ(ValueIn("Data_Rate=3 4\n"), "3");
  EXPECT_EQ(ValueIn("Data_Rate=3\r\n"), "3");
  EXPECT_EQ(ValueIn("Data_Rate=3=4\n"), "3=4");
  EXPECT_EQ(ValueIn("Data_Rate=3"), "3");
}

TEST_F(FileOpsTest, AnEmptyValueIsFound) {
  EXPECT_EQ(ValueIn("Data_Rate=\nA=1\n"), "");
  EXPECT_EQ(ValueIn("Data_Rate= # nothing\n"), "");
  EXPECT_EQ(ValueIn("Data_Rate="), "");
}

TEST_F(FileOpsTest, ALongLineIsReadInPiecesOf1022Characters) {
  const std::string first(1022, 'x');
  EXPECT_EQ(ValueIn(first + "Data_Rate=3\n"), "3");
  EXPECT_EQ(ValueIn(first.substr(1) + "Data_Rate=3\n"), "<0>");
  EXPECT_EQ(ValueIn(std::string("#").append(first, 1).append("Data_Rate=3\n")), "3");
}

TEST_F(FileOpsTest, ALongValueIsCut) {
  EXPECT_EQ(ValueIn("Data_Rate=" + std::string(511, '1') + "\n"), std::string(511, '1'));
  EXPECT_EQ(ValueIn("Data_Rate=" + std::string(512, '1') + "\n"), std::string(511, '1'));
  WriteContent(path_, "A=12345\n");
  char value[4] = "";
  EXPECT_EQ(FileOps::GetKeyValueFromFile(path_.c_str(), "A", value, sizeof value, '='), 1);
  EXPECT_STREQ(value, "123");
}

TEST_F(FileOpsTest, BinaryLinesAreSkipped) {
  EXPECT_EQ(ValueIn("\0Data_Rate=1\n\x80\xff=2\nData_Rate=3\n"s), "3");
  EXPECT_EQ(ValueIn("Data_Rate=3\0004\n"s), "3");
}

}  // namespace
