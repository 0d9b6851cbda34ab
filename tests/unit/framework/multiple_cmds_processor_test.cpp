#include "framework/multiple_cmds_processor.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_recording_node.h"
#include "support/unit_run_flags.h"

namespace {

constexpr CmdProcessor::Callbacks kNoCallbacks;

// A tree such as the program's: leaves at the root, then nodes with a switch word, one of them two levels
// deep.
//
//   q  help(hidden)
//   -t adapter:  list  get  -s info: get getcli
//   -t port:     list
class Tree : public testing::Test {
 protected:
  Tree() {
    root_.AddNode(&adapter_);
    root_.AddNode(&port_);
    adapter_.AddNode(&info_);
  }

  // The child that the words name, and in `words` those that are left.
  CmdProcessor* Find(Words& words) { return root_.FindChild(words); }

  RecordingNode root_{{.name = "main"}};
  CmdProcessor& quit_ = root_.AddLeaf({.name = "q"}, kNoCallbacks);
  CmdProcessor& help_ = root_.AddLeaf({.name = "help", .hidden = true}, kNoCallbacks);
  RecordingNode adapter_{{.name = "adapter", .switch_word = "-t"}, &root_};
  CmdProcessor& adapter_list_ = adapter_.AddLeaf({.name = "list"}, kNoCallbacks);
  CmdProcessor& adapter_get_ = adapter_.AddLeaf({.name = "get"}, kNoCallbacks);
  RecordingNode info_{{.name = "info", .switch_word = "-s"}, &adapter_};
  CmdProcessor& info_get_ = info_.AddLeaf({.name = "get"}, kNoCallbacks);
  CmdProcessor& info_getcli_ = info_.AddLeaf({.name = "getcli"}, kNoCallbacks);
  RecordingNode port_{{.name = "port", .switch_word = "-t"}, &root_};
  CmdProcessor& port_list_ = port_.AddLeaf({.name = "list"}, kNoCallbacks);
};

// Commands from the argument vector.
class BatchFind : public Tree {
  ScopedRunFlags flags_{RUN_FLAG_BATCH};
};

// Commands typed at the shell.
class ShellFind : public Tree {
  ScopedRunFlags flags_{0};
};

TEST_F(BatchFind, ReachesALeafThroughASwitchPair) {
  Words words = {"-t", "adapter", "list"};
  EXPECT_EQ(Find(words), &adapter_list_);
  EXPECT_EQ(words, Words{});
  words = {"-t", "port", "list"};
  EXPECT_EQ(Find(words), &port_list_);
}

TEST_F(BatchFind, LeavesTheArguments) {
  Words words = {"-t", "adapter", "-s", "info", "getcli", "Adapter_ZX100_AB12345", "more"};
  EXPECT_EQ(Find(words), &info_getcli_);
  EXPECT_EQ(words, (Words{"Adapter_ZX100_AB12345", "more"}));
}

TEST_F(BatchFind, FindsSwitchPairsAnywhere) {
  for (Words words :
       {Words{"-t", "adapter", "-s", "info", "getcli"}, Words{"-s", "info", "-t", "adapter", "getcli"},
        Words{"-t", "adapter", "getcli", "-s", "info"}, Words{"getcli", "-s", "info", "-t", "adapter"},
        Words{"-s", "info", "getcli", "-t", "adapter"}}) {
    SCOPED_TRACE(Joined(words));
    EXPECT_EQ(Find(words), &info_getcli_);
    EXPECT_EQ(words, Words{});
  }
}

TEST_F(BatchFind, TakesAPairOutOfTheArgumentsToo) {
  Words words = {"-t", "adapter", "getcli", "argument", "-s", "info", "last"};
  EXPECT_EQ(Find(words), &info_getcli_);
  EXPECT_EQ(words, (Words{"argument", "last"}));
}

TEST_F(BatchFind, NeedsTheLeafsNameFirstOnceThePairsAreGone) {
  Words words = {"-t", "adapter", "-s", "info", "Adapter_ZX100_AB12345", "getcli"};
  EXPECT_EQ(Find(words), nullptr);
}

TEST_F(BatchFind, LooksAtLeavesAheadOfSubNodes) {
  // The adapter has a leaf "get" of its own, but the word list begins with the switch of the sub-node.
  Words words = {"-t", "adapter", "-s", "info", "get"};
  EXPECT_EQ(Find(words), &info_get_);
  words = {"-t", "adapter", "get", "-s", "info"};
  EXPECT_EQ(Find(words), &adapter_get_);
  EXPECT_EQ(words, (Words{"-s", "info"}));
}

TEST_F(BatchFind, PairAloneMatchesNothing) {
  Words words = {"-t", "adapter"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, Words{});
}

TEST_F(BatchFind, CaseDoesNotMatterInAnyWord) {
  Words words = {"-T", "ADAPTER", "LIST"};
  EXPECT_EQ(Find(words), &adapter_list_);
  words = {"-t", "Adapter", "-S", "iNFO", "GetCli", "Adapter_ZX100_AB12345"};
  EXPECT_EQ(Find(words), &info_getcli_);
  EXPECT_EQ(words, (Words{"Adapter_ZX100_AB12345"}));
}

TEST_F(BatchFind, DoubledSwitchStaysInTheWayOfTheLeaf) {
  Words words = {"-t", "-t", "adapter", "list"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, (Words{"-t", "list"}));
}

TEST_F(BatchFind, DoesNotPutErasedWordsBack) {
  Words words = {"-t", "adapter", "-s", "info", "nothing"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, Words{"nothing"});
}

TEST_F(BatchFind, TriesTheNextChildrenAgainstTheShortenedList) {
  Words words = {"-t", "adapter", "-t", "port", "list"};
  EXPECT_EQ(Find(words), &port_list_);
  EXPECT_EQ(words, Words{});

  // A leaf after the nodes sees what they have left.
  CmdProcessor& late = root_.AddLeaf({.name = "late"}, kNoCallbacks);
  words = {"-t", "adapter", "late", "argument"};
  EXPECT_EQ(Find(words), &late);
  EXPECT_EQ(words, Words{"argument"});
  words = {"-t", "adapter", "q"};  // the leaves ahead of them have been passed
  EXPECT_EQ(Find(words), nullptr);
}

TEST_F(BatchFind, MatchesARootLeafByName) {
  Words words = {"HELP", "x"};
  EXPECT_EQ(Find(words), &help_);
  EXPECT_EQ(words, Words{"x"});
  words = {"q"};
  EXPECT_EQ(Find(words), &quit_);
}

TEST_F(BatchFind, DoesNotMatchANodeByItsNameAlone) {
  Words words = {"adapter"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, Words{"adapter"});
  words = {"adapter", "list"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, (Words{"adapter", "list"}));
}

TEST_F(BatchFind, MatchesNothingWithoutWords) {
  Words words;
  EXPECT_EQ(Find(words), nullptr);
}

TEST_F(BatchFind, DoesNotMatchTheBeginningOfAName) {
  Words words = {"-t", "adapter", "lis"};
  EXPECT_EQ(Find(words), nullptr);
  words = {"-t", "adapter", "listcli"};
  EXPECT_EQ(Find(words), nullptr);
}

TEST_F(BatchFind, HiddenAndRestrictedNodesMatchLikeAllOthers) {
  CmdProcessor& restricted = port_.AddLeaf({.name = "secret", .hidden = true, .flags = 2}, kNoCallbacks);
  Words words = {"help"};
  EXPECT_EQ(Find(words), &help_);
  words = {"-t", "port", "secret"};
  EXPECT_EQ(Find(words), &restricted);
}

TEST_F(BatchFind, PassesAnExcludedNode) {
  adapter_.excluded = true;
  Words words = {"-t", "adapter", "list"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, (Words{"-t", "adapter", "list"}));
}

TEST_F(BatchFind, TakesTheFirstOfTwoChildrenOfOneName) {
  CmdProcessor& second = port_.AddLeaf({.name = "list"}, kNoCallbacks);
  Words words = {"-t", "port", "list"};
  EXPECT_EQ(Find(words), &port_list_);
  EXPECT_NE(&second, &port_list_);
}

TEST_F(ShellFind, MatchesASingleWordByNameWithoutItsSwitch) {
  Words words = {"Adapter"};
  EXPECT_EQ(Find(words), &adapter_);
  EXPECT_EQ(words, Words{});
  words = {"q"};
  EXPECT_EQ(Find(words), &quit_);
}

TEST_F(ShellFind, DoesNotEnterANodeNamedByASingleWord) {
  Words words = {"list"};
  EXPECT_EQ(Find(words), nullptr);
  words = {"info"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, Words{"info"});
}

TEST_F(ShellFind, TwoWordsNeedTheSwitchWord) {
  Words words = {"adapter", "list"};
  EXPECT_EQ(Find(words), nullptr);
  words = {"-t", "adapter"};
  EXPECT_EQ(Find(words), nullptr);
}

TEST_F(ShellFind, MatchesSwitchPairsAmongMoreWords) {
  Words words = {"-t", "adapter", "list"};
  EXPECT_EQ(Find(words), &adapter_list_);
  words = {"-t", "adapter", "-s", "info", "getcli", "Adapter_ZX100_AB12345"};
  EXPECT_EQ(Find(words), &info_getcli_);
  EXPECT_EQ(words, Words{"Adapter_ZX100_AB12345"});
}

TEST_F(ShellFind, MatchesTheLastSingleWordByNameAtALowerLevelToo) {
  Words words = {"-t", "adapter", "info"};
  EXPECT_EQ(Find(words), &info_);
  EXPECT_EQ(words, Words{});
}

TEST_F(ShellFind, MatchesNothingWithoutWords) {
  Words words;
  EXPECT_EQ(Find(words), nullptr);
}

TEST_F(ShellFind, PassesAnExcludedNodeNamedByASingleWord) {
  adapter_.excluded = true;
  Words words = {"adapter"};
  EXPECT_EQ(Find(words), nullptr);
  EXPECT_EQ(words, Words{"adapter"});
}

TEST(FindChild, AsksEachLeafWhetherItIsExcludedWithTheWordsAtThatPoint) {
  RecordingNode node;
  node.AddLeaf({.name = "get"});
  node.AddLeaf({.name = "set"});
  Words words = {"set", "value"};
  EXPECT_STREQ(node.FindChild(words)->GetName(), "set");
  EXPECT_EQ(node.calls, (Words{"Exclude set value", "Exclude set value"}));
}

TEST(FindChild, PassesAnExcludedLeaf) {
  RecordingNode node;
  node.AddLeaf({.name = "get"});
  CmdProcessor& second = node.AddLeaf({.name = "get"}, kNoCallbacks);
  node.exclude = static_cast<StatusCode>(99);
  for (const std::uint32_t run_flags : {0u, 4u}) {
    const ScopedRunFlags flags(run_flags);
    Words words = {"get"};
    EXPECT_EQ(node.FindChild(words), &second);
  }
}

TEST(GetChildren, BuildsOnce) {
  RecordingNode node;
  EXPECT_EQ(node.builds, 0);
  Words words = {"x"};
  node.FindChild(words);
  EXPECT_EQ(node.builds, 1);
  node.FindChild(words);
  PrintedBy([&] { node.Help(words); });
  node.GetChildren();
  EXPECT_EQ(node.builds, 1);
}

TEST(GetChildren, OfAPlainNodeIsEmpty) {
  MultipleCmdsProcessor node(nullptr, {.name = "port"});
  EXPECT_TRUE(node.GetChildren().empty());
}

TEST(GetChildren, KeepsTheOrderInWhichTheyWereAdded) {
  RecordingNode node;
  RecordingNode sub_node;
  CmdProcessor& first = node.AddLeaf({.name = "z"});
  node.AddNode(&sub_node);
  CmdProcessor& last = node.AddLeaf({.name = "a"});
  EXPECT_EQ(node.GetChildren(), (MultipleCmdsProcessor::Children{&first, &sub_node, &last}));
}

TEST(MultipleCmdsProcessor, IsRunAndAskedForUsageInVain) {
  MultipleCmdsProcessor node(nullptr, {.name = "port"});
  Words words;
  EXPECT_FALSE(node.IsLeaf());
  EXPECT_EQ(node.Execute(words), 2u);
  EXPECT_EQ(node.Usage(words, 0), 2u);
  EXPECT_EQ(node.Initialize(words), 0u);
  EXPECT_EQ(node.Uninitialize(words), 0u);
  EXPECT_EQ(node.IsExcluded(words), 0u);
}

// One leaf of usage index 3 with all its callbacks, and how it is run.
class RunChild : public testing::Test {
 protected:
  StatusCode Run(Words words, std::uint32_t flags = 0) {
    CmdProcessor& leaf = node_.AddLeaf({.name = "get", .usage_index = 3, .flags = flags});
    const StatusCode status = node_.RunChild(&leaf, words);
    words_left_ = words;
    return status;
  }

