// Says where the descriptions and the program differ: "FILE:LINE: what", a line each on standard error, and
// status 1.
//
//   reference_check [--partial] PROJECT
//
// With --partial a node without a description is no difference.
#include <cstdio>
#include <string>

#include "reference/check/compare.h"
#include "reference/check/program_tree.h"
#include "reference/reader.h"

int main(int argc, char** argv) {
  const bool partial = argc == 3 && std::string(argv[1]) == "--partial";
  if (argc != 2 && !partial) {
    std::fprintf(stderr, "usage: reference_check [--partial] PROJECT\n");
    return 2;
  }
  const std::string root = argv[argc - 1];
  reference::Mistakes mistakes;
  const reference::Reference described = reference::ReadReference(root + "/reference", mistakes);
  reference::Compare(described, reference::ReadProgramTree(), root, partial, mistakes);
  mistakes.Print();
  return mistakes.None() ? 0 : 1;
}
