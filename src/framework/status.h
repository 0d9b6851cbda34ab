// Status codes, the messages they show, and how the library's answers become status codes.
#pragma once

#include <cstdint>
#include <span>

#include "framework/table.h"

// The outcome of a command. The process's exit status is always 0: what a user learns is in the "Message"
// of the command's document; the code itself only chooses that text, the usage print and the debug log line.
enum StatusCode : std::uint32_t {
  kSuccess = 0,
  kNoCallback = 1,   // a leaf without the callback that was asked for
  kNoSuchUsage = 2,  // a usage index that the class does not know, or a node with children was run
  kInitFailed = 3,
  kWrongWordCount = 4,
  kTestTypeNotSupported = 4,  // a type of test that the adapter lacks
  kBootModeNeeded = 4,        // the boot option belongs to another boot mode than the one asked for
  kHelpWord = 5,
  kInvalidParameter = 6,
  kUnknownCommand = 7,
  kDataNotAvailable = 8,
  kBootModeNotSupported = 8,
  kLeaveShell = 9,
  kQuit = 10,
  kFlashUpdateError = 11,
  kBadMode = 12,           // also: an output operation outside Open and Close
  kBadCustomPattern = 12,  // the same number as a command's own code
  kReadFailed = 13,
  kHostNotFound = 14,
  kNotSupportedBySwitch = 15,
  kComponentValidation = 16,
  kInvalidData = 17,
  kDelayNotAllowed = 17,  // an interrupt delay in the operation mode that has none
  kNoNvmeBootEntries = 17,
  kInvalidSerialNumber = 18,
  kTooFastForLoopOnly = 18,  // a loop at a data rate that has none
  kNotForBootMode = 18,      // an option of the legacy boot mode in another one
  kFileNotFound = 19,
  kUpdateFailed = 20,
  kAdapterNotFound = 21,
  kFileOpenError = 22,
  kFileNotValid = 23,
  kPersonalityNotAllowed = 24,
  kFileReadError = 25,
  kInvalidSsid = 26,
  kCorruptedFile = 27,
  kTargetNotFound = 28,
  kInvalidFileSize = 29,
  kChecksumError = 30,
  kInvalidSignature = 31,
  kFirmwareLockdown = 32,
  kLinkTestRefused = 33,  // by the firmware, whose reason words the message
  kDiagnosticFailed = 34,
  kFeatureNotSupported = 35,
  kNotSupportedForNvme = 36,
  kExclusiveOptions = 37,
  kStatisticsReadError = 38,
  kStatisticsClearError = 39,
  kNotInBootFromSan = 40,
  kVpdFailed = 41,
  kMemoryError = 42,
  kLinkDown = 43,
  kSpeedTooLow = 44,
  kNotSupportedByDriver = 45,
  kResponseNotAvailable = 46,
  kReadOnlyParameter = 47,
  kNotInDiagnosticsMode = 48,
  kLinkTestFailed = 50,
  kSfpUpdateRefused = 50,       // the same number of another command, which has no words for it
  kStatisticsResetFailed = 50,  // and of a third one, which has none either
  kVirtualPort = 51,
  kFeatureDisabled = 52,
  kNoRomBios = 53,
  kNoRomUefi = 54,
  kFcpTargetOptions = 55,
  kNvmeTargetOptions = 56,
  kSfpFileNotSupported = 57,
  kSfpVendorNotSupported = 58,
  kSfpUpdateFailed = 59,
  kMaintenanceMode = 60,
  kImageSetValidation = 61,
  kImageSetConfig = 62,
  kNqnAlreadyRegistered = 68,
  kNqnNotRegistered = 69,
  kLibraryNotSupported = 113,
};

// The message of a code whose wording is the same in every class; null for the codes that each class words
// itself.
constexpr const char* CommonMessage(StatusCode code);

void NoCommonMessageForThisCode();  // not constexpr: a table row that needs its own text does not compile

// One row of a class's message table: a code with the common wording, or with the class's own.
struct StatusMessage {
  // Implicit, so that a row can be the bare code. NOLINTNEXTLINE(google-explicit-constructor)
  consteval StatusMessage(StatusCode row_code) : code(row_code), text(CommonMessage(row_code)) {
    if (text == nullptr) NoCommonMessageForThisCode();
  }
  constexpr StatusMessage(StatusCode row_code, const char* row_text) : code(row_code), text(row_text) {}

