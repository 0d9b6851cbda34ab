#include "base/text.h"
#include "images/port_reports.h"

namespace lab {

std::string ComposeFirmwareDump(const Adapter& adapter, const Entry& entry) {
  const DumpSetup& setup = entry.reports.dump;
  if (setup.bytes) return *setup.bytes;
  const FCProtocolEntry& record = entry.record;
  std::string dump = "ZNFC firmware dump\n";
  dump.append("model: ").append(adapter.record.model.View()).append("\n");
  dump.append("serial: ").append(adapter.record.serial_number.View()).append("\n");
  dump.append("port: ").append(OctetText(record.port_name.octets)).append("\n");
  dump.append("firmware: ").append(record.running_firmware_version.View()).append("\n\n");
  // A linear congruential generator, so that every dump of a port is the same.
  std::uint32_t word = record.handle.sd_handle;
  while (dump.size() < setup.size) {
    word = word * 1664525 + 1013904223;
    dump += static_cast<char>(word >> 24);
  }
  dump.resize(setup.size);
  return dump;
}

}  // namespace lab
