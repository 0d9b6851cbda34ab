// One node of the command tree: a leaf that runs a command.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "framework/serializer.h"
#include "framework/status.h"
#include "framework/words.h"

// A node is an output writer too: a command writes its document through the node that it belongs to. Switch
// words and descriptions are literals, which outlive every node.
class CmdProcessor : public Serializer {
 public:
  // Called with the node's parent, whose own class knows what to do.
  using Callback = StatusCode (*)(CmdProcessor& parent, Words& words);
  using UsageCallback = StatusCode (*)(CmdProcessor& parent, Words& words, std::uint32_t index);

  struct Callbacks {
    Callback initialize = nullptr;
    Callback uninitialize = nullptr;
    Callback exclude = nullptr;  // nonzero keeps the node out of matching and lists
    Callback execute = nullptr;
    UsageCallback usage = nullptr;
    Callback help = nullptr;
    Callback hidden = nullptr;  // zero means hidden; without it the member `hidden` decides
  };

  // How a node is addressed. A node with a switch word is named by the pair switch word, name.
  struct Place {
    std::string name;
    const char* switch_word = "";
    const char* description = "";
    bool hidden = false;            // kept out of the generic command list
    std::uint32_t usage_index = 0;  // handed to the usage callback
    std::uint32_t flags = 0;        // nonzero: restricted; with bit 0 set, usable under "-eng"
  };

  CmdProcessor(CmdProcessor* parent, Place place) : CmdProcessor(parent, std::move(place), {}) {}
  CmdProcessor(CmdProcessor* parent, Place place, const Callbacks& callbacks)
      : parent_(parent), place_(std::move(place)), callbacks_(callbacks) {}

  CmdProcessor* GetParent() const { return parent_; }

  virtual StatusCode Initialize(Words& words);
  virtual StatusCode Uninitialize(Words& words);
  virtual StatusCode IsExcluded(Words& words);
  virtual bool IsLeaf() const { return true; }
  bool IsHidden();

  const Place& GetPlace() const { return place_; }
  const char* GetName() const { return place_.name.c_str(); }
  const char* GetSwitch() const { return place_.switch_word; }
  std::uint32_t GetUsageIndex() const { return place_.usage_index; }
  const char* GetDescription() const { return place_.description; }
  std::uint32_t GetFlags() const { return place_.flags; }

  virtual StatusCode Usage(Words& words, std::uint32_t index);
  virtual StatusCode Execute(Words& words);
  virtual StatusCode Help(Words& words);

  // False for a node whose flags restrict it and whose restriction the engineering flag does not lift.
  bool IsUsable() const;

 private:
  StatusCode Call(Callback callback, Words& words, StatusCode without_callback);

  CmdProcessor* parent_;
  Place place_;
  Callbacks callbacks_;
};
