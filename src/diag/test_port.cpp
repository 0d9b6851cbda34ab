#include "diag/test_port.h"

#include "discovery/port_lookup.h"

StatusCode SelectTestPort(const char* class_name, const Words& words, const FCProtocolEntry*& fc) {
  PortSelection selected;
  const StatusCode status = GetPhysicalPortFromPortString(class_name, words, selected);
  if (status == kSuccess) fc = selected.fc;
  return status;
}
