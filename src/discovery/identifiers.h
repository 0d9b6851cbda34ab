// The texts that name ports, targets and LUNs, and the exact reading of such a text back into what it names.
//
// An identifier is taken only in the very form that `list` prints: lower-case digits, no blank, nothing left
// over.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/world_wide_name.h"

// "FC_" with the port's name.
std::string PortIdentifier(const FCProtocolEntry& entry);

// The port's identifier with "_Target_" and the target's port name.
std::string TargetIdentifier(const FCProtocolEntry& entry, const TargetEntry& target);

// The identifiers of one target's LUNs: the target's identifier with "_LUN_%u", or "_NSID_%u" for an NVMe
// target. What they have in common is put together once.
class LunIdentifiers {
 public:
  LunIdentifiers(const FCProtocolEntry& entry, const TargetEntry& target);

  // The identifier of a LUN of the target; valid until the next call.
  std::string_view Of(const LunEntry& lun);

 private:
  std::string text_;  // what they have in common, and room for a number
  std::size_t common_length_;
};

// Each takes the leading part of `text` that its function prints, removes it and stores what it names; false,
// with `text` and the result unusable, when the text does not begin like that.
bool TakePort(std::string_view& text, WorldWideName& port_name);
bool TakeTarget(std::string_view& text, WorldWideName& target_name);
bool TakeLun(std::string_view& text, bool& is_namespace, std::uint32_t& number);
