#include "framework/cmd_processor.h"

#include <gtest/gtest.h>

#include <string>

#include "support/unit_recording_node.h"
#include "support/unit_run_flags.h"

namespace {

constexpr CmdProcessor::Place kPlace = {.name = "get",
                                        .switch_word = "-s",
                                        .description = "a description",
                                        .hidden = true,
                                        .usage_index = 3,
                                        .flags = 5};

TEST(CmdProcessor, GivesItsPlace) {
  RecordingNode parent;
  CmdProcessor leaf(&parent, kPlace);
  EXPECT_EQ(leaf.GetParent(), &parent);
  EXPECT_STREQ(leaf.GetName(), "get");
  EXPECT_STREQ(leaf.GetSwitch(), "-s");
  EXPECT_STREQ(leaf.GetDescription(), "a description");
  EXPECT_TRUE(leaf.IsHidden());
  EXPECT_EQ(leaf.GetUsageIndex(), 3u);
  EXPECT_EQ(leaf.GetFlags(), 5u);
  EXPECT_TRUE(leaf.IsLeaf());
}

TEST(CmdProcessor, IsShownByDefault) {
  CmdProcessor leaf(nullptr, {.name = "get"});
  EXPECT_EQ(leaf.GetParent(), nullptr);
  EXPECT_STREQ(leaf.GetSwitch(), "");
  EXPECT_STREQ(leaf.GetDescription(), "");
  EXPECT_FALSE(leaf.IsHidden());
  EXPECT_EQ(leaf.GetUsageIndex(), 0u);
  EXPECT_EQ(leaf.GetFlags(), 0u);
  EXPECT_TRUE(leaf.IsUsable());
}

TEST(CmdProcessor, WithoutCallbacksDoesNothing) {
  RecordingNode parent;
  CmdProcessor leaf(&parent, kPlace);
  Words words = {"a"};
  EXPECT_EQ(leaf.Initialize(words), 0u);
  EXPECT_EQ(leaf.Uninitialize(words), 0u);
  EXPECT_EQ(leaf.IsExcluded(words), 0u);
  EXPECT_EQ(leaf.Usage(words, 3), 0u);
  EXPECT_EQ(leaf.Execute(words), 1u);
  EXPECT_EQ(leaf.Help(words), 1u);
  EXPECT_EQ(words, Words{"a"});
}

TEST(CmdProcessor, HandsParentAndWordsToItsCallbacks) {
  RecordingNode parent;
  CmdProcessor leaf(&parent, kPlace, RecordingNode::AllCallbacks());
  parent.initialize = static_cast<StatusCode>(21);
  parent.uninitialize = static_cast<StatusCode>(22);
  parent.exclude = static_cast<StatusCode>(23);
  parent.execute = static_cast<StatusCode>(24);
  parent.usage = static_cast<StatusCode>(25);
  parent.help = static_cast<StatusCode>(26);
  Words words = {"a", "b"};
  EXPECT_EQ(leaf.Initialize(words), 21u);
  EXPECT_EQ(leaf.Uninitialize(words), 22u);
  EXPECT_EQ(leaf.IsExcluded(words), 23u);
  EXPECT_EQ(leaf.Execute(words), 24u);
  EXPECT_EQ(leaf.Usage(words, 7), 25u);  // the index of the call, not of the place
  EXPECT_EQ(leaf.Help(words), 26u);
  EXPECT_EQ(parent.calls, (Words{"Initialize a b", "Uninitialize a b", "Exclude a b", "Execute a b",
                                 "Usage 7 a b", "Help a b"}));
}

// Of the callbacks of the "hidden" question: the words they saw, and their answer.
std::string words_of_hidden;
StatusCode answer_to_hidden = kSuccess;

StatusCode OnHidden(CmdProcessor&, Words& words) {
  words_of_hidden = words.empty() ? "none" : Joined(words);
  return answer_to_hidden;
}

TEST(CmdProcessor, IsHiddenWhenItsCallbackAnswersZero) {
  RecordingNode parent;
  CmdProcessor in_the_open(&parent, {.name = "get", .hidden = false}, {.hidden = &OnHidden});
  CmdProcessor out_of_sight(&parent, {.name = "get", .hidden = true}, {.hidden = &OnHidden});
  answer_to_hidden = kSuccess;
  EXPECT_TRUE(in_the_open.IsHidden());
  EXPECT_TRUE(out_of_sight.IsHidden());
  for (const std::uint32_t answer : {1u, 2u, 0xFFFFFFFFu}) {
    answer_to_hidden = static_cast<StatusCode>(answer);
    EXPECT_FALSE(in_the_open.IsHidden());
    EXPECT_FALSE(out_of_sight.IsHidden());
  }
}

TEST(CmdProcessor, AsksItsHiddenCallbackWithoutWords) {
  RecordingNode parent;
  CmdProcessor leaf(&parent, {.name = "get"}, {.hidden = &OnHidden});
  words_of_hidden = "not asked";
  leaf.IsHidden();
  EXPECT_EQ(words_of_hidden, "none");
}

TEST(CmdProcessor, RestrictedNodeNeedsBitZeroAndTheEngineeringFlag) {
  struct Case {
    std::uint32_t node_flags;
    std::uint32_t run_flags;
    bool usable;
  };
  for (const Case& test : {Case{0, 0, true}, Case{0, 8, true}, Case{1, 0, false}, Case{1, 8, true},
                           Case{3, 8, true}, Case{2, 0, false}, Case{2, 8, false}, Case{8, 8, false},
                           Case{1, 1 | 2 | 4 | 16, false}, Case{0xFFFFFFFE, 8, false}}) {
    const ScopedRunFlags flags(test.run_flags);
    const CmdProcessor leaf(nullptr, {.name = "get", .flags = test.node_flags});
    EXPECT_EQ(leaf.IsUsable(), test.usable)
        << "node flags " << test.node_flags << ", run flags " << test.run_flags;
  }
}

TEST(CmdProcessor, WritesDocuments) {
  CmdProcessor leaf(nullptr, {.name = "get"});
  EXPECT_EQ(leaf.BeginStructure("S"), kBadMode);
}

}  // namespace
