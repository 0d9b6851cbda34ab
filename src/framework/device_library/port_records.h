// Buffers that the port report's calls of the device library fill. The caller zeroes them first.
#pragma once

#include <cstddef>
#include <cstdint>

struct BoardTemperature {
  std::int16_t celsius;
  std::byte reserved_2[62];
};
static_assert(offsetof(BoardTemperature, celsius) == 0);
static_assert(sizeof(BoardTemperature) == 64);

// Why a lockdown state could not be read; 0 when its flag holds it.
enum class LockdownReadStatus : std::uint32_t {
  kRead = 0,
  kUnsupportedDriver = 0x76,
  kUnsupportedFirmware = 0x86
};

struct LockdownStatus {
  std::uint8_t config_flag;
  std::uint8_t firmware_update_flag;
  std::uint8_t mpi_flag;
  std::byte reserved_3[1];
  LockdownReadStatus config_status;
  LockdownReadStatus firmware_update_status;
  LockdownReadStatus mpi_status;
  std::byte reserved_16[24];
};
static_assert(offsetof(LockdownStatus, config_flag) == 0);
static_assert(offsetof(LockdownStatus, firmware_update_flag) == 1);
static_assert(offsetof(LockdownStatus, mpi_flag) == 2);
static_assert(offsetof(LockdownStatus, config_status) == 4);
static_assert(offsetof(LockdownStatus, firmware_update_status) == 8);
static_assert(offsetof(LockdownStatus, mpi_status) == 12);
static_assert(sizeof(LockdownStatus) == 40);
