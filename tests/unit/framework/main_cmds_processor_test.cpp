#include "framework/main_cmds_processor.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "framework/console.h"
#include "support/unit_captured_stdout.h"
#include "support/unit_debug_log.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"
#include "support/unit_recording_node.h"
#include "support/unit_run_flags.h"
#include "support/unit_stdin_pipe.h"

namespace {

constexpr char kLibraryOutput[] = "/var/tmp/torpi-output.log";

constexpr char kLeavesHelp[] =
    "\r\nFollowing is the list of available commands.\r\n"
    "For detailed information of each command, please type 'command ?'\r\n"
    "All commands are case insensitive.\r\n\r\n"
    "q           : quit the program\r\n"
    "log         : log all command input and output to a file\r\n"
    "version     : display version of this program\r\n"
    "help        : list of available commands\r\n";
const std::string kHelp = std::string(kLeavesHelp) +
                          "adapter     : use this command to get/set/list Sorvex adapters\r\n"
                          "port        : use this command to get/set/list Sorvex Ports\r\n";
constexpr char kBatchHelpEnd[] =
    "\nFor a complete help. Please refer to ZFC_ESXCLI_Readme.txt in the same folder.\r\n";
constexpr char kUnknownCommandText[] = "Unknown command or invalid target identifier!\r\n";
constexpr char kVersionText[] = "Halcyr Sorvex Meridot FC ESXCLI Plugin v1.9.0\r\n";

// A top-level node that writes its making and its end among the library's calls.
class TopLevelNode : public MultipleCmdsProcessor {
 public:
  TopLevelNode(CmdProcessor* parent, const SubNode& self)
      : MultipleCmdsProcessor(
            parent, {.name = self.name, .switch_word = self.switch_word, .description = self.description}) {
    Library().calls.push_back(std::string("made ") + GetName());
  }
  ~TopLevelNode() override { Library().calls.push_back(std::string("deleted ") + GetName()); }
};

template <class Node>
std::unique_ptr<MultipleCmdsProcessor> Make(CmdProcessor* parent, const SubNode& self) {
  return std::make_unique<Node>(parent, self);
}

constexpr SubNode kTopLevel[] = {
    {"adapter", "-t", "use this command to get/set/list Sorvex adapters", &Make<TopLevelNode>},
    {"port", "-t", "use this command to get/set/list Sorvex Ports", &Make<TopLevelNode>},
};

class Root : public testing::Test {
 protected:
  Root() {
    ResetLibrary();
    unsetenv("ZNFC_DEBUG_LEVEL");
    root_.SetTopLevelNodes(TableOf<kTopLevel>());
  }
  ~Root() override {
    stdout = standard_output_;
    unsetenv("ZNFC_DEBUG_LEVEL");
    InitDebugLog();
    std::filesystem::remove(DebugLogPath(program_invocation_name));
    CloseLogMirror();
  }

  StatusCode Initialize() {
    Words words;
    StatusCode status = kNoCallback;
    initialize_printed_ = PrintedBy([&] { status = root_.Initialize(words); });
    return status;
  }

  // Executes the words. Returns what that prints.
  std::string Execute(Words words) {
    return PrintedBy([&] { status_ = root_.Execute(words); });
  }

  // Runs the words as the shell does.
  std::string Dispatch(Words words) {
    return PrintedBy([&] { status_ = DispatchWords(root_, words); });
  }

