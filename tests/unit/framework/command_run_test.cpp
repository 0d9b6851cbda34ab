#include "framework/command_run.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "framework/library_call.h"
#include "framework/report.h"
#include "support/unit_captured_stdout.h"
#include "support/unit_command_run.h"
#include "support/unit_debug_log.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"

namespace {

using Strings = std::vector<std::string>;
using CommandRunLog = DebugLogTest;

TEST_F(CommandRunLog, HeadsItsLinesWithClassAndFunction) {
  SetMask("5");
  const TestRun test;
  test.run.Trace("step %d", 7);
  test.run.LogFailure("%s failed err=%d", "Get FEC info", -1);
  EXPECT_EQ(Steps(), Strings{"TestCmdsProcessor::CmdTestCommon: step 7"});
  EXPECT_EQ(Failures(), Strings{"TestCmdsProcessor::CmdTestCommon: Get FEC info failed err=-1"});
}

TEST_F(CommandRunLog, WritesALineAtItsLevelAlone) {
  const TestRun test;
  for (const char* mask : {"0", "2", "8", "65530"}) {
    SetMask(mask);
    test.run.Trace("step");
    test.run.LogFailure("failure");
    EXPECT_EQ(test.run.Refuse(kLinkDown, "Port is in Link Down state"), kLinkDown);
  }
  EXPECT_EQ(Content(), "");
}

TEST_F(CommandRunLog, SaysWhyItRefuses) {
  SetMask("4");
  const TestRun test;
  EXPECT_EQ(test.run.Refuse(kFileNotFound, "file [%s] does not exist", "100%s"), kFileNotFound);
  EXPECT_EQ(Failures(), Strings{"TestCmdsProcessor::CmdTestCommon: file [100%s] does not exist"});
}

TEST_F(CommandRunLog, NamesTheFunctionAtWork) {
  SetMask("1");
  TestRun test;
  {
    const FunctionScope display(test.run, "DisplayTest");
    test.run.Trace("inside");
    {
      const FunctionScope look_up(test.run, {"OtherCmdsProcessor", "GetOther"});
      test.run.Trace("deeper");
    }
    test.run.Trace("inside again");
  }
  test.run.Trace("outside");
  EXPECT_EQ(
      Steps(),
      (Strings{"TestCmdsProcessor::DisplayTest: Entered", "TestCmdsProcessor::DisplayTest: inside",
               "OtherCmdsProcessor::GetOther: Entered", "OtherCmdsProcessor::GetOther: deeper",
               "OtherCmdsProcessor::GetOther: Exiting", "TestCmdsProcessor::DisplayTest: inside again",
               "TestCmdsProcessor::DisplayTest: Exiting", "TestCmdsProcessor::CmdTestCommon: outside"}));
}

constexpr StatusMessage kMessages[] = {kInvalidParameter, {kReadFailed, "Failed, Test read failed"}};
constexpr NodeClass kClass = {.name = "SomeCmdsProcessor",
                              .help_words = "Some",
                              .commands = {},
                              .frame = {"SomeInfo", "Some", "SomeList"},
                              .messages = TableOf<kMessages>()};
constexpr char kRuler[] = "****************************************************\n";

TEST_F(CommandRunLog, WritesTheClassesErrorDocumentAndItsMessageToTheLog) {
  SetMask("1");
  TestRun test({}, OUTPUT_CLI, kClass);
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = test.run.DisplayError(kReadFailed); }),
            std::string(kRuler) + "SomeInfo:\nMessage: Failed, Test read failed\nSome: " + kRuler);
  EXPECT_EQ(status, kReadFailed);
  EXPECT_EQ(Steps(), (Strings{"SomeCmdsProcessor::DisplayError: Entered",
                              "SomeCmdsProcessor::DisplayError: Message=Failed, Test read failed",
                              "SomeCmdsProcessor::DisplayError: Exiting"}));
}

TEST_F(CommandRunLog, WritesTheRebootFieldOfAFailedChange) {
  TestRun test({}, OUTPUT_CLI, kClass);
  EXPECT_EQ(PrintedBy([&] { test.run.DisplayError(kInvalidParameter, kNoRebootNeeded); }),
            std::string(kRuler) +
                "SomeInfo:\nReboot Required: false\nMessage: Failed, Invalid parameter\nSome: " + kRuler);
}

