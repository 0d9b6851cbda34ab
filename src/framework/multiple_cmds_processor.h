// A node with children: how words are matched down the tree and how the matched node is run.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "framework/cmd_processor.h"

class MultipleCmdsProcessor : public CmdProcessor {
 public:
  using Children = std::vector<CmdProcessor*>;

  MultipleCmdsProcessor(CmdProcessor* parent, Place place) : CmdProcessor(parent, std::move(place)) {}
  ~MultipleCmdsProcessor() override;

  bool IsLeaf() const override { return false; }
  StatusCode Usage(Words& words, std::uint32_t index) override;
  StatusCode Execute(Words& words) override;
  // Lists the children: name and description of each that is neither excluded, hidden nor restricted.
  StatusCode Help(Words& words) override;

  // The children in order, all of them made.
  const Children& GetChildren();

  // Matches the words down the tree and erases those that it consumes. Switch pairs may be anywhere in the
  // list; a leaf's name must be the first word left. Without RUN_FLAG_BATCH a single word names a child by
  // its name alone, and such a child is not entered. Returns null when nothing matches; consumed words stay
  // erased.
  CmdProcessor* FindChild(Words& words);

  // Runs a matched node in its bracket of Initialize and Uninitialize, and prints its usage on a wrong word
  // count, a help word or an invalid parameter. Returns the node's code.
  static StatusCode RunChild(CmdProcessor* child, Words& words);

 protected:
  // Adds the class's children, leaves before sub-nodes, with AddUnmade, AddLeaf and AddNode. A plain node has
  // none.
  virtual void BuildChildren() {}

  // Adds `count` children that are made when they are first matched or listed: a short command needs few
  // nodes of the tree. Until then PlaceOf says how each is addressed. No such child can be excluded.
  void AddUnmade(std::size_t count);
  // Both count all children.
  virtual Place PlaceOf(std::size_t) const { return {}; }
  virtual std::unique_ptr<CmdProcessor> MakeChild(std::size_t) { return nullptr; }

  void AddLeaf(std::unique_ptr<CmdProcessor> leaf);
  void AddNode(CmdProcessor* node);  // a null is no child

  // Forgets all children; the next look at them builds them anew.
  void DropChildren();

  // Prints one line of a command list.
  static void PrintChild(const CmdProcessor& child);

 private:
  void BuildOnce();
  CmdProcessor& ChildAt(std::size_t index);
  Place PlaceOfChild(std::size_t index) const;
  bool IsChildExcluded(std::size_t index, Words& words);
  CmdProcessor* MatchByName(Words& words);
  CmdProcessor* MatchBySwitch(Words& words);

  bool built_ = false;
  Children children_;  // null: not made yet
  std::vector<std::unique_ptr<CmdProcessor>> owned_;
};

// The run step that the argument vector and the shell share: finds the node that the words name and runs it.
// When there is none, says so and returns kUnknownCommand.
StatusCode DispatchWords(MultipleCmdsProcessor& node, Words& words);