  std::FILE* const standard_output_ = stdout;
  ScopedRunFlags flags_{0};
  NoLibraryOutputFile none_;
  ScratchFolder folder_;
  MainCmdsProcessor root_;
  StatusCode status_ = kNoCallback;
  std::string initialize_printed_;
};

TEST_F(Root, IsOnTop) {
  EXPECT_EQ(root_.GetParent(), nullptr);
  EXPECT_STREQ(root_.GetName(), "main");
  EXPECT_STREQ(root_.GetSwitch(), "");
  EXPECT_STREQ(root_.GetDescription(), "the main commands processor");
  EXPECT_FALSE(root_.IsHidden());
  EXPECT_EQ(root_.GetUsageIndex(), 0u);
  EXPECT_EQ(root_.GetFlags(), 0u);
}

TEST_F(Root, BringsTheLibraryUpAheadOfItsNodes) {
  EXPECT_EQ(Initialize(), 0u);
  const std::vector<std::string> start = {"Initialize 0 0", "SetToolID 11", "SetToolVersion 1 9 0 0"};
  EXPECT_EQ(Library().calls, start);
  Words words = {"-t", "port"};
  const ScopedRunFlags flags(RUN_FLAG_BATCH);
  EXPECT_EQ(root_.FindChild(words), nullptr);
  EXPECT_EQ(std::vector(Library().calls.begin() + 3, Library().calls.end()),
            std::vector<std::string>{"made port"});
}

// The log shows each node's beginning and end.
TEST_F(Root, MakesItsNodesAtItsStartWithADebugLog) {
  setenv("ZNFC_DEBUG_LEVEL", "1", 1);
  InitDebugLog();
  EXPECT_EQ(Initialize(), 0u);
  EXPECT_EQ(initialize_printed_, "");
  EXPECT_EQ(stdout, standard_output_);
  EXPECT_EQ(Library().calls,
            (std::vector<std::string>{"Initialize 0 0", "SetToolID 11", "SetToolVersion 1 9 0 0",
                                      "made adapter", "made port"}));
  Library().calls.clear();
  EXPECT_EQ(root_.GetChildren().size(), 10u);
  EXPECT_EQ(Library().calls, std::vector<std::string>{});
}

TEST_F(Root, KeepsTheLibrarysChatterOutOfTheOutput) {
  Library().chatter = "chatter\n";
  EXPECT_EQ(Initialize(), 0u);
  EXPECT_EQ(initialize_printed_, "");
  EXPECT_EQ(ContentOf(kLibraryOutput),
            "FC ESXCLI Debug level = 0\nTORPI Debug level = 0\nchatter\nchatter\nchatter\n");
}

TEST_F(Root, TurnsTheLibrarysTraceOnForOneDebugLevelAlone) {
  struct Case {
    const char* level;
    const char* library_level;
    const char* text;
  };
  for (const Case& test : {Case{"65535", "31", "FC ESXCLI Debug level = 65535\nTORPI Debug level = 31\n"},
                           Case{"65534", "0", "FC ESXCLI Debug level = 65534\nTORPI Debug level = 0\n"},
                           Case{"65536", "0", "FC ESXCLI Debug level = 65536\nTORPI Debug level = 0\n"},
                           Case{"31", "0", "FC ESXCLI Debug level = 31\nTORPI Debug level = 0\n"},
                           Case{"-1", "0", "FC ESXCLI Debug level = -1\nTORPI Debug level = 0\n"}}) {
    SCOPED_TRACE(test.level);
    ResetLibrary();
    std::filesystem::remove(kLibraryOutput);
    setenv("ZNFC_DEBUG_LEVEL", test.level, 1);
    MainCmdsProcessor root;
    Words words;
    EXPECT_EQ(root.Initialize(words), 0u);
    EXPECT_EQ(Library().calls.at(0), std::string("Initialize ") + test.library_level + " 0");
    EXPECT_EQ(ContentOf(kLibraryOutput), test.text);
  }
}

TEST_F(Root, IgnoresWhatTheLibraryAnswersAtItsStart) {
  Library().start_result = 150;
  EXPECT_EQ(Initialize(), 0u);
  EXPECT_EQ(Library().calls.size(), 3u);
  EXPECT_EQ(root_.GetChildren().size(), 10u);
}

TEST_F(Root, StartsNoLibraryWhoseOutputHasNoFile) {
  std::filesystem::create_directory(kLibraryOutput);
  EXPECT_EQ(Initialize(), 19u);
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(Root, PrintsNothingMoreOnceTheLibrarysOutputHasNoFile) {
  std::filesystem::create_symlink(folder_ / "elsewhere", kLibraryOutput);
  Words words;
  EXPECT_EQ(PrintedBy([&] {
              root_.Initialize(words);
              ConsolePrint(kPrintText, "lost");
              std::fflush(stdout);
            }),
            "");
  std::FILE* const silenced = stdout;
  stdout = standard_output_;
  ASSERT_NE(silenced, standard_output_);
  std::fclose(silenced);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "elsewhere"));
}

TEST_F(Root, ReleasesTheLibraryAheadOfItsNodes) {
  Initialize();
  root_.GetChildren();
  Library().calls.clear();
  Library().start_result = 150;
  Words words;
  EXPECT_EQ(root_.Uninitialize(words), 0u);
  EXPECT_EQ(Library().calls, (std::vector<std::string>{"Uninitialize", "deleted adapter", "deleted port"}));
}

