// Records of a port's non-volatile configuration: parameters, boot drives, NVMe boot entries. Also the
// firmware's private statistics.
//
// The program reads a record, changes the fields it names and writes the whole record back: what is reserved
// here passes through untouched.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/device_library/fixed_text.h"
#include "framework/device_library/world_wide_name.h"

// HBAParamsInfo::connection_options.
enum ConnectionOption : std::uint8_t { kLoopOnly = 0, kPointToPointOnly = 1, kLoopPreferred = 2 };

// HBAParamsInfo::operation_mode: when an interrupt is raised.
inline constexpr std::uint8_t kInterruptPerCompletion = 0;
inline constexpr std::uint8_t kInterruptOnTimer = 5;
inline constexpr std::uint8_t kInterruptOnTimerOrIdle = 6;

// The boot mode, which the device library keeps for the whole process.
enum class BootMode : std::uint8_t { kBios = 1, kUefi = 2, kNvme = 4 };

// A target that the host can boot from.
struct BootDrive {
  WorldWideName port_name;  // all zero: none
  std::uint16_t lun;
};
static_assert(offsetof(BootDrive, port_name) == 0);
static_assert(offsetof(BootDrive, lun) == 8);
static_assert(sizeof(BootDrive) == 10);

// What the parameter calls and the boot calls exchange: both use this layout, each fills its own fields.
struct HBAParamsInfo {
  std::uint32_t data_rate;           // LinkSpeed::data_rate, or kDataRateAuto
  std::uint32_t connection_options;  // ConnectionOption
  std::uint32_t enable_fc_tape;
  std::uint32_t max_luns_per_target;
  std::uint32_t enable_hard_loop_id;
  std::uint32_t hard_loop_id;
  std::uint32_t frame_size;  // bytes
  std::byte reserved_28[4];
  std::uint32_t enable_lip_full_login;
  std::uint32_t enable_target_reset;
  std::byte reserved_40[4];
  std::uint32_t loop_reset_delay;  // seconds
  std::uint32_t login_retry_count;
  std::uint32_t port_down_retry_count;
  std::uint32_t execution_throttle;
  std::byte reserved_60[8];
  std::uint32_t operation_mode;         // kInterrupt*
  std::uint32_t interrupt_delay_timer;  // units of 100 microseconds
  std::uint32_t link_down_timeout;      // seconds
  std::byte reserved_80[20];
  std::uint32_t disable_bios;
  std::uint32_t enable_selectable_boot;
  std::byte reserved_108[8];
  BootDrive primary_drive;
  std::byte reserved_126[2];
  std::uint32_t enable_selective_login;
  std::byte reserved_132[8];
  std::uint32_t enable_selective_lun;
  std::uint32_t force_world_login;
  std::uint32_t receive_out_of_order;
  std::byte reserved_152[16];
  BootDrive alternate_drive_1;
  std::byte reserved_178[2];
  BootDrive alternate_drive_2;
  std::byte reserved_190[2];
  BootDrive alternate_drive_3;
  std::byte reserved_202[6];
  std::uint32_t enable_lr;
  std::uint32_t enable_fabric_assign_wwn;
  std::uint32_t enable_fabric_assign_boot_lun;
  std::byte reserved_220[16];
  std::uint32_t disable_scm;
  std::byte reserved_240[4];
  BootDrive alternate_drive_4;
  BootDrive alternate_drive_5;
  BootDrive alternate_drive_6;
  BootDrive alternate_drive_7;
  std::byte reserved_284[2];
  std::uint8_t enable_virtual_lane;
  std::byte reserved_287[225];
};
static_assert(offsetof(HBAParamsInfo, data_rate) == 0);
static_assert(offsetof(HBAParamsInfo, connection_options) == 4);
static_assert(offsetof(HBAParamsInfo, enable_fc_tape) == 8);
static_assert(offsetof(HBAParamsInfo, max_luns_per_target) == 12);
static_assert(offsetof(HBAParamsInfo, enable_hard_loop_id) == 16);
static_assert(offsetof(HBAParamsInfo, hard_loop_id) == 20);
static_assert(offsetof(HBAParamsInfo, frame_size) == 24);
static_assert(offsetof(HBAParamsInfo, enable_lip_full_login) == 32);
static_assert(offsetof(HBAParamsInfo, enable_target_reset) == 36);
static_assert(offsetof(HBAParamsInfo, loop_reset_delay) == 44);
static_assert(offsetof(HBAParamsInfo, login_retry_count) == 48);
static_assert(offsetof(HBAParamsInfo, port_down_retry_count) == 52);
static_assert(offsetof(HBAParamsInfo, execution_throttle) == 56);
static_assert(offsetof(HBAParamsInfo, operation_mode) == 68);
static_assert(offsetof(HBAParamsInfo, interrupt_delay_timer) == 72);
static_assert(offsetof(HBAParamsInfo, link_down_timeout) == 76);
static_assert(offsetof(HBAParamsInfo, disable_bios) == 100);
static_assert(offsetof(HBAParamsInfo, enable_selectable_boot) == 104);
static_assert(offsetof(HBAParamsInfo, primary_drive) == 116);
static_assert(offsetof(HBAParamsInfo, primary_drive.lun) == 124);
static_assert(offsetof(HBAParamsInfo, enable_selective_login) == 128);
static_assert(offsetof(HBAParamsInfo, enable_selective_lun) == 140);
static_assert(offsetof(HBAParamsInfo, force_world_login) == 144);
static_assert(offsetof(HBAParamsInfo, receive_out_of_order) == 148);
static_assert(offsetof(HBAParamsInfo, alternate_drive_1) == 168);
static_assert(offsetof(HBAParamsInfo, alternate_drive_1.lun) == 176);
static_assert(offsetof(HBAParamsInfo, alternate_drive_2) == 180);
static_assert(offsetof(HBAParamsInfo, alternate_drive_2.lun) == 188);
static_assert(offsetof(HBAParamsInfo, alternate_drive_3) == 192);
static_assert(offsetof(HBAParamsInfo, alternate_drive_3.lun) == 200);
static_assert(offsetof(HBAParamsInfo, enable_lr) == 208);
static_assert(offsetof(HBAParamsInfo, enable_fabric_assign_wwn) == 212);
static_assert(offsetof(HBAParamsInfo, enable_fabric_assign_boot_lun) == 216);
static_assert(offsetof(HBAParamsInfo, disable_scm) == 236);
static_assert(offsetof(HBAParamsInfo, alternate_drive_4) == 244);
static_assert(offsetof(HBAParamsInfo, alternate_drive_4.lun) == 252);
static_assert(offsetof(HBAParamsInfo, alternate_drive_5) == 254);
static_assert(offsetof(HBAParamsInfo, alternate_drive_5.lun) == 262);
static_assert(offsetof(HBAParamsInfo, alternate_drive_6) == 264);
static_assert(offsetof(HBAParamsInfo, alternate_drive_6.lun) == 272);
static_assert(offsetof(HBAParamsInfo, alternate_drive_7) == 274);
static_assert(offsetof(HBAParamsInfo, alternate_drive_7.lun) == 282);
static_assert(offsetof(HBAParamsInfo, enable_virtual_lane) == 286);
static_assert(sizeof(HBAParamsInfo) == 512);

