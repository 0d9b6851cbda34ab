// The values of HBA parameters that have names.
#pragma once

#include <cstdint>

#include "framework/code_text.h"

enum ConnectionOption : std::uint8_t { kLoopOnly = 0, kPointToPointOnly = 1, kLoopPreferred = 2 };

inline constexpr CodeText kConnectionOptions[] = {
    {kLoopOnly, "Loop_Only"},
    {kPointToPointOnly, "Point_To_Point_Only"},
    {kLoopPreferred, "Loop_Preferred_Otherwise_Point_To_Point"},
};

// A data rate that a port may support, fastest first. The bit for 10 Gbps is deliberately missing: that rate
// cannot be asked for.
struct DataRate {
  std::uint8_t speed_bit;  // in the port's mask of supported speeds
  std::uint8_t value;
  const char* text;
};

inline constexpr std::uint8_t kSpeed64Gbps = 0x80;
inline constexpr std::uint8_t kSpeed32Gbps = 0x40;
inline constexpr std::uint8_t kSpeed16Gbps = 0x20;
inline constexpr std::uint8_t kSpeed8Gbps = 0x10;

inline constexpr std::uint8_t kDataRateAuto = 2;
inline constexpr std::uint8_t kDataRate8Gbps = 4;
inline constexpr std::uint8_t kDataRate16Gbps = 5;
inline constexpr const char* kDataRateAutoText = "Auto";

inline constexpr DataRate kDataRates[] = {
    {kSpeed64Gbps, 7, "64_Gbps"},
    {kSpeed32Gbps, 6, "32_Gbps"},
    {kSpeed16Gbps, kDataRate16Gbps, "16_Gbps"},
    {kSpeed8Gbps, kDataRate8Gbps, "8_Gbps"},
    {0x08, 3, "4_Gbps"},
    {0x02, 1, "2_Gbps"},
    {0x01, 0, "1_Gbps"},
};

// When an interrupt is raised.
inline constexpr std::uint8_t kInterruptPerCompletion = 0;
inline constexpr std::uint8_t kInterruptOnTimer = 5;
inline constexpr std::uint8_t kInterruptOnTimerOrIdle = 6;

inline constexpr CodeText kOperationModes[] = {
    {kInterruptPerCompletion, "Interrupt_For_Every_I/O_Completion"},
    {kInterruptOnTimer, "Interrupt_When_Interrupt_Delay_Timer_Expires"},
    {kInterruptOnTimerOrIdle, "Interrupt_When_Interrupt_Delay_Timer_Expires_Or_No_Active_I/O"},
};
