#include "state/running_state.h"

#include <cstring>

namespace lab {
namespace {

ComponentVersion VersionOf(const std::uint8_t (&field)[4]) {
  return {field[0], field[1], field[2]};
}

std::string Shown(const std::uint8_t (&field)[4]) {
  const ComponentVersion version = VersionOf(field);
  return version.AllZero() ? "none" : VersionText(version);
}

constexpr KeyRow<Entry> kRunningKeys[] = {
    {"firmware", [](const Value& value, Entry& into) { value.Into(into.record.running_firmware_version); }},
    {"mpi",
     [](const Value& value, Entry& into) { StoreVersion(into.record.running_mpi_version, value.Version()); }},
    {"pep",
     [](const Value& value, Entry& into) { StoreVersion(into.record.running_pep_version, value.Version()); }},
    {"speed-code", [](const Value& value, Entry& into) { value.Into(into.record.port_speed); }},
    {"connection-code",
     [](const Value& value, Entry& into) { value.CodeInto({}, into.record.connection_mode); }},
    {"error-correction",
     [](const Value& value, Entry& into) {
       const auto others = static_cast<std::uint16_t>(into.record.link_flags & ~kFecInUse);
       into.record.link_flags = static_cast<std::uint16_t>(others | (value.Bool() ? kFecInUse : 0));
     }},
    {"congestion-management", [](const Value& value, Entry& into) { value.Into(into.congestion.enabled); }},
};

void ForgetCounters(Entry& entry) {
  FCProtocolEntry& record = entry.record;
  std::memset(record.driver_counters, 0, sizeof record.driver_counters);
  std::memset(record.firmware_counters, 0, sizeof record.firmware_counters);
  record.congestion_alarms = 0;
  record.congestion_warnings = 0;
  record.link_integrity_events = 0;
  record.delivery_notification_events = 0;
  entry.congestion.port = {};
  entry.congestion.targets.clear();
  entry.congestion.departed = 0;
  entry.config.fec.correctable = 0;
  entry.config.fec.uncorrectable = 0;
  entry.targets.ForgetStatistics();
}

}  // namespace

void ReadRunning(const Value& map, Entry& entry) {
  ReadMap(map, kRunningKeys, entry);
}

StateNode RunningState(const Entry& entry) {
  const FCProtocolEntry& record = entry.record;
  StateNode node;
  node["firmware"] = std::string(record.running_firmware_version.View());
  node["mpi"] = Shown(record.running_mpi_version);
  node["pep"] = Shown(record.running_pep_version);
  node["speed-code"] = record.port_speed;
  node["connection-code"] = static_cast<unsigned>(record.connection_mode);
  node["error-correction"] = (record.link_flags & kFecInUse) != 0;
  node["congestion-management"] = entry.congestion.enabled;
  return node;
}

void Restart(Adapter& adapter) {
  adapter.restarted = true;
  for (Port& port : adapter.ports) {
    for (Entry& entry : port.entries) {
      ForgetCounters(entry);
      if (entry.sfp != nullptr) entry.sfp->known = entry.sfp->now;
    }
  }
}

}  // namespace lab
