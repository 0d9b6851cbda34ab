// The table of HBA parameters: what one parameter is in the record, in the staged file, as an option and on
// the screen.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "config/hba_params/hba_option_rules.h"
#include "config/options.h"
#include "config/staged/staged_parameter.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/pci_identity.h"
#include "framework/inline_text.h"
#include "framework/table.h"

// In the order in which a command's options, and a file's values, are checked.
enum class HbaParam : std::uint8_t {
  kConnectionOptions,
  kDataRate,
  kOperationMode,
  kFrameSize,
  kHardLoopId,
  kLoopResetDelay,
  kInterruptDelayTimer,
  kExecutionThrottle,
  kLoginRetryCount,
  kPortDownRetryCount,
  kLinkDownTimeout,
  kLunsPerTarget,
  kHostBios,
  kEnableHardLoopId,
  kFcTape,
  kLipFullLogin,
  kTargetReset,
  kOutOfOrderFrames,
  kLr,
  kFabricAssignedWwn,
  kVclm,
  kVirtualLane,
};

using AdapterTest = bool (*)(const PciIdentity& pci);

struct HbaParameter {
  HbaParam id;
  StagedParameter staged;
  // Which adapters have the parameter; null: all. The others refuse its option and show "NA", or 0 in place
  // of a number.
  AdapterTest has = nullptr;
  AdapterTest shows = nullptr;  // which adapters show it, where that is another set
  // Checks the option's value, where the form and the rule are not all that counts.
  CheckResult (*take)(HbaChecks& checks, const std::string& value) = nullptr;
  InlineText<32> label = {};  // on the screen; empty: not shown
  // The word for a value that has one; null: a flag or a number, by its form.
  const char* (*word)(std::uint32_t value, const PciIdentity& pci) = nullptr;
};

// All parameters, in the order of HbaParam.
Table<HbaParameter> HbaParameters();

HbaParameter HbaParameterOf(HbaParam id);
std::string KeyOf(HbaParam id);

// The parameters that are shown, in the order of the screen.
std::span<const HbaParam> ShownHbaParameters();
