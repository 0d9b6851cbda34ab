// Builds the device library's records of a host, level by level, in the order in which they are chained.
#pragma once

#include <cstdint>
#include <deque>
#include <string_view>

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"

class HostRecords {
 public:
  const AdapterList* List() const { return &list_; }

  // Appends an adapter with an empty port list. Texts fill their fields without a terminator where they are
  // as long as the field.
  AdapterEntry& AddAdapter(std::string_view model, std::string_view serial_number);

  // Appends a port with an empty protocol list to the adapter.
  PhyPortEntry& AddPort(AdapterEntry& adapter, std::uint32_t number);

  // Appends a protocol entry to the port.
  FCProtocolEntry& AddProtocol(PhyPortEntry& port, std::uint32_t type = 0);

  // Appends a port that holds one Fibre Channel entry, and returns that entry.
  FCProtocolEntry& AddFcPort(AdapterEntry& adapter, std::uint32_t number);

  // Appends a target whose port name is 50:00:00:00:00:00:00:xx with `last_octet`.
  TargetEntry& AddTarget(FCProtocolEntry& entry, std::uint8_t last_octet);

  // Appends a LUN, or for an NVMe target a namespace.
  LunEntry& AddLun(TargetEntry& target, std::uint16_t number);

 private:
  AdapterList list_ = {};
  std::deque<AdapterEntry> adapters_;
  std::deque<PortList> port_lists_;
  std::deque<PhyPortEntry> ports_;
  std::deque<ProtocolList> protocol_lists_;
  std::deque<FCProtocolEntry> protocols_;
  std::deque<TargetEntry> targets_;
  std::deque<LunEntry> luns_;
};
