#include "framework/command_node.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_debug_log.h"
#include "support/unit_recording_node.h"
#include "support/unit_run_flags.h"

namespace {

// The commands that have been run, with the form they were run in and their words.
std::vector<std::string> commands_run;
StatusCode command_result = kSuccess;

StatusCode RunList(CommandRun& run) {
  run.out.Open(run.mode);
  run.out.Close();
  commands_run.push_back("list in mode " + std::to_string(run.mode) + ": " + Joined(run.words));
  return !run.words.empty() && IsHelpWord(run.words[0]) ? kHelpWord : command_result;
}

// The order in which nodes have come and gone.
std::vector<std::string> lives;

class MortalNode : public MultipleCmdsProcessor {
 public:
  MortalNode(CmdProcessor* parent, const SubNode& self)
      : MultipleCmdsProcessor(
            parent, {.name = self.name, .switch_word = self.switch_word, .description = self.description}) {
    lives.push_back(std::string("made ") + GetName() + " under " + parent->GetName());
  }
  ~MortalNode() override { lives.push_back(std::string("deleted ") + GetName()); }
};

template <class Node>
std::unique_ptr<MultipleCmdsProcessor> Make(CmdProcessor* parent, const SubNode& self) {
  return std::make_unique<Node>(parent, self);
}

constexpr CommandRow kCommands[] = {
    {"list", "Discover list of Sorvex adapters", "Usage: list\r\n", &RunList},
};
constexpr SubNode kSubNodes[] = {
    {"info", "-s", "use this command to get Sorvex Adapter info", &Make<MortalNode>},
    {"flashinfo", "-s", "use this command to get Sorvex Adapter flash information", &Make<MortalNode>},
};
constexpr NodeClass kClass = {.name = "AdapterCmdsProcessor",
                              .help_words = "Adapter",
                              .commands = TableOf<kCommands>(),
                              .sub_nodes = TableOf<kSubNodes>(),
                              .help_description = "List of available commands"};
constexpr SubNode kSelf = {"adapter", "-t", "use this command to get/set/list Sorvex adapters", nullptr};

constexpr char kHelp[] =
    "\r\nFollowing is the list of available commands in the Adapter command mode.\r\n"
    "For detailed information of each command, please type 'command ?'\r\n"
    "All commands are case insensitive.\r\n\r\n"
    "list        : Discover list of Sorvex adapters\r\n"
    "help        : List of available commands\r\n"
    "listcli     : Discover list of Sorvex adapters\r\n"
    "info        : use this command to get Sorvex Adapter info\r\n"
    "flashinfo   : use this command to get Sorvex Adapter flash information\r\n";

class Node : public testing::Test {
 protected:
  Node() {
    commands_run.clear();
    command_result = kSuccess;
    root_.AddNode(&node_);
  }

  // Runs the words as from the argument vector. Returns what they print.
  std::string Dispatch(Words words) {
    return PrintedBy([&] { status_ = DispatchWords(root_, words); });
  }

