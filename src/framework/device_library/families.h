// Adapter families, told by the PCI identity of a port.
//
// Every test is false for another vendor than 0x1C9E. Families overlap (one device can pass several tests),
// so a rule names exactly the tests it means.
#pragma once

#include "framework/device_library/pci_identity.h"

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

// Single models and model lines, told by the subsystem too.
bool IsMezzDeviceElm(const PciIdentity& pci);       // mezzanine cards
bool IsFixedRateDeviceElm(const PciIdentity& pci);  // the data rate cannot be set
bool IsNoLoopDeviceElm(const PciIdentity& pci);
bool IsMezz32DeviceHazel(const PciIdentity& pci);
bool IsMezz16DeviceHazel(const PciIdentity& pci);
bool IsSixtyFourGigAdapter(const PciIdentity& pci);
bool IsEncryptionAdapter(const PciIdentity& pci);

// Families that rules name together.
bool IsDeviceGroupHazelIrisOrDahlia(const PciIdentity& pci);
bool IsDeviceGroupElmOnlyHazelIrisOrDahlia(const PciIdentity& pci);
bool IsDeviceGroupAsterBirchOrCedar(const PciIdentity& pci);
bool HasFlashMemoBlock(const PciIdentity& pci);  // those three and the Elm family without Fern
