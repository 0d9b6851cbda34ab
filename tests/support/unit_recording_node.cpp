#include "support/unit_recording_node.h"

#include <utility>

namespace {

// Writes down one callback in its node and answers as the node's member says.
StatusCode Answer(CmdProcessor& parent, const char* callback, const Words& words,
                  StatusCode RecordingNode::*answer) {
  auto& node = static_cast<RecordingNode&>(parent);
  node.calls.push_back(words.empty() ? std::string(callback) : callback + (" " + Joined(words)));
  return node.*answer;
}

StatusCode OnInitialize(CmdProcessor& parent, Words& words) {
  return Answer(parent, "Initialize", words, &RecordingNode::initialize);
}

StatusCode OnUninitialize(CmdProcessor& parent, Words& words) {
  return Answer(parent, "Uninitialize", words, &RecordingNode::uninitialize);
}

StatusCode OnExclude(CmdProcessor& parent, Words& words) {
  return Answer(parent, "Exclude", words, &RecordingNode::exclude);
}

StatusCode OnExecute(CmdProcessor& parent, Words& words) {
  return Answer(parent, "Execute", words, &RecordingNode::execute);
}

StatusCode OnUsage(CmdProcessor& parent, Words& words, std::uint32_t index) {
  return Answer(parent, ("Usage " + std::to_string(index)).c_str(), words, &RecordingNode::usage);
}

StatusCode OnHelp(CmdProcessor& parent, Words& words) {
  return Answer(parent, "Help", words, &RecordingNode::help);
}

}  // namespace

std::string Joined(const Words& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

CmdProcessor& RecordingNode::AddLeaf(const Place& place, const Callbacks& callbacks) {
  auto leaf = std::make_unique<CmdProcessor>(this, place, callbacks);
  CmdProcessor& added = *leaf;
  MultipleCmdsProcessor::AddLeaf(std::move(leaf));
  return added;
}

CmdProcessor::Callbacks RecordingNode::AllCallbacks() {
  return {.initialize = &OnInitialize,
          .uninitialize = &OnUninitialize,
          .exclude = &OnExclude,
          .execute = &OnExecute,
          .usage = &OnUsage,
          .help = &OnHelp};
}
