#include "recorded/recorded_host.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace lab {
namespace {

using recording::ProtocolRecording;
using recording::TargetRecording;

// Chains the records of the entries and returns the first one.
template <class Entry>
auto* Chain(std::vector<Entry>& entries) {
  for (std::size_t i = 1; i < entries.size(); ++i) entries[i - 1].record.next = &entries[i].record;
  return entries.empty() ? nullptr : &entries[0].record;
}

const LunEntry* Chain(std::vector<LunEntry>& luns) {
  for (std::size_t i = 1; i < luns.size(); ++i) luns[i - 1].next = &luns[i];
  return luns.empty() ? nullptr : luns.data();
}

void Link(ProtocolRecording& protocol) {
  for (TargetRecording& target : protocol.targets) target.record.first_lun = Chain(target.luns);
  protocol.record.first_target = Chain(protocol.targets);
}

}  // namespace

RecordedHost::RecordedHost(recording::HostRecording recording) : recording_(std::move(recording)) {
  Link();
}

void RecordedHost::Link() {
  for (recording::AdapterRecording& adapter : recording_.adapters) {
    for (recording::PhyPortRecording& port : adapter.ports) {
      for (ProtocolRecording& protocol : port.protocols) {
        lab::Link(protocol);
        if (recording::IsServed(protocol.record)) ports_.push_back(&protocol);
      }
      port.protocol_list.first = Chain(port.protocols);
      port.record.protocols = port.has_protocols ? &port.protocol_list : nullptr;
    }
    adapter.port_list.first = Chain(adapter.ports);
    adapter.record.ports = adapter.has_ports ? &adapter.port_list : nullptr;
  }
  recording_.list.first = Chain(recording_.adapters);
}

const ProtocolRecording* RecordedHost::FindPort(const DeviceHandle& handle) const {
  // Two ports of an odd host can have handles of the same content.
  for (const bool by_address : {true, false}) {
    const auto found = std::find_if(ports_.begin(), ports_.end(), [&](const ProtocolRecording* port) {
      const DeviceHandle& own = port->record.handle;
      return by_address ? &own == &handle : std::memcmp(&own, &handle, sizeof own) == 0;
    });
    if (found != ports_.end()) return *found;
  }
  return nullptr;
}

const ProtocolRecording* RecordedHost::FindPort(std::uint32_t sd_handle) const {
  const auto found = std::find_if(ports_.begin(), ports_.end(), [=](const ProtocolRecording* port) {
    return port->record.handle.sd_handle == sd_handle;
  });
  return found == ports_.end() ? nullptr : *found;
}

const TargetRecording* RecordedHost::FindTarget(std::uint32_t sd_handle, const WorldWideName& name) const {
  for (const ProtocolRecording* port : ports_) {
    if (port->record.handle.sd_handle != sd_handle) continue;
    for (const TargetRecording& target : port->targets) {
      if (target.record.port_name == name) return &target;
    }
  }
  return nullptr;
}

const TargetRecording* FindTarget(const ProtocolRecording& port, std::uint16_t number) {
  const auto found =
      std::find_if(port.targets.begin(), port.targets.end(),
                   [=](const TargetRecording& target) { return target.record.number == number; });
  return found == port.targets.end() ? nullptr : &*found;
}

}  // namespace lab
