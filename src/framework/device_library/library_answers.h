// What the device library answers to a call. Numbers that no name has are failures without a meaning of
// their own.
#pragma once

#include <cstdint>

using LibraryStatus = std::uint32_t;

enum LibraryResult : LibraryStatus {
  kLibrarySuccess = 0,
  kLibraryInvalidParameter = 2,
  kLibraryFileNotFound = 3,
  kLibraryVirtualPort = 29,  // of the second link test interface
  kLibraryNoLinkTest = 38,   // the adapter lacks the second link test interface
  kLibraryNoMemory = 40,
  kLibrarySfpOfVirtualPort = 100,
  kLibraryFileOpenError = 101,
  kLibraryFileReadError = 102,
  kLibraryFileNotValid = 103,
  kLibraryWrongSsid = 104,  // an image for another subsystem identifier
  kLibraryFileCorrupted = 105,
  kLibraryWrongFileSize = 106,
  kLibraryWrongChecksum = 107,
  kLibraryInvalidData = 108,
  kLibraryWrongSerialNumber = 110,
  kLibraryWrongSignature = 111,
  kLibraryFeatureNotSupported = 113,
  kLibraryAdapterNotFound = 114,
  kLibraryDriverLacksFeature = 118,
  kLibraryAdapterLacksFeature = 121,
  kLibraryNoDiagnosticPort = 129,  // the port is not configured as one
  kLibraryLinkDown = 130,
  kLibraryLinkTooSlow = 131,
  kLibraryBootFromSan = 132,  // not while the host boots through the port
  kLibraryFirmwareLockdown = 133,
  kLibrarySfpUpdateFailed = 144,
  kLibrarySfpVendorNotSupported = 145,
  kLibrarySfpFileNotSupported = 146,
  kLibraryMaintenanceMode = 150,
  kLibraryImageSetInvalid = 152,
  kLibraryImageSetMismatch = 153,  // the image set does not fit the adapter's configuration
  kLibraryNqnRegistered = 158,
  kLibraryNqnNotRegistered = 159,
  kLibraryUpdatedRebootNeeded = 201,
  kLibraryUpdatedColdBootNeeded = 205,
  kLibraryComponentInvalid = 522,

  // Of the older interface, which has numbers of its own.
  kDumpInvalidParameter = 0x20000064,
  kDumpNoMemory = 0x20000072,
  kDumpParameterError = 0x20000073,
  kDumpNotAvailable = 0x2000007B,
};
