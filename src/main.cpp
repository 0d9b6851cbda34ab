// The composition root: builds the command tree, runs it and takes it down.
#include <cstdlib>
#include <ctime>

#include "adapter/adapter_cmds_processor.h"
#include "framework/main_cmds_processor.h"
#include "framework/output_bracket.h"
#include "framework/run_flags.h"
#include "framework/signals.h"
#include "framework/table.h"
#include "port/physical_port_cmds_processor.h"
#include "runtime/debug_log.h"
#include "target/fc_lun_cmds_processor.h"
#include "target/fc_target_cmds_processor.h"

namespace {

constexpr SubNode kTopLevelNodes[] = {
    {"adapter", "-t", "use this command to get/set/list Sorvex adapters", &MakeNode<AdapterCmdsProcessor>},
    {"port", "-t", "use this command to get/set/list Sorvex Ports", &MakeNode<PhysicalPortCmdsProcessor>},
    {"target", "-t", "use this command to get/list targets detected by Sorvex adapters",
     &MakeNode<FCTargetCmdsProcessor>},
    {"lun", "-t", "use this command to get/list LUNs detected by Sorvex adapters",
     &MakeNode<FCLunCmdsProcessor>},
};

StatusCode RunTree(Words words) {
  MainCmdsProcessor* const root = GetMainProcessor();
  root->SetTopLevelNodes(TableOf<kTopLevelNodes>());
  StatusCode code = kInitFailed;
  if (root->Initialize(words) == kSuccess) code = root->Execute(words);
  if (const StatusCode end = root->Uninitialize(words); end != kSuccess) {
    DebugLog("main: Uninitialization failed: returncode = %u\n", end);
  }
  ReleaseMainProcessor();
  return code;
}

}  // namespace

// The exit status is 0 whatever happened: what a command has to say is in its output.
int main(int argc, char** argv) {
  ReserveStandardOutput();
  InitDebugLog();
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  int first = 1;
  gRunFlags |= ParseProgramFlags(argc, argv, first);
  InstallSignalHandler();

  StatusCode code = kSuccess;
  if (!RunFlagIsSet(RUN_FLAG_QUIT)) {
    Words words;
    if (first < argc) words.assign(argv + first, argv + argc);
    if (!words.empty()) gRunFlags |= RUN_FLAG_BATCH;
    code = RunTree(std::move(words));
  }
  DebugLog("main: Program Exit Code: (%u)\n", code);
  return 0;
}
