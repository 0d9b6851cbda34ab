// A device library under the tests' control: what the framework and the discovery call of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/device_handle.h"

struct FakeLibrary {
  const AdapterList* adapters = nullptr;  // null: the host has no list
  std::uint32_t start_result = 0;         // of the calls at its start and its end
  std::uint32_t reboot_result = 0;
  std::optional<std::uint8_t> reboot_flag = 0;  // empty: the call leaves the flag alone
  std::uint32_t mezz_result = 0;
  std::optional<std::uint8_t> mezz_flag = 0;        // empty: the call leaves the flag alone
  const DeviceHandle* mezz_handle_asked = nullptr;  // of the latest such call

  std::string chatter;             // each call prints this to standard output
  std::vector<std::string> calls;  // made so far, with their arguments
};

// The one library of the process. A test that uses it begins with ResetLibrary().
FakeLibrary& Library();
void ResetLibrary();
