// The reports of a port in host files, and what calls change of them in state files.
#pragma once

#include "device/host.h"
#include "host_file/yaml_value.h"
#include "yaml/state_node.h"

namespace lab {

// Each reads the value of one key of a port.
void ReadTemperature(const Value& value, PortReportSetup& setup);
void ReadLockdown(const Value& map, PortReportSetup& setup);
void ReadVpd(const Value& value, PortReportSetup& setup);
void ReadRdp(const Value& value, PortReportSetup& setup);
void ReadFirmwareDump(const Value& value, PortReportSetup& setup);

// What calls have changed, in the state file.
void ReadReportState(const Value& map, Entry& entry);
StateNode ReportState(const Entry& entry);

}  // namespace lab
