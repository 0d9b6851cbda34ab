// Buffers that the flash calls of the device library fill. The caller zeroes them first.
#pragma once

#include <cstddef>
#include <cstdint>

// Version of one flash component; all zero, and for some components all 0xff, means that there is none.
struct ComponentVersion {
  std::uint8_t major;
  std::uint8_t minor;
  std::uint8_t sub;

  constexpr bool AllZero() const { return major == 0 && minor == 0 && sub == 0; }
  constexpr bool AllOnes() const { return major == 0xff && minor == 0xff && sub == 0xff; }
};
static_assert(sizeof(ComponentVersion) == 3);

struct FlashComponentVersions {
  std::byte reserved_0[19];
  ComponentVersion pep_firmware;
  std::byte reserved_22[3];
  ComponentVersion pep_softrom;
  std::byte reserved_28[3];
  ComponentVersion pep_board_config;
  std::byte reserved_34[3];
  ComponentVersion preload_firmware_area;
  std::byte reserved_40[3];
  ComponentVersion fc_board_config;
  std::byte reserved_46[3];
  ComponentVersion mpi_firmware;
  std::byte reserved_52[3];
  ComponentVersion mpi_softrom;
  std::byte reserved_58[3];
  ComponentVersion pcie_serdes;
  std::byte reserved_64[192];
};
static_assert(offsetof(FlashComponentVersions, pep_firmware) == 19);
static_assert(offsetof(FlashComponentVersions, pep_softrom) == 25);
static_assert(offsetof(FlashComponentVersions, pep_board_config) == 31);
static_assert(offsetof(FlashComponentVersions, preload_firmware_area) == 37);
static_assert(offsetof(FlashComponentVersions, fc_board_config) == 43);
static_assert(offsetof(FlashComponentVersions, mpi_firmware) == 49);
static_assert(offsetof(FlashComponentVersions, mpi_softrom) == 55);
static_assert(offsetof(FlashComponentVersions, pcie_serdes) == 61);
static_assert(sizeof(FlashComponentVersions) == 256);

// Which multi-boot image (MBI) is on the flash, who wrote it, with which tool and when.
struct FlashMemoBlock {
  char signature[4];  // "FMBS"
  std::byte reserved_4[12];
  ComponentVersion family_firmware;
  std::byte reserved_19[1];
  ComponentVersion mbi_version;
  std::byte reserved_23[1];
  char mbi_build_date[8];  // YYYYMMDD
  char tool_id[4];
  std::uint16_t update_year;
  std::uint8_t update_month;
  std::uint8_t update_day;
  std::uint8_t update_hour;
  std::uint8_t update_minute;
  std::uint8_t update_second;
  std::byte reserved_43[1];
  std::uint8_t tool_version[4];
};
static_assert(offsetof(FlashMemoBlock, signature) == 0);
static_assert(offsetof(FlashMemoBlock, family_firmware) == 16);
static_assert(offsetof(FlashMemoBlock, mbi_version) == 20);
static_assert(offsetof(FlashMemoBlock, mbi_build_date) == 24);
static_assert(offsetof(FlashMemoBlock, tool_id) == 32);
static_assert(offsetof(FlashMemoBlock, update_year) == 36);
static_assert(offsetof(FlashMemoBlock, update_month) == 38);
static_assert(offsetof(FlashMemoBlock, update_day) == 39);
static_assert(offsetof(FlashMemoBlock, update_hour) == 40);
static_assert(offsetof(FlashMemoBlock, update_minute) == 41);
static_assert(offsetof(FlashMemoBlock, update_second) == 42);
static_assert(offsetof(FlashMemoBlock, tool_version) == 44);
static_assert(sizeof(FlashMemoBlock) == 48);
