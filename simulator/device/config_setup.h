// The non-volatile configuration of a port and what belongs to it: boot entries, credit recovery, error
// correction, beacon.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/named_number.h"
#include "device/family_table.h"
#include "framework/device_library/config_records.h"

namespace lab {

struct CreditRecovery {
  std::uint8_t status = 1;
  std::uint8_t count = 3;
  // The outcome on the link; without a value it follows from the status and the link.
  std::optional<bool> online;
  std::optional<std::uint8_t> negotiated;
  std::optional<std::string> reason;
};

struct ErrorCorrection {
  std::uint32_t setting = 1;
  std::uint64_t correctable = 0;
  std::uint64_t uncorrectable = 0;
};

struct ConfigSetup {
  HBAParamsInfo nvram{};  // the parameters and the boot settings are one record
  NVMeBootRecord nvme{};
  bool nvme_present = false;
  CreditRecovery credit_recovery;
  ErrorCorrection fec;
  std::uint32_t beacon = 0;
};

// What a port of the family is delivered with.
ConfigSetup MakeConfig(const Family& family);

// A number of the NVRAM by its name in host files, state files and NVRAM images.
struct ConfigField {
  enum Kind { kNumber, kFlag, kInverseFlag };

  const char* key;
  std::uint32_t HBAParamsInfo::*field;
  Kind kind = kNumber;
  std::span<const NamedNumber> names = {};  // besides plain numbers
};

// The parameters without the virtual lane, which is a byte, and the boot settings without the drives.
std::span<const ConfigField> ParameterFields();
std::span<const ConfigField> BootFields();

}  // namespace lab
