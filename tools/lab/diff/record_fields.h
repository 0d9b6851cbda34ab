// The named fields of the device library's records, in the words of the reports.
#pragma once

#include <span>

#include "tools/lab/diff/fields.h"

namespace diff {

std::span<const Field> AdapterListFields();
std::span<const Field> AdapterFields();
std::span<const Field> PhyPortFields();
std::span<const Field> PortFields();
std::span<const Field> TargetFields();
std::span<const Field> LunFields();
std::span<const Field> TargetStatisticsFields();
std::span<const Field> FlashVersionFields();
std::span<const Field> MemoBlockFields();
std::span<const Field> LockdownFields();
std::span<const Field> ParameterFields();  // of HBAParamsInfo, what the parameter calls use
std::span<const Field> BootFields();       // of HBAParamsInfo, what the boot calls use
std::span<const Field> NvmeBootEntryFields();
std::span<const Field> CreditRecoveryFields();
std::span<const Field> FirmwareStatisticsFields();
std::span<const Field> CongestionStatisticsFields();
std::span<const Field> CongestionProfileFields();

}  // namespace diff