  StatusCode code;
  const char* text;
};

// The text of `code` in a class's table, "Failed, Unknown" when the table lacks it.
const char* MessageFor(const Table<StatusMessage>& table, StatusCode code);

// The status of a failed library call: `own` as the command assigns it, unless the library says that the port
// is in maintenance mode.
StatusCode FromLibrary(std::uint32_t library_status, StatusCode own);

// One row of a command's translation table: what the library answers, and the status that it becomes.
struct LibraryAnswer {
  std::uint32_t library_status;
  StatusCode status;
};

// The status of a failed library call after the command's table; for an answer that the table lacks, as
// above.
StatusCode FromLibrary(std::uint32_t library_status, std::span<const LibraryAnswer> table, StatusCode own);

constexpr const char* CommonMessage(StatusCode code) {
  switch (code) {
    case kSuccess:
      return "Success";
    case kInvalidParameter:
      return "Failed, Invalid parameter";
    case kFlashUpdateError:
      return "Failed, Flash Update Error";
    case kHostNotFound:
      return "Failed, Host not found";
    case kNotSupportedBySwitch:
      return "Failed, Feature not supported by switch";
    case kComponentValidation:
      return "Failed, Flash Image Components Validation Error";
    case kFileNotFound:
      return "Failed, File not found";
    case kAdapterNotFound:
      return "Failed, Adapter not found";
    case kFileOpenError:
      return "Failed, File Open Error";
    case kFileNotValid:
      return "Failed, File not Valid";
    case kPersonalityNotAllowed:
      return "Failed, Personality change not allowed for user";
    case kFileReadError:
      return "Failed, File read Error";
    case kInvalidSsid:
      return "Failed, Invalid SSID";
    case kCorruptedFile:
      return "Failed, Corrupted File";
    case kTargetNotFound:
      return "Failed, Target not found";
    case kInvalidFileSize:
      return "Failed, Invalid File Size";
    case kChecksumError:
      return "Failed, Checksum Error";
    case kInvalidSignature:
      return "Failed, Invalid Signature";
    case kFirmwareLockdown:
      return "Failed, Flash Update disabled as FW lockdown mode enabled";
    case kDiagnosticFailed:
      return "Failed, Diagnostic test failed";
    case kFeatureNotSupported:
    case kLibraryNotSupported:
      return "Failed, Feature not supported for this adapter";
    case kNotSupportedForNvme:
      return "Failed, Feature not supported for NVMe target";
    case kExclusiveOptions:
      return "Failed, Restore and Activation command-line options are mutually exclusive";
    case kStatisticsReadError:
      return "Failed, Statistics read error";
    case kNotInBootFromSan:
      return "Failed, Feature not supported in Boot-From-SAN mode";
    case kVpdFailed:
      return "Failed, VPD failed";
    case kMemoryError:
      return "Failed, Memory Error";
    case kLinkDown:
      return "Failed, Feature requires link up";
    case kNotInDiagnosticsMode:
      return "Failed, Port not in diagnostics mode";
    case kVirtualPort:
      return "Failed, Feature not supported for virtual port";
    case kFeatureDisabled:
      return "Failed, Feature disabled on the port";
    case kNoRomBios:
      return "Failed, Adapter does not have ROM BIOS";
    case kNoRomUefi:
      return "Failed, Adapter does not have ROM UEFI";
    case kFcpTargetOptions:
      return "Failed, Tgt Num, Tgt WWPN, Disk Num required for FCP targets";
    case kNvmeTargetOptions:
      return "Failed, Tgt Num, Tgt WWPN, Disk Num, Tgt Enable required for NVMe targets";
    case kSfpFileNotSupported:
      return "Failed, SFP FW file not supported for this SFP";
    case kSfpVendorNotSupported:
      return "Failed, SFP FW update not supported for this SFP vendor";
    case kSfpUpdateFailed:
      return "Failed, SFP FW update failed";
    case kMaintenanceMode:
      return "Failed, Command not supported when adapter port in maintenance mode";
    case kImageSetValidation:
      return "Failed, Image set validation error";
    case kImageSetConfig:
      return "Failed, Image set config error";
    case kNqnAlreadyRegistered:
      return "Failed, Host NQN is already registered";
    case kNqnNotRegistered:
      return "Failed, Host NQN is not registered";
    default:
      return nullptr;
  }
}