  RecordingNode node_;
  Words words_left_;
};

TEST_F(RunChild, RefusesANullChild) {
  Words words;
  EXPECT_EQ(node_.RunChild(nullptr, words), 7u);
}

TEST_F(RunChild, RefusesAnExcludedChildWithoutAnyFurtherCall) {
  node_.exclude = static_cast<StatusCode>(1);
  EXPECT_EQ(Run({"a"}), 7u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a"}));
}

TEST_F(RunChild, RunsAChildInItsBracket) {
  EXPECT_EQ(Run({"a", "b"}), 0u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a b", "Initialize a b", "Execute a b", "Uninitialize a b"}));
  EXPECT_EQ(words_left_, (Words{"a", "b"}));
}

TEST_F(RunChild, EndsWhereInitializeFails) {
  node_.initialize = static_cast<StatusCode>(33);
  node_.uninitialize = static_cast<StatusCode>(44);
  EXPECT_EQ(Run({"a"}), 33u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a", "Initialize a", "Uninitialize a"}));
}

TEST_F(RunChild, ShowsNoUsageWhereInitializeFailsWithAUsageCode) {
  node_.initialize = kWrongWordCount;
  EXPECT_EQ(Run({"a"}), 4u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a", "Initialize a", "Uninitialize a"}));
}

TEST_F(RunChild, RestrictedNodeSilentlyDoesNothing) {
  const ScopedRunFlags flags(0);
  node_.uninitialize = static_cast<StatusCode>(44);
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = Run({"a"}, 1); }), "");
  EXPECT_EQ(status, 44u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a", "Initialize a", "Uninitialize a"}));
}

TEST_F(RunChild, RestrictedNodeShowsNoUsage) {
  const ScopedRunFlags flags(0);
  EXPECT_EQ(Run({"?"}, 1), 0u);
  EXPECT_EQ(node_.calls, (Words{"Exclude ?", "Initialize ?", "Uninitialize ?"}));
}

TEST_F(RunChild, RestrictedNodeRunsWithTheEngineeringFlag) {
  const ScopedRunFlags flags(RUN_FLAG_ENGINEERING);
  EXPECT_EQ(Run({"a"}, 1), 0u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a", "Initialize a", "Execute a", "Uninitialize a"}));
}

TEST_F(RunChild, NodeRestrictedByAnotherBitStaysShut) {
  const ScopedRunFlags flags(RUN_FLAG_ENGINEERING);
  EXPECT_EQ(Run({"a"}, 2), 0u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a", "Initialize a", "Uninitialize a"}));
}

TEST_F(RunChild, QuestionMarkShowsTheUsageInsteadOfRunning) {
  node_.usage = static_cast<StatusCode>(55);
  node_.uninitialize = static_cast<StatusCode>(44);
  EXPECT_EQ(Run({"?", "a"}), 44u);
  EXPECT_EQ(node_.calls, (Words{"Exclude ? a", "Initialize ? a", "Usage 3 ? a", "Uninitialize ? a"}));
}

TEST_F(RunChild, QuestionMarkCountsAsTheFirstWordAlone) {
  EXPECT_EQ(Run({"a", "?"}), 0u);
  EXPECT_EQ(node_.calls, (Words{"Exclude a ?", "Initialize a ?", "Execute a ?", "Uninitialize a ?"}));
}

TEST_F(RunChild, NoOtherHelpWordShowsTheUsageByItself) {
  for (const char* word : {"/?", "help", "-h", "??", ""}) {
    node_.calls.clear();
    Run({word});
    EXPECT_EQ(node_.calls.at(2).substr(0, 7), "Execute") << word;
  }
}

TEST_F(RunChild, ShowsTheUsageOnCodes4To6) {
  node_.usage = static_cast<StatusCode>(55);
  node_.uninitialize = static_cast<StatusCode>(44);
  for (const std::uint32_t code : {4u, 5u, 6u}) {
    node_.calls.clear();
    node_.execute = static_cast<StatusCode>(code);
    EXPECT_EQ(Run({"a"}), code);
    EXPECT_EQ(node_.calls, (Words{"Exclude a", "Initialize a", "Execute a", "Usage 3 a", "Uninitialize a"}));
  }
}

TEST_F(RunChild, ShowsNoUsageOnOtherCodesAndReturnsThem) {
  node_.uninitialize = static_cast<StatusCode>(44);
  for (const std::uint32_t code : {1u, 2u, 3u, 7u, 9u, 10u, 13u, 60u, 0xFFFFFFFFu}) {
    node_.calls.clear();
    node_.execute = static_cast<StatusCode>(code);
    EXPECT_EQ(Run({"a"}), code);
    EXPECT_EQ(node_.calls, (Words{"Exclude a", "Initialize a", "Execute a", "Uninitialize a"}));
  }
}

TEST_F(RunChild, ReturnsTheResultOfUninitializeAfterASuccess) {
  node_.uninitialize = static_cast<StatusCode>(44);
  EXPECT_EQ(Run({"a"}), 44u);
}

TEST_F(RunChild, LeafWithoutCallbacksReturnsOne) {
  CmdProcessor& leaf = node_.AddLeaf({.name = "get"}, kNoCallbacks);
  Words words;
  EXPECT_EQ(node_.RunChild(&leaf, words), 1u);
}

TEST_F(RunChild, NodeWithChildrenRunsNothingAndSaysNothing) {
  RecordingNode sub_node({.name = "info"}, &node_);
  sub_node.AddLeaf({.name = "get"});
  Words words;
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = node_.RunChild(&sub_node, words); }), "");
  EXPECT_EQ(status, 2u);
  EXPECT_EQ(sub_node.calls, Words{});
}

TEST(DispatchWords, RunsTheNodeThatTheWordsName) {
  const ScopedRunFlags flags(0);
  RecordingNode node;
  node.AddLeaf({.name = "get", .usage_index = 8});
  node.execute = kInvalidParameter;
  Words words = {"GET", "a"};
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = DispatchWords(node, words); }), "");
  EXPECT_EQ(status, 6u);
  // Excluded is asked twice: for matching and for running.
  EXPECT_EQ(node.calls, (Words{"Exclude GET a", "Exclude a", "Initialize a", "Execute a", "Usage 8 a",
                               "Uninitialize a"}));
}

