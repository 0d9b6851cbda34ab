#include "framework/multiple_cmds_processor.h"

#include <utility>

#include "framework/console.h"
#include "framework/run_flags.h"

MultipleCmdsProcessor::~MultipleCmdsProcessor() = default;

StatusCode MultipleCmdsProcessor::Usage(Words&, std::uint32_t) {
  return kNoSuchUsage;
}

StatusCode MultipleCmdsProcessor::Execute(Words&) {
  return kNoSuchUsage;
}

void MultipleCmdsProcessor::PrintChild(const CmdProcessor& child) {
  ConsolePrint(kPrintText, "%-12s: ", child.GetName());
  ConsolePrint(kPrintText, "%s\r\n", child.GetDescription());
}

StatusCode MultipleCmdsProcessor::Help(Words& words) {
  for (CmdProcessor* child : GetChildren()) {
    if (child->IsExcluded(words) == kSuccess && !child->IsHidden() && child->IsUsable()) PrintChild(*child);
  }
  return kSuccess;
}

void MultipleCmdsProcessor::BuildOnce() {
  if (built_) return;
  built_ = true;
  BuildChildren();
}

CmdProcessor& MultipleCmdsProcessor::ChildAt(std::size_t index) {
  if (children_[index] == nullptr) {
    owned_.push_back(MakeChild(index));
    children_[index] = owned_.back().get();
  }
  return *children_[index];
}

const MultipleCmdsProcessor::Children& MultipleCmdsProcessor::GetChildren() {
  BuildOnce();
  for (std::size_t i = 0; i < children_.size(); ++i) ChildAt(i);
  return children_;
}

void MultipleCmdsProcessor::AddUnmade(std::size_t count) {
  children_.reserve(children_.size() + count);
  while (count-- > 0) children_.push_back(nullptr);
}

void MultipleCmdsProcessor::AddNode(CmdProcessor* node) {
  if (node != nullptr) children_.push_back(node);
}

void MultipleCmdsProcessor::AddLeaf(std::unique_ptr<CmdProcessor> leaf) {
  children_.push_back(leaf.get());
  owned_.push_back(std::move(leaf));
}

void MultipleCmdsProcessor::DropChildren() {
  built_ = false;
  children_.clear();
  owned_.clear();
}

CmdProcessor* MultipleCmdsProcessor::FindChild(Words& words) {
  BuildOnce();
  const bool paired = RunFlagIsSet(RUN_FLAG_BATCH) || words.size() >= 2;
  return paired ? MatchBySwitch(words) : MatchByName(words);
}

CmdProcessor::Place MultipleCmdsProcessor::PlaceOfChild(std::size_t index) const {
  return children_[index] == nullptr ? PlaceOf(index) : children_[index]->GetPlace();
}

bool MultipleCmdsProcessor::IsChildExcluded(std::size_t index, Words& words) {
  return children_[index] != nullptr && children_[index]->IsExcluded(words) != kSuccess;
}

CmdProcessor* MultipleCmdsProcessor::MatchByName(Words& words) {
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (IsChildExcluded(i, words)) continue;
    if (words.empty() || !EqualNoCase(words[0], PlaceOfChild(i).name)) continue;
    words.erase(words.begin());
    return &ChildAt(i);
  }
  return nullptr;
}

CmdProcessor* MultipleCmdsProcessor::MatchBySwitch(Words& words) {
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (IsChildExcluded(i, words)) continue;
    const Place place = PlaceOfChild(i);
    if (place.switch_word[0] != '\0') {
      int at = -1;
      if (!FindWordPair(words, place.switch_word, place.name, at)) continue;
      words.erase(words.begin() + at, words.begin() + at + 2);
    } else {
      if (words.empty() || !EqualNoCase(words[0], place.name)) continue;
      words.erase(words.begin());
    }
    CmdProcessor& child = ChildAt(i);
    if (child.IsLeaf()) return &child;
    CmdProcessor* const found = static_cast<MultipleCmdsProcessor&>(child).FindChild(words);
    if (found != nullptr) return found;
    // The erased words stay erased: the next children see the shortened list.
  }
  return nullptr;
}

StatusCode MultipleCmdsProcessor::RunChild(CmdProcessor* child, Words& words) {
  if (child == nullptr || child->IsExcluded(words) != kSuccess) return kUnknownCommand;
  if (const StatusCode status = child->Initialize(words); status != kSuccess) {
    child->Uninitialize(words);
    return status;
  }
  // A restricted node does nothing, without a message.
  if (!child->IsUsable()) return child->Uninitialize(words);
  if (!words.empty() && words[0] == "?") {
    child->Usage(words, child->GetUsageIndex());
    return child->Uninitialize(words);
  }
  const StatusCode status = child->Execute(words);
  if (status == kWrongWordCount || status == kHelpWord || status == kInvalidParameter) {
    child->Usage(words, child->GetUsageIndex());
    child->Uninitialize(words);
    return status;
  }
  const StatusCode end = child->Uninitialize(words);
  return status == kSuccess ? end : status;
}

StatusCode DispatchWords(MultipleCmdsProcessor& node, Words& words) {
  CmdProcessor* const child = node.FindChild(words);
  if (child == nullptr) {
    ConsolePrint(kPrintError, "Unknown command or invalid target identifier!\r\n");
    return kUnknownCommand;
  }
  return MultipleCmdsProcessor::RunChild(child, words);
}