TEST_F(Root, HasItsLeavesAheadOfTheTopLevelNodes) {
  struct Expected {
    const char* name;
    const char* switch_word;
    std::uint32_t usage_index;
    bool hidden;
    const char* description;
  };
  const Expected expected[] = {
      {"q", "", 1, false, "quit the program"},
      {"log", "", 2, false, "log all command input and output to a file"},
      {"version", "", 3, false, "display version of this program"},
      {"help", "", 0, false, "list of available commands"},
      {"?", "", 0, true, "list of available commands"},
      {"/h", "", 0, true, "list of available commands"},
      {"/help", "", 0, true, "list of available commands"},
      {"/?", "", 0, true, "list of available commands"},
      {"adapter", "-t", 0, false, "use this command to get/set/list Sorvex adapters"},
      {"port", "-t", 0, false, "use this command to get/set/list Sorvex Ports"},
  };
  Initialize();
  const auto& children = root_.GetChildren();
  ASSERT_EQ(children.size(), std::size(expected));
  for (std::size_t i = 0; i < children.size(); ++i) {
    SCOPED_TRACE(expected[i].name);
    EXPECT_STREQ(children[i]->GetName(), expected[i].name);
    EXPECT_STREQ(children[i]->GetSwitch(), expected[i].switch_word);
    EXPECT_EQ(children[i]->GetUsageIndex(), expected[i].usage_index);
    EXPECT_EQ(children[i]->IsHidden(), expected[i].hidden);
    EXPECT_STREQ(children[i]->GetDescription(), expected[i].description);
    EXPECT_EQ(children[i]->GetParent(), &root_);
    EXPECT_EQ(children[i]->GetFlags(), 0u);
    EXPECT_EQ(children[i]->IsLeaf(), i < 8);
  }
}

TEST_F(Root, PrintsItsVersionAtTheShell) {
  EXPECT_EQ(Dispatch({"version"}), kVersionText);
  EXPECT_EQ(status_, 0u);
}

TEST_F(Root, QuitsAtTheShell) {
  EXPECT_EQ(Dispatch({"Q"}), "");
  EXPECT_EQ(status_, 10u);
}

TEST_F(Root, RefusesArgumentsOfQuitAndVersion) {
  EXPECT_EQ(Dispatch({"q", "now"}),
            "Command parameter Error!\r\n"
            "Usage: q\r\n    return to the parent prompt.\r\n");
  EXPECT_EQ(status_, 4u);
  EXPECT_EQ(Dispatch({"version", "x", "y"}),
            "Command parameter Error!\r\n"
            "Usage: version\r\n    display version of this program.\r\n");
  EXPECT_EQ(status_, 4u);
}

TEST_F(Root, ShellOnlyWordsPrintNothingFromTheArgumentVector) {
  const ScopedRunFlags batch(RUN_FLAG_BATCH);
  for (const Words& words : {Words{"version"}, Words{"q"}, Words{"VERSION"}, Words{"Q"},
                             Words{"-t", "adapter", "update", "x", "q"}, Words{"help", "version"}}) {
    SCOPED_TRACE(Joined(words));
    EXPECT_EQ(Execute(words), "");
    EXPECT_EQ(status_, 0u);
  }
}

TEST_F(Root, ExecuteRunsTheWordsAsOneCommand) {
  const ScopedRunFlags batch(RUN_FLAG_BATCH);
  Initialize();
  EXPECT_EQ(Execute({"help"}), kHelp + kBatchHelpEnd);
  EXPECT_EQ(status_, 0u);
  EXPECT_EQ(Execute({"-t", "adapter"}), kUnknownCommandText);
  EXPECT_EQ(status_, 7u);
  EXPECT_EQ(Execute({"-t", "adapter", "-debug", "list"}), kUnknownCommandText);
  EXPECT_EQ(status_, 7u);
}

TEST_F(Root, ExecuteRunsTheShellWithoutWords) {
  const StdinPipe typed("version\nq\n");
  EXPECT_EQ(Execute({}), std::string("$>") + kVersionText + "$>");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Root, ExecuteRunsNoShellForWordsWithoutTheBatchFlag) {
  const StdinPipe typed("q\n");
  EXPECT_EQ(Execute({"help"}), kLeavesHelp);
}

TEST_F(Root, ExecuteRunsNoShellForABatchWithoutWords) {
  const ScopedRunFlags batch(RUN_FLAG_BATCH);
  const StdinPipe typed("q\n");
  EXPECT_EQ(Execute({}), kUnknownCommandText);
  EXPECT_EQ(status_, 7u);
}

TEST_F(Root, ListsItsCommandsForEveryNameOfHelp) {
  Initialize();
  for (const char* name : {"help", "?", "/h", "/help", "/?", "HELP"}) {
    EXPECT_EQ(Dispatch({name}), kHelp) << name;
    EXPECT_EQ(status_, 0u);
  }
}

TEST_F(Root, PointsToTheReadmeInABatchAlone) {
  Initialize();
  const ScopedRunFlags batch(RUN_FLAG_BATCH);
  EXPECT_EQ(Dispatch({"/h"}), kHelp + kBatchHelpEnd);
}

