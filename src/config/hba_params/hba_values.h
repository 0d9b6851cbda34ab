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

inline constexpr const char* kDataRateAutoText = "Auto";

// When an interrupt is raised.
enum OperationMode : std::uint8_t {
  kInterruptPerCompletion = 0,
  kInterruptOnTimer = 5,
  kInterruptOnTimerOrIdle = 6,
};

inline constexpr CodeText kOperationModes[] = {
    {kInterruptPerCompletion, "Interrupt_For_Every_I/O_Completion"},
    {kInterruptOnTimer, "Interrupt_When_Interrupt_Delay_Timer_Expires"},
    {kInterruptOnTimerOrIdle, "Interrupt_When_Interrupt_Delay_Timer_Expires_Or_No_Active_I/O"},
};

inline constexpr std::uint32_t kLargestFrameSize = 2112;  // bytes; an option takes it on some models only
inline constexpr std::uint32_t kFrameSizes[] = {512, 1024, 2048, kLargestFrameSize};
