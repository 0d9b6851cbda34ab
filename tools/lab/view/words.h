// Words for the codes of the device library's records.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "framework/device_library/library_answers.h"
#include "framework/device_library/pci_identity.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"

namespace view {

struct CodeWord {
  std::uint32_t code;
  const char* word;
};

// The word of a code; the number itself, as "code 7", for one without a word.
std::string WordOf(std::span<const CodeWord> words, std::uint32_t code);

inline constexpr CodeWord kLinkStates[] = {{1, "up"}, {3, "down"}};
inline constexpr CodeWord kCongestionStates[] = {{0, "healthy"}, {1, "congested"}};
inline constexpr CodeWord kSeverities[] = {{0, "none"}, {0xF1, "warning"}, {0xF7, "alarm"}};

// SCSI peripheral device types (SPC).
inline constexpr CodeWord kProductTypes[] = {{0, "disk"},    {1, "tape"},  {4, "optical"}, {5, "CDROM"},
                                             {8, "changer"}, {12, "RAID"}, {13, "SAF-TE"}};

inline constexpr std::uint8_t kCongested = 1;
inline constexpr std::uint8_t kWarningSeverity = 0xF1;
inline constexpr std::uint8_t kAlarmSeverity = 0xF7;

// "16 Gbps", "none" for 0, "speed code 0x99" for one that no speed has.
std::string SpeedText(std::uint32_t code);

// "elm", or "" for a device of no family.
const char* FamilyName(const PciIdentity& pci);

// "online", "offline" or "unconfigured".
const char* TargetStateText(const TargetEntry& target);

// What a refused call answered: "121 (the adapter lacks the feature)".
std::string ResultText(LibraryStatus result);

}  // namespace view