TEST_F(Root, ShowsTheUsageOfItsLeaves) {
  EXPECT_EQ(Dispatch({"q", "?"}), "Usage: q\r\n    return to the parent prompt.\r\n");
  EXPECT_EQ(status_, 0u);
  EXPECT_EQ(Dispatch({"log", "?"}),
            "Usage: log [<filename>]\r\n"
            "    filename    : The file to log all the output to. \r\n"
            "                    If no filename is supplied, the currently open log \r\n"
            "                    file will be closed.\r\n");
  EXPECT_EQ(Dispatch({"version", "?"}), "Usage: version\r\n    display version of this program.\r\n");
}

TEST_F(Root, ShowsTheHelpAsTheUsageOfHelp) {
  Initialize();
  EXPECT_EQ(Dispatch({"help", "?"}), kHelp);
  EXPECT_EQ(Dispatch({"/?", "?"}), kHelp);
}

TEST_F(Root, HasNoUsageForAHigherIndex) {
  CmdProcessor* const leaf = root_.GetChildren().at(0);
  Words words;
  for (const std::uint32_t index : {4u, 5u, 0xFFFFFFFFu}) {
    StatusCode status = kSuccess;
    EXPECT_EQ(PrintedBy([&] { status = leaf->Usage(words, index); }), "");
    EXPECT_EQ(status, 2u);
  }
}

TEST_F(Root, HasAUsageOfItsOwn) {
  Words words;
  StatusCode status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = root_.Usage(words, 17); }),
            "Usage: legacy\r\n    legacy commands are supported in this mode.\r\n");
  EXPECT_EQ(status, 0u);
}

TEST_F(Root, NodeNamedByASingleWordAtTheShellRunsNothingAndSaysNothing) {
  Initialize();
  EXPECT_EQ(Dispatch({"adapter"}), "");
  EXPECT_EQ(Dispatch({"adapter", "list"}), kUnknownCommandText);
}

TEST_F(Root, LogsToAFileUntilAskedOtherwise) {
  const auto path = folder_ / "typed.log";
  EXPECT_EQ(Dispatch({"log", path.string(), "ignored"}), "");
  EXPECT_EQ(status_, 0u);
  Dispatch({"version"});
  EXPECT_EQ(Dispatch({"log"}), "");
  EXPECT_EQ(status_, 0u);
  Dispatch({"version"});
  EXPECT_EQ(ContentOf(path), kVersionText);
  EXPECT_EQ(DescriptorOf(path), -1);
}

TEST_F(Root, ClosesNoLogWhenNoneIsOpen) {
  EXPECT_EQ(Dispatch({"log"}), "");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Root, SaysSoWhenALogCannotBeCreated) {
  const auto path = folder_ / "missing" / "100%s.log";
  EXPECT_EQ(Dispatch({"log", path.string()}), "Failed to create file " + path.string() + "\n");
  EXPECT_EQ(status_, 0u);
}

TEST_F(Root, ClosesTheLogAtItsEnd) {
  const auto path = folder_ / "typed.log";
  {
    MainCmdsProcessor root;
    Words words = {"log", path.string()};
    DispatchWords(root, words);
    EXPECT_GE(DescriptorOf(path), 0);
  }
  EXPECT_EQ(DescriptorOf(path), -1);
}

TEST(GetMainProcessor, CreatesOneRootUntilItIsReleased) {
  MainCmdsProcessor* const root = GetMainProcessor();
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(GetMainProcessor(), root);
  EXPECT_STREQ(root->GetName(), "main");
  root->GetChildren();

  ReleaseMainProcessor();
  MainCmdsProcessor* const another = GetMainProcessor();
  ASSERT_NE(another, nullptr);
  EXPECT_EQ(another->GetChildren().size(), 8u);
  ReleaseMainProcessor();
  ReleaseMainProcessor();
}

TEST(HasShellOnlyWord, LooksAtEveryWordInAnyCase) {
  EXPECT_TRUE(HasShellOnlyWord({"version"}));
  EXPECT_TRUE(HasShellOnlyWord({"Q"}));
  EXPECT_TRUE(HasShellOnlyWord({"-t", "adapter", "update", "x", "q"}));
  EXPECT_TRUE(HasShellOnlyWord({"a", "VERSION", "b"}));
}

TEST(HasShellOnlyWord, KnowsNoOther) {
  EXPECT_FALSE(HasShellOnlyWord({}));
  EXPECT_FALSE(HasShellOnlyWord({"quit", "qq", "versions", "-version", "", "log", "help"}));
}

}  // namespace
