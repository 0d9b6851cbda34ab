// A node of a command tree that writes down what is asked of its leaves.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/multiple_cmds_processor.h"

// The words, with a blank between two.
std::string Joined(const Words& words);

class RecordingNode : public MultipleCmdsProcessor {
 public:
  explicit RecordingNode(const Place& place = {.name = "node"}, CmdProcessor* parent = nullptr)
      : MultipleCmdsProcessor(parent, place) {}

  // What the callbacks of its leaves answer.
  StatusCode initialize = kSuccess;
  StatusCode uninitialize = kSuccess;
  StatusCode exclude = kSuccess;
  StatusCode execute = kSuccess;
  StatusCode usage = kSuccess;
  StatusCode help = kSuccess;

  // The callbacks made so far, each with the words it saw: "Execute a b", "Usage 3 ?".
  std::vector<std::string> calls;

  bool excluded = false;  // the answer to IsExcluded of the node itself
  int builds = 0;         // how often its children have been asked to be built

  StatusCode IsExcluded(Words&) override { return excluded ? kNoCallback : kSuccess; }

  // Adds a leaf with all callbacks but `hidden`.
  CmdProcessor& AddLeaf(const Place& place) { return AddLeaf(place, AllCallbacks()); }
  CmdProcessor& AddLeaf(const Place& place, const Callbacks& callbacks);
  using MultipleCmdsProcessor::AddNode;

  // Callbacks that record the call in the parent, which is a RecordingNode.
  static Callbacks AllCallbacks();

 protected:
  void BuildChildren() override { ++builds; }
};
