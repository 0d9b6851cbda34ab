// A run of a command, for the tests of what commands are made of.
#pragma once

#include <utility>

#include "framework/command_node.h"
#include "framework/command_run.h"

// The class whose command runs when a test names none; its names head the lines of the debug log:
// "TestCmdsProcessor::CmdTestCommon: ...".
inline constexpr NodeClass kTestClass = {.name = "TestCmdsProcessor",
                                         .help_words = "Test",
                                         .commands = {},
                                         .frame = {"Test", "Tests", "TestList"}};

struct TestRun {
  explicit TestRun(Words given = {}, OutputMode mode = OUTPUT_XML, const NodeClass& node_class = kTestClass)
      : words(std::move(given)), run(node_class, "CmdTestCommon", out, words, mode) {}

  Serializer out;
  Words words;
  CommandRun run;
};
