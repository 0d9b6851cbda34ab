// Messages that the diagnostic tests share. Several deliberately speak of the diagnostic port in the other
// tests as well.
#pragma once

#include "framework/status.h"

inline constexpr StatusMessage kDPortReadFailed = {kReadFailed, "Failed, DPortDiag read failed"};
inline constexpr StatusMessage kDPortUpdateFailed = {kUpdateFailed, "Failed, DPortDiag update failed"};
inline constexpr StatusMessage kPatternWithoutHyphens = {
    kBadCustomPattern, "Failed, Custom Data should be of 8 chars separated by '-' (hifen)"};
inline constexpr StatusMessage kSpeedBelow16 = {kSpeedTooLow,
                                                "Failed, Feature supported for speeds 16 Gbps and above"};
