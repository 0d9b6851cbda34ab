// Numbers that the simulated library answers: those that callers know, and its own from 901 upward.
#pragma once

#include <cstdint>

namespace lab {

enum Result : std::uint32_t {
  kSuccess = 0,
  kFileNotFound = 3,
  kNotForVirtualPorts = 29,
  kNoSecondLinkTest = 38,
  kNoSavingForVirtualPort = 100,
  kFileOpenError = 101,
  kFileReadError = 102,
  kNotAFlashImage = 103,
  kWrongAdapterFamily = 104,
  kImageCorrupted = 105,
  kImageSizeError = 106,
  kImageChecksumError = 107,
  kWrongSerialNumber = 110,
  kSignatureError = 111,
  kNoModuleUpdate = 113,
  kNoModule = 114,
  kNotSupportedByDriver = 118,
  kNotForThisAdapter = 121,
  kNotDiagnosticPort = 129,
  kTestNeedsLink = 130,
  kTestNeedsSpeed = 131,
  kFirmwareLockdown = 133,
  kModuleUpdateFailed = 144,
  kOtherModuleVendor = 145,
  kOtherModule = 146,
  kMaintenanceMode = 150,
  kNqnCallFailed = 151,
  kNqnAlreadyRegistered = 158,
  kNqnNotRegistered = 159,
  kSuccessWarmReboot = 201,
  kSuccessColdReboot = 205,
  kComponentInvalid = 522,

  kUnknownHandle = 901,    // the handle names no port of this host
  kInternalFailure = 902,  // out of memory and the like
  kBadArgument = 903,      // a null pointer where a result or a name belongs
  kStateNotSaved = 904,    // the state file could not be written; the change holds for this run only
  kNoDestination = 905,    // neither a target of the port nor its fabric has this name
  kTestFailed = 906,       // a pass of the test failed
  kNoSuchTarget = 907,     // the port sees no such target
  kNoBootEntries = 908,    // the port has no NVMe boot entries
  kRecordedHost = 909,     // the host is a recording, which nothing can change and no test can run on
  kNotRecorded = 910,      // the recording has no answer of this call
};

// Offset that the firmware dump call adds to its failures.
inline constexpr std::uint32_t kOlderInterfaceFailure = 0x20000000;

}  // namespace lab