TEST(DispatchWords, SaysSoWhenNothingMatches) {
  const ScopedRunFlags flags(0);
  RecordingNode node;
  node.AddLeaf({.name = "get"}, kNoCallbacks);
  Words words = {"set"};
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = DispatchWords(node, words); }),
            "Unknown command or invalid target identifier!\r\n");
  EXPECT_EQ(status, 7u);
}

TEST(DispatchWords, SaysSoWithoutWordsToo) {
  const ScopedRunFlags flags(RUN_FLAG_BATCH);
  RecordingNode node;
  node.AddLeaf({.name = "get"}, kNoCallbacks);
  Words words;
  EXPECT_EQ(PrintedBy([&] { DispatchWords(node, words); }),
            "Unknown command or invalid target identifier!\r\n");
}

TEST(Help, ListsNamesPaddedToTwelve) {
  RecordingNode node;
  RecordingNode sub_node({.name = "personality", .switch_word = "-s", .description = "of the adapter"});
  node.AddLeaf({.name = "q", .description = "quit the program"}, kNoCallbacks);
  node.AddLeaf({.name = "twelve_chars", .description = "just fits"}, kNoCallbacks);
  node.AddLeaf({.name = "more_than_twelve", .description = "is not cut"}, kNoCallbacks);
  node.AddLeaf({.name = "bare"}, kNoCallbacks);
  node.AddNode(&sub_node);
  Words words;
  StatusCode status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = node.Help(words); }),
            "q           : quit the program\r\n"
            "twelve_chars: just fits\r\n"
            "more_than_twelve: is not cut\r\n"
            "bare        : \r\n"
            "personality : of the adapter\r\n");
  EXPECT_EQ(status, 0u);
}

