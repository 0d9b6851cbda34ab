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
