#include "diag/test_port.h"

#include "discovery/port_lookup.h"
#include "runtime/debug_log.h"

StatusCode SelectTestPort(const char* class_name, const Words& words, const FCProtocolEntry*& fc) {
  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess) return status;
  if (selected.fc->interface_type == PortInterfaceType::kNpivVirtual) {
    DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for vport", class_name, __func__);
    return kVirtualPort;
  }
  fc = selected.fc;
  return kSuccess;
}
