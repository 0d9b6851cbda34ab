// Messages that the diagnostics share. Intended: several of them speak of the diagnostic port in every
// diagnostic.
#pragma once

#include <array>

#include "framework/status.h"

inline constexpr StatusMessage kPatternWithoutHyphens = {
    kBadCustomPattern, "Failed, Custom Data should be of 8 chars separated by '-' (hifen)"};
inline constexpr StatusMessage kSpeedBelow16 = {kSpeedTooLow,
                                                "Failed, Feature supported for speeds 16 Gbps and above"};

// The message table of a diagnostic: the rows that all of them have, and its own.
template <class... Rows>
consteval auto DiagnosticMessages(Rows... own) {
  return std::to_array<StatusMessage>({own...,
                                       kInvalidParameter,
                                       {kReadFailed, "Failed, DPortDiag read failed"},
                                       kHostNotFound,
                                       kFileNotFound,
                                       {kUpdateFailed, "Failed, DPortDiag update failed"},
                                       kAdapterNotFound,
                                       kFeatureNotSupported,
                                       kLinkDown,
                                       kNotInDiagnosticsMode,
                                       kVirtualPort,
                                       kMaintenanceMode});
}
