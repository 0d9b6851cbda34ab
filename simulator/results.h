// Numbers that the simulated library answers: those that callers know, and its own from 900 upward.
#pragma once

#include <cstdint>

namespace lab {

enum Result : std::uint32_t {
  kSuccess = 0,
  kFileNotFound = 3,
  kFileOpenError = 101,
  kFileReadError = 102,
  kNotAFlashImage = 103,
  kWrongAdapterFamily = 104,
  kImageCorrupted = 105,
  kImageSizeError = 106,
  kImageChecksumError = 107,
  kWrongSerialNumber = 110,
  kSignatureError = 111,
  kNotForThisAdapter = 121,
  kFirmwareLockdown = 133,
  kMaintenanceMode = 150,
  kSuccessWarmReboot = 201,
  kSuccessColdReboot = 205,
  kComponentInvalid = 522,

  kNotServed = 900,        // the simulation has no behaviour for this call
  kUnknownHandle = 901,    // the handle names no port of this host
  kInternalFailure = 902,  // out of memory and the like
  kBadArgument = 903,      // a null pointer where a result or a name belongs
  kStateNotSaved = 904,    // the state file could not be written; the change holds for this run only
};

// Offset that the firmware dump call adds to its failures.
inline constexpr std::uint32_t kOlderInterfaceFailure = 0x20000000;

}  // namespace lab
