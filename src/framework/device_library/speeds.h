// Fibre Channel link speeds, in every form that a record or a command has for them.
#pragma once

#include <cstdint>

struct LinkSpeed {
  int gbps;
  std::uint32_t code;  // a current speed of a port or a target: the digits of `gbps` read as hexadecimal
  std::uint8_t supported_bit;  // in FCProtocolEntry::supported_speeds
  std::uint32_t data_rate;     // HBAParamsInfo::data_rate
  int rank;                    // among the speeds that can be set, from 1 for the slowest
  char text[8];                // in reports; part of the row, so that nothing is relocated at the start
  char word[8];                // in options, and in the reports of what they set
};

inline constexpr LinkSpeed k64Gbps = {64, 0x64, 0x80, 7, 7, "64 Gbps", "64_Gbps"};
inline constexpr LinkSpeed k32Gbps = {32, 0x32, 0x40, 6, 6, "32 Gbps", "32_Gbps"};
inline constexpr LinkSpeed k16Gbps = {16, 0x16, 0x20, 5, 5, "16 Gbps", "16_Gbps"};
inline constexpr LinkSpeed k8Gbps = {8, 0x08, 0x10, 4, 4, "8 Gbps", "8_Gbps"};
inline constexpr LinkSpeed k4Gbps = {4, 0x04, 0x08, 3, 3, "4 Gbps", "4_Gbps"};
inline constexpr LinkSpeed k2Gbps = {2, 0x02, 0x02, 1, 2, "2 Gbps", "2_Gbps"};
inline constexpr LinkSpeed k1Gbps = {1, 0x01, 0x01, 0, 1, "1 Gbps", "1_Gbps"};

// The speed of FCoE links, which is only shown: it has no data rate and no rank.
inline constexpr LinkSpeed k10Gbps = {10, 0x10, 0x04, 0, 0, "10 Gbps", "10_Gbps"};

// Fastest first.
inline constexpr LinkSpeed kLinkSpeeds[] = {k64Gbps, k32Gbps, k16Gbps, k10Gbps,
                                            k8Gbps,  k4Gbps,  k2Gbps,  k1Gbps};
inline constexpr LinkSpeed kSettableSpeeds[] = {k64Gbps, k32Gbps, k16Gbps, k8Gbps, k4Gbps, k2Gbps, k1Gbps};

// HBAParamsInfo::data_rate of a port that negotiates its speed.
inline constexpr std::uint32_t kDataRateAuto = 2;

// True when a mask of supported speeds has this speed.
constexpr bool IsSupported(std::uint8_t supported_speeds, const LinkSpeed& speed) {
  return (supported_speeds & speed.supported_bit) != 0;
}

// The speed with this code; null for a code that no speed has.
constexpr const LinkSpeed* SpeedOfCode(std::uint32_t code) {
  for (const LinkSpeed& speed : kLinkSpeeds) {
    if (speed.code == code) return &speed;
  }
  return nullptr;
}