// The boot drives by their number: 0 is the primary one.
inline constexpr BootDrive HBAParamsInfo::*kBootDrives[] = {
    &HBAParamsInfo::primary_drive,     &HBAParamsInfo::alternate_drive_1, &HBAParamsInfo::alternate_drive_2,
    &HBAParamsInfo::alternate_drive_3, &HBAParamsInfo::alternate_drive_4, &HBAParamsInfo::alternate_drive_5,
    &HBAParamsInfo::alternate_drive_6, &HBAParamsInfo::alternate_drive_7,
};

// The second result of the parameter read. The library writes it, nobody reads it.
struct HBAParamsExtra {
  std::byte reserved_0[96];
};
static_assert(sizeof(HBAParamsExtra) == 96);

// One NVMe namespace that the host can boot from.
struct NVMeBootEntry {
  WorldWideName port_name;
  WorldWideName node_name;
  std::uint32_t namespace_id;
  std::uint16_t controller_id;
  std::byte reserved_22[2];
  std::uint8_t enable;
  std::byte reserved_25[3];
  FixedText<256> nqn;
};
static_assert(offsetof(NVMeBootEntry, port_name) == 0);
static_assert(offsetof(NVMeBootEntry, node_name) == 8);
static_assert(offsetof(NVMeBootEntry, namespace_id) == 16);
static_assert(offsetof(NVMeBootEntry, controller_id) == 20);
static_assert(offsetof(NVMeBootEntry, enable) == 24);
static_assert(offsetof(NVMeBootEntry, nqn) == 28);
static_assert(sizeof(NVMeBootEntry) == 284);

struct NVMeBootRecord {
  std::byte reserved_0[16];
  NVMeBootEntry entries[8];
  std::byte reserved_2288[272];
};
static_assert(offsetof(NVMeBootRecord, entries) == 16);
static_assert(sizeof(NVMeBootRecord) == 2560);

// Counters of the firmware. The library allocates the block, which is longer than shown here; the caller
// releases it with free().
struct FWPrivateStats {
  std::byte reserved_0[256];
  std::uint64_t correctable_fec_errors;
  std::byte reserved_264[256];
  std::uint64_t uncorrectable_fec_errors;
};
static_assert(offsetof(FWPrivateStats, correctable_fec_errors) == 256);
static_assert(offsetof(FWPrivateStats, uncorrectable_fec_errors) == 520);
