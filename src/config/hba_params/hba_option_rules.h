// The options of `hbaparams setFile` whose values have rules of their own, some of which tie two parameters
// together. Each function checks the value that the user gave and adds what is to be stored.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "config/options.h"
#include "config/staged/staged_file.h"
#include "framework/device_library/port_entry.h"

// What the checks of one command look at: the port, the file as it is so far, and what the options before
// them have chosen.
struct HbaChecks {
  const FCProtocolEntry& fc;
  const StagedFile& file;
  StagedValues& changes;
  std::optional<std::uint8_t> connection = {};
  std::optional<std::uint8_t> operation_mode = {};

  const PciIdentity& Pci() const { return fc.pci; }
};

CheckResult TakeConnection(HbaChecks& checks, const std::string& value);
CheckResult TakeDataRate(HbaChecks& checks, const std::string& value);
CheckResult TakeOperationMode(HbaChecks& checks, const std::string& value);
CheckResult TakeFrameSize(HbaChecks& checks, const std::string& value);
CheckResult TakeInterruptDelay(HbaChecks& checks, const std::string& value);
