// Records of the calls that ask for one target's statistics.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/device_library/world_wide_name.h"

// Names a target to the library.
struct TargetStatisticsAddress {
  std::uint16_t kind;  // kTargetByPortName
  WorldWideName port_name;
  std::byte reserved_10[2];
};
static_assert(offsetof(TargetStatisticsAddress, kind) == 0);
static_assert(offsetof(TargetStatisticsAddress, port_name) == 2);
static_assert(sizeof(TargetStatisticsAddress) == 12);

inline constexpr std::uint16_t kTargetByPortName = 2;

// Counters of one target.
struct TargetPortStatistics {
  std::byte reserved_0[24];
  std::uint32_t link_failure;
  std::uint32_t loss_of_sync;
  std::uint32_t loss_of_signal;
  std::uint32_t primitive_sequence_error;
  std::uint32_t invalid_transmission_word;
  std::uint32_t invalid_crc;
  std::uint32_t delivery_failure_unknown;
  std::uint32_t delivery_timeout;
  std::uint32_t delivery_unable_to_route;
  std::uint32_t delivery_failure_device_specific;
  std::uint32_t peer_congestion_clear;
  std::uint32_t peer_congestion_lost_credit;
  std::uint32_t peer_congestion_credit_stall;
  std::uint32_t peer_congestion_oversubscription;
  std::uint32_t peer_congestion_device_specific;
  std::byte reserved_84[20];
  std::uint32_t link_unknown_event;
  std::uint32_t link_device_specific_event;
  std::byte reserved_112[72];
};
static_assert(offsetof(TargetPortStatistics, link_failure) == 24);
static_assert(offsetof(TargetPortStatistics, loss_of_sync) == 28);
static_assert(offsetof(TargetPortStatistics, loss_of_signal) == 32);
static_assert(offsetof(TargetPortStatistics, primitive_sequence_error) == 36);
static_assert(offsetof(TargetPortStatistics, invalid_transmission_word) == 40);
static_assert(offsetof(TargetPortStatistics, invalid_crc) == 44);
static_assert(offsetof(TargetPortStatistics, delivery_failure_unknown) == 48);
static_assert(offsetof(TargetPortStatistics, delivery_timeout) == 52);
static_assert(offsetof(TargetPortStatistics, delivery_unable_to_route) == 56);
static_assert(offsetof(TargetPortStatistics, delivery_failure_device_specific) == 60);
static_assert(offsetof(TargetPortStatistics, peer_congestion_clear) == 64);
static_assert(offsetof(TargetPortStatistics, peer_congestion_lost_credit) == 68);
static_assert(offsetof(TargetPortStatistics, peer_congestion_credit_stall) == 72);
static_assert(offsetof(TargetPortStatistics, peer_congestion_oversubscription) == 76);
static_assert(offsetof(TargetPortStatistics, peer_congestion_device_specific) == 80);
static_assert(offsetof(TargetPortStatistics, link_unknown_event) == 104);
static_assert(offsetof(TargetPortStatistics, link_device_specific_event) == 108);
static_assert(sizeof(TargetPortStatistics) == 184);
