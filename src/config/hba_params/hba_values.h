// The values of HBA parameters that have names.
#pragma once

#include "framework/code_text.h"
#include "framework/device_library/config_records.h"

inline constexpr CodeText kConnectionOptions[] = {
    {kLoopOnly, "Loop_Only"},
    {kPointToPointOnly, "Point_To_Point_Only"},
    {kLoopPreferred, "Loop_Preferred_Otherwise_Point_To_Point"},
};

inline constexpr const char* kDataRateAutoText = "Auto";

inline constexpr CodeText kOperationModes[] = {
    {kInterruptPerCompletion, "Interrupt_For_Every_I/O_Completion"},
    {kInterruptOnTimer, "Interrupt_When_Interrupt_Delay_Timer_Expires"},
    {kInterruptOnTimerOrIdle, "Interrupt_When_Interrupt_Delay_Timer_Expires_Or_No_Active_I/O"},
};

inline constexpr std::uint32_t kLargestFrameSize = 2112;  // bytes; an option takes it on some models only
inline constexpr std::uint32_t kFrameSizes[] = {512, 1024, 2048, kLargestFrameSize};