TEST(Help, OfANodeWithoutChildrenIsEmpty) {
  MultipleCmdsProcessor node(nullptr, {.name = "port"});
  Words words;
  StatusCode status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = node.Help(words); }), "");
  EXPECT_EQ(status, 0u);
}

TEST(Help, PassesHiddenExcludedAndRestrictedChildren) {
  RecordingNode node;
  node.AddLeaf({.name = "shown"}, kNoCallbacks);
  node.AddLeaf({.name = "hidden", .hidden = true}, kNoCallbacks);
  node.AddLeaf({.name = "excluded"});
  node.AddLeaf({.name = "engineering", .flags = 1}, kNoCallbacks);
  node.AddLeaf({.name = "nobody", .flags = 2}, kNoCallbacks);
  node.exclude = static_cast<StatusCode>(1);
  Words words = {"a"};
  {
    const ScopedRunFlags flags(0);
    EXPECT_EQ(PrintedBy([&] { node.Help(words); }), "shown       : \r\n");
    EXPECT_EQ(node.calls, (Words{"Exclude a"}));
  }
  {
    const ScopedRunFlags flags(RUN_FLAG_ENGINEERING);
    EXPECT_EQ(PrintedBy([&] { node.Help(words); }), "shown       : \r\nengineering : \r\n");
  }
}

}  // namespace