  ScopedRunFlags flags_{RUN_FLAG_BATCH};
  RecordingNode root_{{.name = "main"}};
  CommandNode node_{&root_, kSelf, kClass};
  StatusCode status_ = kNoCallback;
};

TEST_F(Node, IsAddressedAsItsRowSays) {
  EXPECT_EQ(node_.GetParent(), &root_);
  EXPECT_STREQ(node_.GetName(), "adapter");
  EXPECT_STREQ(node_.GetSwitch(), "-t");
  EXPECT_STREQ(node_.GetDescription(), "use this command to get/set/list Sorvex adapters");
  EXPECT_FALSE(node_.IsHidden());
  EXPECT_EQ(node_.GetUsageIndex(), 0u);
  EXPECT_EQ(node_.GetFlags(), 0u);
  EXPECT_FALSE(node_.IsLeaf());
}

TEST_F(Node, HasItsLeavesBeforeItsSubNodes) {
  struct Expected {
    const char* name;
    const char* switch_word;
    std::uint32_t usage_index;
    bool leaf;
  };
  const Expected expected[] = {{"list", "", 0, true},
                               {"help", "", 1, true},
                               {"listcli", "", 2, true},
                               {"info", "-s", 0, false},
                               {"flashinfo", "-s", 0, false}};
  const auto& children = node_.GetChildren();
  ASSERT_EQ(children.size(), std::size(expected));
  for (std::size_t i = 0; i < children.size(); ++i) {
    EXPECT_STREQ(children[i]->GetName(), expected[i].name);
    EXPECT_STREQ(children[i]->GetSwitch(), expected[i].switch_word);
    EXPECT_EQ(children[i]->GetUsageIndex(), expected[i].usage_index);
    EXPECT_EQ(children[i]->IsLeaf(), expected[i].leaf);
    EXPECT_EQ(children[i]->GetParent(), &node_);
    EXPECT_FALSE(children[i]->IsHidden());
    EXPECT_EQ(children[i]->GetFlags(), 0u);
  }
  EXPECT_STREQ(children[2]->GetDescription(), "Discover list of Sorvex adapters");
  EXPECT_STREQ(children[3]->GetDescription(), "use this command to get Sorvex Adapter info");
}

TEST_F(Node, RunsThePlainFormInXmlAndTheCliFormInText) {
  EXPECT_EQ(Dispatch({"-t", "adapter", "list", "a"}),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n</output>\n");
  EXPECT_EQ(Dispatch({"-t", "adapter", "listcli", "b", "c"}),
            "****************************************************\n"
            "****************************************************\n");
  EXPECT_EQ(commands_run, (std::vector<std::string>{"list in mode 1: a", "list in mode 2: b c"}));
}

TEST_F(Node, ReturnsTheCommandsStatus) {
  command_result = kReadFailed;
  Dispatch({"-t", "adapter", "list"});
  EXPECT_EQ(status_, 13u);
  command_result = kMemoryError;
  Dispatch({"-t", "adapter", "listcli"});
  EXPECT_EQ(status_, 42u);
}

TEST_F(Node, QuestionMarkAfterAPlainFormPrintsNothing) {
  EXPECT_EQ(Dispatch({"-t", "adapter", "list", "?"}), "");
  EXPECT_EQ(status_, 0u);
  EXPECT_TRUE(commands_run.empty());
}

TEST_F(Node, QuestionMarkAfterTheCliFormPrintsItsUsage) {
  EXPECT_EQ(Dispatch({"-t", "adapter", "listcli", "?"}), "Usage: list\r\n");
  EXPECT_EQ(status_, 0u);
  EXPECT_TRUE(commands_run.empty());
}

TEST_F(Node, HelpWordAfterTheCliFormPrintsItsUsageAfterWhatItPrinted) {
  EXPECT_EQ(Dispatch({"-t", "adapter", "listcli", "help"}),
            "****************************************************\n"
            "****************************************************\n"
            "Usage: list\r\n");
  EXPECT_EQ(status_, 5u);
}

TEST_F(Node, HelpWordAfterAPlainFormPrintsNoUsage) {
  EXPECT_EQ(Dispatch({"-t", "adapter", "list", "help"}),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n</output>\n");
  EXPECT_EQ(status_, 5u);
}

TEST_F(Node, ListsItsCommands) {
  EXPECT_EQ(Dispatch({"-t", "adapter", "help"}), kHelp);
  EXPECT_EQ(status_, 0u);
}

TEST_F(Node, PrintsTheTextOfAUsageIndex) {
  Words words;
  StatusCode status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = CommandNode::CmdUsage(node_, words, 2); }), "Usage: list\r\n");
  EXPECT_EQ(status, 0u);
}

TEST_F(Node, ListsItsCommandsForTheUsageIndexOfHelp) {
  Words words = {"?"};
  StatusCode status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = CommandNode::CmdUsage(node_, words, 1); }), kHelp);
  EXPECT_EQ(status, 0u);
  EXPECT_EQ(Dispatch({"-t", "adapter", "help", "?"}), kHelp);
}