TEST_F(CommandRunLog, FailsWithoutMemoryForItsReport) {
  SetMask("4");
  TestRun test({}, OUTPUT_CLI, kClass);
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = test.run.DisplayNoMemory(); }),
            std::string(kRuler) + "SomeInfo:\nMessage: Failed, Unknown\nSome: " + kRuler);
  EXPECT_EQ(status, kMemoryError);
  EXPECT_EQ(Failures(), Strings{"SomeCmdsProcessor::CmdTestCommon: Output memory alloc failed"});
}

TEST_F(CommandRunLog, LogsAFailedLibraryCallWithItsAnswerAsASignedNumber) {
  SetMask("4");
  const TestRun test;
  EXPECT_EQ(StatusOfCall(test.run, "Get something", 0, kReadFailed), kSuccess);
  EXPECT_EQ(StatusOfCall(test.run, "Get something", 150, kReadFailed), kMaintenanceMode);
  EXPECT_EQ(StatusOfCall(test.run, "Get something", 0xFFFFFFFF, kReadFailed), kReadFailed);
  EXPECT_EQ(Failures(), (Strings{"TestCmdsProcessor::CmdTestCommon: Get something failed err=150",
                                 "TestCmdsProcessor::CmdTestCommon: Get something failed err=-1"}));
}

TEST_F(CommandRunLog, LogsAFailedQuestionForAReboot) {
  SetMask("4");
  ResetLibrary();
  Library().reboot_result = 13;
  TestRun test;
  EXPECT_TRUE(IsRebootRequired(test.run));
  EXPECT_EQ(Failures(), Strings{"TestCmdsProcessor::CmdTestCommon: Get Reboot Required failed err=13"});
}

TEST_F(CommandRunLog, LogsABracketThatCannotBeOpened) {
  SetMask("4");
  const NoLibraryOutputFile none;
  std::filesystem::create_directory("/var/tmp/torpi-output.log");
  const TestRun test;
  { const OutputBracket plain(test.run); }
  { const OutputBracket worded(test.run, " before RDP"); }
  EXPECT_EQ(
      Failures(),
      (Strings{
          "TestCmdsProcessor::CmdTestCommon: Failed to open /var/tmp/torpi-output.log file",
          "TestCmdsProcessor::CmdTestCommon: Failed to open /var/tmp/torpi-output.log file before RDP"}));
}

// The functions of a command in the log come from its row.

StatusCode Step(CommandRun& run) {
  run.Trace("at work");
  return kSuccess;
}

constexpr CommandRow kCommands[] = {
    {"setFile", "", nullptr, &Step},
    {.word = "getraw", .description = "", .usage = nullptr, .run = &Step, .function = "GetRaw"},
};
constexpr NodeClass kTwoForms = {
    .name = "SomeCmdsProcessor", .help_words = "Some", .commands = TableOf<kCommands>()};

TEST_F(CommandRunLog, TracesBothFormsOfACommandUnderTheirOwnNames) {
  SetMask("1");
  CommandNode node(nullptr, {"some", "-s", "", nullptr}, kTwoForms);
  const auto& children = node.GetChildren();
  Words words;
  children[0]->Execute(words);  // setFile
  children[4]->Execute(words);  // getrawcli
  EXPECT_EQ(
      Steps(),
      (Strings{"SomeCmdsProcessor::CmdSetFile: Entered", "SomeCmdsProcessor::CmdSetFileCommon: Entered",
               "SomeCmdsProcessor::CmdSetFileCommon: at work", "SomeCmdsProcessor::CmdSetFileCommon: Exiting",
               "SomeCmdsProcessor::CmdSetFile: Exiting", "SomeCmdsProcessor::CmdGetRawCli: Entered",
               "SomeCmdsProcessor::CmdGetRawCommon: Entered", "SomeCmdsProcessor::CmdGetRawCommon: at work",
               "SomeCmdsProcessor::CmdGetRawCommon: Exiting", "SomeCmdsProcessor::CmdGetRawCli: Exiting"}));
}

TEST_F(CommandRunLog, TracesHelpAndUsage) {
  SetMask("1");
  CommandNode node(nullptr, {"some", "-s", "", nullptr}, kTwoForms);
  Words words;
  PrintedBy([&] { CommandNode::CmdHelp(node, words); });
  EXPECT_EQ(Steps(), (Strings{"SomeCmdsProcessor::CmdHelp: Entered", "SomeCmdsProcessor::CmdHelp: Exiting"}));
  PrintedBy([&] { CommandNode::CmdUsage(node, words, 3); });
  EXPECT_EQ(Steps().back(), "SomeCmdsProcessor::Usage: Exiting");
}

}  // namespace
