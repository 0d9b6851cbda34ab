// The root of the command tree: brings the device library up and down and owns the top-level nodes.
#pragma once

#include <memory>
#include <vector>

#include "framework/command_node.h"
#include "framework/table.h"

class MainCmdsProcessor : public MultipleCmdsProcessor {
 public:
  MainCmdsProcessor();
  ~MainCmdsProcessor() override;

  // Sets the nodes below the root, in this order. The root knows none of their classes.
  void SetTopLevelNodes(const Table<SubNode>& nodes) { top_level_ = nodes; }

  // Brings the library up and adds the top-level nodes. kFileNotFound when the library output file cannot
  // be opened: then the library is not called, no node is added, and nothing more is printed in this run.
  StatusCode Initialize(Words& words) override;
  // Releases the library and deletes the top-level nodes.
  StatusCode Uninitialize(Words& words) override;
  StatusCode Usage(Words& words, std::uint32_t index) override;
  // Runs the words as one command, or the shell when the program was started without words.
  StatusCode Execute(Words& words) override;

 protected:
  void BuildChildren() override;
  Place PlaceOf(std::size_t index) const override;
  std::unique_ptr<CmdProcessor> MakeChild(std::size_t index) override;

 private:
  Table<SubNode> top_level_;
  bool has_nodes_ = false;  // from Initialize to Uninitialize
  std::vector<std::unique_ptr<MultipleCmdsProcessor>> nodes_;
};

// The one root: created at the first call.
MainCmdsProcessor* GetMainProcessor();
void ReleaseMainProcessor();

// True if any word is "version" or "q", the commands that work at the shell only.
bool HasShellOnlyWord(const Words& words);