TEST_F(Node, HasNoUsageForAnyOtherIndex) {
  Words words;
  for (const std::uint32_t index : {0u, 3u, 4u, 0xFFFFFFFFu}) {
    StatusCode status = kSuccess;
    EXPECT_EQ(PrintedBy([&] { status = CommandNode::CmdUsage(node_, words, index); }), "");
    EXPECT_EQ(status, 2u);
  }
}

TEST_F(Node, PrintsPercentSignsOfUsageTextsAsTheyAre) {
  static constexpr CommandRow kPercent[] = {{"list", "", "Usage: 100%s %n\r\n", &RunList}};
  static constexpr NodeClass kPercentClass = {"C", "Some %d", TableOf<kPercent>()};
  CommandNode node(nullptr, kSelf, kPercentClass);
  Words words;
  EXPECT_EQ(PrintedBy([&] { CommandNode::CmdUsage(node, words, 2); }), "Usage: 100%s %n\r\n");
  const std::string head = "\r\nFollowing is the list of available commands in the Some %d command mode.\r\n";
  EXPECT_EQ(PrintedBy([&] { CommandNode::CmdHelp(node, words); }).substr(0, head.size()), head);
}

TEST_F(Node, ReachesItsSubNodes) {
  Words words = {"-t", "adapter", "-s", "flashinfo"};
  EXPECT_EQ(root_.FindChild(words), nullptr);  // the sub-node has no commands
  EXPECT_EQ(words, Words{});
}

// The words with which the class's help asked whether a child is excluded.
std::string words_of_exclude;

StatusCode NeverExcluded(CmdProcessor&, Words& words) {
  words_of_exclude = words.empty() ? "none" : Joined(words);
  return kSuccess;
}

StatusCode AlwaysExcluded(CmdProcessor&, Words&) {
  return kNoCallback;
}

constexpr NodeClass kHelpOnly = {.name = "C", .help_words = "Special", .commands = {}};

// A class with children of every kind that the help looks at.
class SpecialNode : public CommandNode {
 public:
  SpecialNode() : CommandNode(nullptr, kSelf, kHelpOnly) {}

 protected:
  void BuildChildren() override {
    CommandNode::BuildChildren();
    Add({.name = "hidden", .hidden = true}, {});
    Add({.name = "asked"}, {.exclude = &NeverExcluded});
    Add({.name = "excluded"}, {.exclude = &AlwaysExcluded});
    Add({.name = "engineering", .flags = 1}, {});
    Add({.name = "nobody", .flags = 2}, {});
  }

 private:
  void Add(const Place& place, const Callbacks& callbacks) {
    AddLeaf(std::make_unique<CmdProcessor>(this, place, callbacks));
  }
};

constexpr char kSpecialHead[] =
    "\r\nFollowing is the list of available commands in the Special command mode.\r\n"
    "For detailed information of each command, please type 'command ?'\r\n"
    "All commands are case insensitive.\r\n\r\n"
    "help        : list of available commands\r\n";

TEST(CmdHelp, ShowsHiddenChildrenButNoExcludedOrRestrictedOnes) {
  SpecialNode node;
  Words words;
  const ScopedRunFlags flags(0);
  EXPECT_EQ(PrintedBy([&] { CommandNode::CmdHelp(node, words); }),
            std::string(kSpecialHead) + "hidden      : \r\nasked       : \r\n");
}

TEST(CmdHelp, ShowsRestrictedChildrenWithTheEngineeringFlag) {
  SpecialNode node;
  Words words;
  const ScopedRunFlags flags(RUN_FLAG_ENGINEERING);
  EXPECT_EQ(PrintedBy([&] { CommandNode::CmdHelp(node, words); }),
            std::string(kSpecialHead) + "hidden      : \r\nasked       : \r\nengineering : \r\n");
}

TEST(CmdHelp, AsksWithItsWordsAndAsUsageWithoutAny) {
  SpecialNode node;
  Words words = {"a", "b"};
  PrintedBy([&] { CommandNode::CmdHelp(node, words); });
  EXPECT_EQ(words_of_exclude, "a b");
  PrintedBy([&] { CommandNode::CmdUsage(node, words, 0); });
  EXPECT_EQ(words_of_exclude, "none");
  EXPECT_EQ(words, (Words{"a", "b"}));
}

