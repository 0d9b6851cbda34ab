// Records of the calls that ask for the congestion statistics of a port and set its profile.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/device_library/world_wide_name.h"

enum class StatisticsElementKind : std::uint32_t {
  kPhysicalPort = 0x80
};  // no other kind has a meaning here

// The counters of a port or of one of its targets: an element of the library's list, which belongs to the
// caller until it hands the list back.
struct SCMRStatisticsEntry {
  WorldWideName node_name;
  WorldWideName port_name;
  StatisticsElementKind kind;
  std::byte reserved_20[28];
  std::uint64_t congestion_alarms;
  std::uint64_t congestion_warnings;
  std::uint64_t cleared_congestion;
  std::uint64_t throttled_down;
  std::uint64_t throttled_up;
  std::uint64_t returned_busy;
  std::uint64_t bottomed_out;
  std::uint64_t link_failure;
  std::uint64_t link_unknown_event;
  std::uint64_t loss_of_sync;
  std::uint64_t loss_of_signal;
  std::uint64_t primitive_sequence_error;
  std::uint64_t invalid_transmission_word;
  std::uint64_t invalid_crc;
  std::uint64_t link_device_specific_event;
  std::uint64_t delivery_failure_unknown;
  std::uint64_t delivery_timeout;
  std::uint64_t delivery_unable_to_route;
  std::uint64_t delivery_failure_device_specific;
  std::uint64_t congestion_clear;
  std::uint64_t congestion_lost_credit;
  std::uint64_t congestion_credit_stall;
  std::uint64_t congestion_oversubscription;
  std::uint64_t congestion_device_specific;
  std::byte reserved_240[8];
  std::uint64_t pun;  // elements of targets alone
  std::uint64_t link_uncorrectable_fec;
  std::byte reserved_264[704];
  SCMRStatisticsEntry* next;
};
static_assert(offsetof(SCMRStatisticsEntry, node_name) == 0);
static_assert(offsetof(SCMRStatisticsEntry, port_name) == 8);
static_assert(offsetof(SCMRStatisticsEntry, kind) == 16);
static_assert(offsetof(SCMRStatisticsEntry, congestion_alarms) == 48);
static_assert(offsetof(SCMRStatisticsEntry, congestion_warnings) == 56);
static_assert(offsetof(SCMRStatisticsEntry, cleared_congestion) == 64);
static_assert(offsetof(SCMRStatisticsEntry, throttled_down) == 72);
static_assert(offsetof(SCMRStatisticsEntry, throttled_up) == 80);
static_assert(offsetof(SCMRStatisticsEntry, returned_busy) == 88);
static_assert(offsetof(SCMRStatisticsEntry, bottomed_out) == 96);
static_assert(offsetof(SCMRStatisticsEntry, link_failure) == 104);
static_assert(offsetof(SCMRStatisticsEntry, link_unknown_event) == 112);
static_assert(offsetof(SCMRStatisticsEntry, loss_of_sync) == 120);
static_assert(offsetof(SCMRStatisticsEntry, loss_of_signal) == 128);
static_assert(offsetof(SCMRStatisticsEntry, primitive_sequence_error) == 136);
static_assert(offsetof(SCMRStatisticsEntry, invalid_transmission_word) == 144);
static_assert(offsetof(SCMRStatisticsEntry, invalid_crc) == 152);
static_assert(offsetof(SCMRStatisticsEntry, link_device_specific_event) == 160);
static_assert(offsetof(SCMRStatisticsEntry, delivery_failure_unknown) == 168);
static_assert(offsetof(SCMRStatisticsEntry, delivery_timeout) == 176);
static_assert(offsetof(SCMRStatisticsEntry, delivery_unable_to_route) == 184);
static_assert(offsetof(SCMRStatisticsEntry, delivery_failure_device_specific) == 192);
static_assert(offsetof(SCMRStatisticsEntry, congestion_clear) == 200);
static_assert(offsetof(SCMRStatisticsEntry, congestion_lost_credit) == 208);
static_assert(offsetof(SCMRStatisticsEntry, congestion_credit_stall) == 216);
static_assert(offsetof(SCMRStatisticsEntry, congestion_oversubscription) == 224);
static_assert(offsetof(SCMRStatisticsEntry, congestion_device_specific) == 232);
static_assert(offsetof(SCMRStatisticsEntry, pun) == 248);
static_assert(offsetof(SCMRStatisticsEntry, link_uncorrectable_fec) == 256);
static_assert(offsetof(SCMRStatisticsEntry, next) == 968);
static_assert(sizeof(SCMRStatisticsEntry) == 976);

enum class ProfileManagement : std::uint8_t { kDriverSettings = 0, kNvram = 1 };  // any other: as kNvram

// How a port answers congestion in the fabric. What the program does not name is handed back as read.
struct SCMRProfile {
  std::uint8_t configuration_status;  // 0: configured
  ProfileManagement management;
  std::uint8_t activation;
  std::byte reserved_3[13];
};
static_assert(offsetof(SCMRProfile, configuration_status) == 0);
static_assert(offsetof(SCMRProfile, management) == 1);
static_assert(offsetof(SCMRProfile, activation) == 2);
static_assert(sizeof(SCMRProfile) == 16);
