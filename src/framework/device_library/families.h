// Adapter families, which follow from the PCI identity of a port.
//
// No device of another vendor than 0x1C9E is of a family. Families overlap: one device can be of several, so
// a rule names exactly those that it means.
#pragma once

#include <cstdint>

#include "framework/device_library/pci_identity.h"

using FamilySet = std::uint32_t;

// Each a set of its own; join them with `|`.
enum Family : FamilySet {
  kAster = 1u << 0,
  kBirch = 1u << 1,
  kCedar = 1u << 2,
  kDahlia = 1u << 3,
  kElmOnly = 1u << 4,
  kFernOnly = 1u << 5,
  kElm = kElmOnly | kFernOnly,
  kCedarDevice = 1u << 6,  // of the Cedar family, the device that it is named after
  kGinkgo = 1u << 7,
  kHazel = 1u << 8,
  kIris = 1u << 9,
};

// All families that the device is of.
FamilySet FamiliesOf(const PciIdentity& pci);

// True for a device of one of these families at least: IsAnyOf(pci, kHazel | kIris).
bool IsAnyOf(const PciIdentity& pci, FamilySet families);

bool IsDeviceGroupAster(const PciIdentity& pci);
bool IsDeviceGroupBirch(const PciIdentity& pci);
bool IsDeviceGroupCedar(const PciIdentity& pci);
bool IsDeviceGroupDahlia(const PciIdentity& pci);
bool IsDeviceGroupElm(const PciIdentity& pci);
bool IsDeviceGroupElmOnly(const PciIdentity& pci);
bool IsDeviceGroupFernOnly(const PciIdentity& pci);
bool IsDeviceCedar(const PciIdentity& pci);
bool IsDeviceGinkgo(const PciIdentity& pci);
bool IsDeviceGroupHazel(const PciIdentity& pci);
bool IsDeviceGroupIris(const PciIdentity& pci);

// Single models and model lines, which differ by the subsystem too.
bool IsMezzDeviceElm(const PciIdentity& pci);       // mezzanine cards
bool IsFixedRateDeviceElm(const PciIdentity& pci);  // the data rate cannot be set
bool IsNoLoopDeviceElm(const PciIdentity& pci);
bool IsMezz32DeviceHazel(const PciIdentity& pci);
bool IsMezz16DeviceHazel(const PciIdentity& pci);
bool IsSixtyFourGigAdapter(const PciIdentity& pci);
bool IsEncryptionAdapter(const PciIdentity& pci);

// What several commands ask of an adapter.
bool HasBootModes(const PciIdentity& pci);  // UEFI and NVMe beside the legacy mode
bool HasCongestionManagement(const PciIdentity& pci);
bool HasFabricAssignment(const PciIdentity& pci);  // of names and boot LUNs
bool HasFlashMemoBlock(const PciIdentity& pci);
bool HasManagementFirmware(const PciIdentity& pci);  // MPI and PEP