constexpr SubNode kMortals[] = {
    {"first", "-s", "", &Make<MortalNode>},
    {"second", "-s", "", &Make<MortalNode>},
    {"third", "-s", "", &Make<MortalNode>},
};
constexpr NodeClass kMortalClass = {"C", "Mortal", {}, TableOf<kMortals>()};

// The log shows each node's beginning and end.
TEST(CommandNode, MakesAndDeletesItsSubNodesInTheirOrderWithADebugLog) {
  lives.clear();
  LoggedAt(kDebugTrace, [] {
    CommandNode node(nullptr, kSelf, kMortalClass);
    EXPECT_EQ(lives, (std::vector<std::string>{"made first under adapter", "made second under adapter",
                                               "made third under adapter"}));
    EXPECT_EQ(node.GetChildren().size(), 4u);  // `help` is the first
    lives.clear();
  });
  EXPECT_EQ(lives, (std::vector<std::string>{"deleted first", "deleted second", "deleted third"}));
}

TEST(CommandNode, MakesASubNodeWhenItIsNamed) {
  const ScopedRunFlags flags(RUN_FLAG_BATCH);
  lives.clear();
  {
    CommandNode node(nullptr, kSelf, kMortalClass);
    Words words = {"-s", "second"};
    EXPECT_EQ(node.FindChild(words), nullptr);
    EXPECT_EQ(lives, (std::vector<std::string>{"made second under adapter"}));
    words = {"-s", "second", "-s", "first"};
    EXPECT_EQ(node.FindChild(words), nullptr);
    EXPECT_EQ(lives, (std::vector<std::string>{"made second under adapter", "made first under adapter"}));
    EXPECT_EQ(node.GetChildren().size(), 4u);
    EXPECT_EQ(lives.size(), 3u);
    EXPECT_EQ(lives.back(), "made third under adapter");
    EXPECT_STREQ(node.GetChildren()[1]->GetName(), "first");
    EXPECT_EQ(lives.size(), 3u);
  }
  EXPECT_EQ(lives.size(), 6u);
}

TEST(CommandNode, MakesALeafOnce) {
  const ScopedRunFlags flags(RUN_FLAG_BATCH);
  static constexpr NodeClass kListClass = {"C", "List", TableOf<kCommands>()};
  CommandNode node(nullptr, kSelf, kListClass);
  Words words = {"LISTCLI", "rest"};
  CmdProcessor* const leaf = node.FindChild(words);
  EXPECT_EQ(words, Words{"rest"});
  ASSERT_NE(leaf, nullptr);
  EXPECT_EQ(leaf, node.GetChildren()[2]);
  words = {"listcli"};
  EXPECT_EQ(node.FindChild(words), leaf);
}

// Where rows depart from the rule: indexes of plain forms, words and descriptions of text forms, no usage.
TEST(CommandNode, FollowsTheExceptionsOfItsRows) {
  static constexpr CommandRow kRows[] = {
      {.word = "get",
       .description = "read it",
       .usage = "Usage: get\r\n",
       .run = &RunList,
       .cli_word = "runcli",
       .cli_description = "Read it"},
      {.word = "reset", .description = "clear it", .usage = nullptr, .run = &RunList, .usage_index = 0},
  };
  static constexpr NodeClass kRowsClass = {"C", "Odd", TableOf<kRows>()};
  CommandNode node(nullptr, kSelf, kRowsClass);
  std::vector<std::string> children;
  for (const CmdProcessor* child : node.GetChildren()) {
    children.push_back(child->GetName() + (" " + std::to_string(child->GetUsageIndex())) + " " +
                       child->GetDescription());
  }
  EXPECT_EQ(children, (std::vector<std::string>{"get 0 read it", "reset 0 clear it",
                                                "help 1 list of available commands", "runcli 2 Read it",
                                                "resetcli 3 clear it"}));
  Words words;
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = CommandNode::CmdUsage(node, words, 3); }), "");
  EXPECT_EQ(status, kNoSuchUsage);
}

}  // namespace
