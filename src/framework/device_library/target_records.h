// Records of the device library below a port: remote targets and their LUNs or namespaces.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/device_library/fixed_text.h"
#include "framework/device_library/port_id.h"
#include "framework/device_library/unaligned.h"
#include "framework/device_library/world_wide_name.h"

// One LUN of an FCP target or one namespace of an NVMe target.
struct LunEntry {
  std::uint16_t number;  // LUN number or namespace identifier
  std::byte reserved_2[12];
  FixedText<8> vendor_id;
  FixedText<16> product_id;
  Unaligned<std::uint32_t> fcp_size_mb;
  std::byte reserved_42[1];
  std::uint8_t unique_id[32];
  std::uint8_t fcp_unique_id_length;
  std::byte reserved_76[4];
  FixedText<8> nvme_revision;
  FixedText<4> fcp_revision;
  std::byte reserved_92[272];
  std::uint8_t nvme_unique_id_length;
  Unaligned<std::uint64_t> nvme_size_mb;
  std::byte reserved_373[11];
  const LunEntry* next;
};
static_assert(offsetof(LunEntry, number) == 0);
static_assert(offsetof(LunEntry, vendor_id) == 14);
static_assert(offsetof(LunEntry, product_id) == 22);
static_assert(offsetof(LunEntry, fcp_size_mb) == 38);
static_assert(offsetof(LunEntry, unique_id) == 43);
static_assert(offsetof(LunEntry, fcp_unique_id_length) == 75);
static_assert(offsetof(LunEntry, nvme_revision) == 80);
static_assert(offsetof(LunEntry, fcp_revision) == 88);
static_assert(offsetof(LunEntry, nvme_unique_id_length) == 364);
static_assert(offsetof(LunEntry, nvme_size_mb) == 365);
static_assert(offsetof(LunEntry, next) == 384);
static_assert(sizeof(LunEntry) == 392);

// One remote target that a port sees.
struct TargetEntry {
  WorldWideName node_name;
  WorldWideName port_name;
  PortId port_id;
  std::byte reserved_19[3];
  std::uint16_t number;
  std::byte reserved_24[6];
  std::uint16_t congestion_notifications;
  std::uint16_t link_event_type;
  std::byte reserved_34[2];
  std::uint32_t link_event_threshold_ms;
  std::uint16_t delivery_reason;
  std::uint16_t peer_congestion_event_type;
  std::uint32_t peer_congestion_event_period_ms;
  std::uint8_t congestion_state;
  std::uint8_t link_integrity_events;
  std::uint8_t virtual_lane;
  std::uint8_t io_throttling;
  std::uint32_t seconds_since_event;
  std::byte reserved_56[108];
  FixedText<8> vendor_id;
  FixedText<16> product_id;
  FixedText<4> fcp_revision;
  std::uint8_t state_flags[6];  // read by the functions below
  std::byte reserved_198[26];
  std::uint32_t lun_count;
  std::byte reserved_228[4];
  const LunEntry* first_lun;
  std::byte reserved_240[8];
  std::uint32_t product_type;
  std::byte reserved_252[8];
  FixedText<64> serial_number;
  std::byte reserved_324[4];
  std::uint32_t old_port_id;  // the older remote-port record, up to byte 342
  WorldWideName old_port_name;
  std::uint8_t old_remote_type;
  std::uint8_t old_secure_mode;
  std::uint8_t old_session_state;
  std::byte reserved_343[57];
  std::uint32_t remote_port_id;  // the current remote-port record, up to byte 435
  std::uint8_t remote_flags;     // bit 0 initiator, bit 1 target, bit 4 secure
  std::byte reserved_405[3];
  WorldWideName remote_port_name;
  std::byte reserved_416[16];
  std::uint32_t remote_session_state;
  std::byte reserved_436[92];
  FixedText<8> nvme_revision;
  std::byte reserved_536[6];
  std::uint16_t controller_id;
  std::byte reserved_544[16];
  FixedText<256> nqn;
  std::byte reserved_816[672];
  const TargetEntry* next;
};
static_assert(offsetof(TargetEntry, node_name) == 0);
static_assert(offsetof(TargetEntry, port_name) == 8);
static_assert(offsetof(TargetEntry, port_id) == 16);
static_assert(offsetof(TargetEntry, number) == 22);
static_assert(offsetof(TargetEntry, congestion_notifications) == 30);
static_assert(offsetof(TargetEntry, link_event_type) == 32);
static_assert(offsetof(TargetEntry, link_event_threshold_ms) == 36);
static_assert(offsetof(TargetEntry, delivery_reason) == 40);
static_assert(offsetof(TargetEntry, peer_congestion_event_type) == 42);
static_assert(offsetof(TargetEntry, peer_congestion_event_period_ms) == 44);
static_assert(offsetof(TargetEntry, congestion_state) == 48);
static_assert(offsetof(TargetEntry, link_integrity_events) == 49);
static_assert(offsetof(TargetEntry, virtual_lane) == 50);
static_assert(offsetof(TargetEntry, io_throttling) == 51);
static_assert(offsetof(TargetEntry, seconds_since_event) == 52);
static_assert(offsetof(TargetEntry, vendor_id) == 164);
static_assert(offsetof(TargetEntry, product_id) == 172);
static_assert(offsetof(TargetEntry, fcp_revision) == 188);
static_assert(offsetof(TargetEntry, state_flags) == 192);
static_assert(offsetof(TargetEntry, lun_count) == 224);
static_assert(offsetof(TargetEntry, first_lun) == 232);
static_assert(offsetof(TargetEntry, product_type) == 248);
static_assert(offsetof(TargetEntry, serial_number) == 260);
static_assert(offsetof(TargetEntry, old_port_id) == 328);
static_assert(offsetof(TargetEntry, old_port_name) == 332);
static_assert(offsetof(TargetEntry, old_remote_type) == 340);
static_assert(offsetof(TargetEntry, old_secure_mode) == 341);
static_assert(offsetof(TargetEntry, old_session_state) == 342);
static_assert(offsetof(TargetEntry, remote_port_id) == 400);
static_assert(offsetof(TargetEntry, remote_flags) == 404);
static_assert(offsetof(TargetEntry, remote_port_name) == 408);
static_assert(offsetof(TargetEntry, remote_session_state) == 432);
static_assert(offsetof(TargetEntry, nvme_revision) == 528);
static_assert(offsetof(TargetEntry, controller_id) == 542);
static_assert(offsetof(TargetEntry, nqn) == 560);
static_assert(offsetof(TargetEntry, next) == 1488);
static_assert(sizeof(TargetEntry) == 1496);

inline bool IsOnline(const TargetEntry& target) {
  return (target.state_flags[2] & 0x02u) != 0 && (target.state_flags[4] & 0x01u) != 0;
}

inline bool IsUnconfigured(const TargetEntry& target) {
  return (target.state_flags[0] & 0x40u) != 0;
}

inline bool IsNvmeTarget(const TargetEntry& target) {
  return (target.state_flags[5] & 0x08u) != 0;
}
