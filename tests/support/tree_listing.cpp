// Lists the command tree of the program: a line for each node, a node ahead of its children, its fields
// separated by tabs: depth below the root, switch word, name, "leaf" or "node", usage index, hidden, flags,
// description.

// The program's own composition root, so that what is listed is the tree that runs.
#define main RunProgram
#include "main.cpp"  // NOLINT(bugprone-suspicious-include)
#undef main

#include <cstdio>

namespace {

void List(MultipleCmdsProcessor& node, int depth) {
  for (CmdProcessor* const child : node.GetChildren()) {
    std::printf("%d\t%s\t%s\t%s\t%u\t%d\t%u\t%s\n", depth, child->GetSwitch(), child->GetName(),
                child->IsLeaf() ? "leaf" : "node", child->GetUsageIndex(), child->IsHidden() ? 1 : 0,
                child->GetFlags(), child->GetDescription());
    if (!child->IsLeaf()) List(static_cast<MultipleCmdsProcessor&>(*child), depth + 1);
  }
}

}  // namespace

int main() {
  MainCmdsProcessor* const root = GetMainProcessor();
  root->SetTopLevelNodes(TableOf<kTopLevelNodes>());
  Words no_words;
  if (root->Initialize(no_words) == kSuccess) List(*root, 0);
  root->Uninitialize(no_words);
  ReleaseMainProcessor();
  return 0;
}
