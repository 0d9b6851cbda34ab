#include "support/unit_host_records.h"

#include <cstdlib>

namespace {

// Appends `entry` to the chain that begins at `first`.
template <class Entry>
void Append(const Entry*& first, const Entry& entry) {
  const Entry** end = &first;
  while (*end != nullptr) end = &const_cast<Entry*>(*end)->next;
  *end = &entry;
}

template <std::size_t N>
void SetText(FixedText<N>& field, std::string_view text) {
  if (text.size() > N) std::abort();
  text.copy(field.bytes, text.size());
}

}  // namespace

AdapterEntry& HostRecords::AddAdapter(std::string_view model, std::string_view serial_number) {
  AdapterEntry& adapter = adapters_.emplace_back();
  SetText(adapter.model, model);
  SetText(adapter.serial_number, serial_number);
  adapter.ports = &port_lists_.emplace_back();
  Append(list_.first, adapter);
  ++list_.count;
  return adapter;
}

PhyPortEntry& HostRecords::AddPort(AdapterEntry& adapter, std::uint32_t number) {
  PhyPortEntry& port = ports_.emplace_back();
  port.number = number;
  port.protocols = &protocol_lists_.emplace_back();
  Append(const_cast<PortList*>(adapter.ports)->first, port);
  return port;
}

FCProtocolEntry& HostRecords::AddProtocol(PhyPortEntry& port, std::uint32_t type) {
  FCProtocolEntry& entry = protocols_.emplace_back();
  entry.protocol_type = static_cast<ProtocolType>(type);
  Append(const_cast<ProtocolList*>(port.protocols)->first, entry);
  return entry;
}

FCProtocolEntry& HostRecords::AddFcPort(AdapterEntry& adapter, std::uint32_t number) {
  return AddProtocol(AddPort(adapter, number));
}

TargetEntry& HostRecords::AddTarget(FCProtocolEntry& entry, std::uint8_t last_octet) {
  TargetEntry& target = targets_.emplace_back();
  target.port_name[0] = 0x50;
  target.port_name[7] = last_octet;
  Append(entry.first_target, target);
  ++entry.target_count;
  return target;
}

LunEntry& HostRecords::AddLun(TargetEntry& target, std::uint16_t number) {
  LunEntry& lun = luns_.emplace_back();
  lun.number = number;
  Append(target.first_lun, lun);
  ++target.lun_count;
  return lun;
}
