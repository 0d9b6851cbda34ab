// The configuration calls of a device library under the tests' control, beside those of unit_fake_library.h.
#pragma once

#include <cstdint>

#include "framework/device_library/config_records.h"

struct ConfigLibrary {
  HBAParamsInfo params = {};
  HBAParamsInfo boot = {};
  NVMeBootRecord nvme = {};
  std::uint8_t bbcr_status = 0;
  std::uint8_t bbcr_configured = 0;
  std::uint32_t boot_mode = 1;
};

// The one library of the process.
ConfigLibrary& Config();
