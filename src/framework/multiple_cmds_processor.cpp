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

const MultipleCmdsProcessor::Children& MultipleCmdsProcessor::GetChildren() {
  if (!built_) {
    built_ = true;
    BuildChildren();
  }
  return children_;
}

void MultipleCmdsProcessor::AddLeaf(std::unique_ptr<CmdProcessor> leaf) {
  children_.push_back(leaf.get());
  leaves_.push_back(std::move(leaf));
}

void MultipleCmdsProcessor::DropChildren() {
  built_ = false;
  children_.clear();
  leaves_.clear();
}

CmdProcessor* MultipleCmdsProcessor::FindChild(Words& words) {
  const bool paired = RunFlagIsSet(RUN_FLAG_BATCH) || words.size() >= 2;
  return paired ? MatchBySwitch(words) : MatchByName(words);
}

CmdProcessor* MultipleCmdsProcessor::MatchByName(Words& words) {
  for (CmdProcessor* child : GetChildren()) {
    if (child->IsExcluded(words) != kSuccess) continue;
    if (words.empty() || !EqualNoCase(words[0], child->GetName())) continue;
    words.erase(words.begin());
    return child;
  }
  return nullptr;
}

CmdProcessor* MultipleCmdsProcessor::MatchBySwitch(Words& words) {
  for (CmdProcessor* child : GetChildren()) {
    if (child->IsExcluded(words) != kSuccess) continue;
    if (child->GetSwitch()[0] != '\0') {
      int at = -1;
      if (!FindWordPair(words, child->GetSwitch(), child->GetName(), at)) continue;
      words.erase(words.begin() + at, words.begin() + at + 2);
    } else {
      if (words.empty() || !EqualNoCase(words[0], child->GetName())) continue;
      words.erase(words.begin());
    }
    if (child->IsLeaf()) return child;
    CmdProcessor* const found = static_cast<MultipleCmdsProcessor*>(child)->FindChild(words);
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
