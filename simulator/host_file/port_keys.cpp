#include "host_file/port_keys.h"

#include <cstring>

#include "base/text.h"
#include "device/speed_codes.h"
#include "host_file/config_keys.h"
#include "host_file/congestion_keys.h"
#include "host_file/diag_keys.h"
#include "host_file/report_keys.h"
#include "host_file/sfp_keys.h"
#include "host_file/target_keys.h"

namespace lab {
namespace {

constexpr NamedNumber kLinkStates[] = {{"up", 1}, {"down", 3}};
constexpr NamedNumber kInterfaceTypes[] = {{"physical", 1}, {"npiv", 3}};
constexpr NamedNumber kProtocols[] = {{"fc", 0}, {"fcoe", 1}};
constexpr NamedNumber kConnections[] = {{"point-to-point", 1}, {"loop", 2}};
constexpr NamedNumber kSpeedBits[] = {{"1", 1},    {"2", 2},     {"10", 4},    {"4", 8},
                                      {"8", 0x10}, {"16", 0x20}, {"32", 0x40}, {"64", 0x80}};
constexpr NamedNumber kRomImages[] = {{"bios", 1u << 3}, {"uefi", 1u << 1}};
constexpr NamedNumber kPciSpeeds[] = {{"2.5", 1}, {"5", 2}, {"8", 3}, {"16", 4}, {"32", 8}};
constexpr NamedNumber kPciWidths[] = {{"1", 1}, {"2", 2}, {"4", 4}, {"8", 8}, {"16", 16}, {"32", 24}};

struct EntryReading {
  FCProtocolEntry& entry;
  Entry& setup;
  Port& port;
  TargetDefaults target_defaults;
};

std::uint32_t MaskOf(const Value& list, std::span<const NamedNumber> bits) {
  std::uint32_t mask = 0;
  list.EachItem([&](const Value& item) { mask |= item.Choice(bits); });
  return mask;
}

void ReadVersionBytes(const Value& value, std::uint8_t (&field)[4]) {
  const ComponentVersion version = value.Version();
  const std::uint8_t bytes[4] = {version.major, version.minor, version.sub, 0};
  std::memcpy(field, bytes, sizeof field);
}

void ReadCounters(const Value& list, std::uint32_t (&counters)[6]) {
  std::size_t count = 0;
  list.EachItem([&](const Value& item) {
    if (count == 6) item.Expected("six numbers and no more");
    item.Into(counters[count++]);
  });
}

// A link of the PCI Express bus: bits 0 to 3 speed, 4 to 9 width.
constexpr KeyRow<std::uint16_t> kPciLinkKeys[] = {
    {"speed",
     [](const Value& value, std::uint16_t& word) {
       word = static_cast<std::uint16_t>((word & ~0xFu) | (value.Choice(kPciSpeeds) & 0xF));
     }},
    {"width",
     [](const Value& value, std::uint16_t& word) {
       word = static_cast<std::uint16_t>((word & ~0x3F0u) | (value.Choice(kPciWidths) << 4));
     }},
};

void ReadElsewhere(const Value&, EntryReading&) {}

// A port that is down has neither speed nor address nor fabric, unless the keys behind say so.
void ReadLink(const Value& value, EntryReading& into) {
  FCProtocolEntry& entry = into.entry;
  entry.port_state = static_cast<PortState>(value.ChoiceOrNumber(kLinkStates, 255));
  if (entry.port_state != PortState::kOffline) return;
  entry.port_speed = 0;
  entry.port_id = {};
  entry.principal_fabric_name = {};
  entry.adjacent_fabric_name = {};
}

constexpr KeyRow<EntryReading> kEntryKeys[] = {
    {"wwpn", [](const Value& value, EntryReading& into) { value.Octets(into.entry.port_name.octets); }},
    {"wwnn", [](const Value& value, EntryReading& into) { value.Octets(into.entry.node_name.octets); }},
    {"port-id", [](const Value& value, EntryReading& into) { value.Octets(into.entry.port_id.octets); }},
    {"link", ReadElsewhere},
    {"speed",
     [](const Value& value, EntryReading& into) { into.entry.port_speed = value.Choice(kSpeedCodes); }},
    {"speed-code", [](const Value& value, EntryReading& into) { value.Into(into.entry.port_speed); }},
    {"type",
     [](const Value& value, EntryReading& into) {
       into.entry.interface_type =
           static_cast<PortInterfaceType>(value.ChoiceOrNumber(kInterfaceTypes, 65535));
     }},
    {"protocol",
     [](const Value& value, EntryReading& into) {
       into.entry.protocol_type = static_cast<ProtocolType>(value.ChoiceOrNumber(kProtocols, UINT32_MAX));
     }},
    {"port-type", [](const Value& value, EntryReading& into) { value.Into(into.entry.port_type); }},
    {"connection",
     [](const Value& value, EntryReading& into) {
       into.entry.connection_mode = static_cast<ConnectionMode>(value.ChoiceOrNumber(kConnections, 255));
     }},
    {"supported-speeds",
     [](const Value& value, EntryReading& into) {
       into.entry.supported_speeds = static_cast<std::uint8_t>(MaskOf(value, kSpeedBits));
     }},
    {"error-correction",
     [](const Value& value, EntryReading& into) {
       into.entry.link_flags = value.Bool() ? kFecInUse : std::uint16_t{0};
     }},
    {"principal-fabric",
     [](const Value& value, EntryReading& into) { value.Octets(into.entry.principal_fabric_name.octets); }},
    {"adjacent-fabric",
     [](const Value& value, EntryReading& into) { value.Octets(into.entry.adjacent_fabric_name.octets); }},
    {"host-nqn", [](const Value& value, EntryReading& into) { value.Into(into.entry.host_nqn); }},
    {"host-id", [](const Value& value, EntryReading& into) { value.Octets(into.entry.host_id); }},
    {"driver", [](const Value& value, EntryReading& into) { value.Into(into.entry.driver_version); }},
    {"running-firmware",
     [](const Value& value, EntryReading& into) { value.Into(into.entry.running_firmware_version); }},
    {"running-mpi",
     [](const Value& value, EntryReading& into) { ReadVersionBytes(value, into.entry.running_mpi_version); }},
    {"running-pep",
     [](const Value& value, EntryReading& into) { ReadVersionBytes(value, into.entry.running_pep_version); }},
    {"capabilities", [](const Value& value, EntryReading& into) { value.Into(into.entry.capabilities); }},
    {"driver-flags",
     [](const Value& value, EntryReading& into) {
       const auto maintenance = static_cast<std::uint8_t>(into.entry.driver_flags & kKnowsMaintenanceMode);
       value.Into(into.entry.driver_flags);
       into.entry.driver_flags |= maintenance;
     }},
    {"maintenance",
     [](const Value& value, EntryReading& into) {
       if (!value.Bool()) return;
       into.entry.driver_flags |= kKnowsMaintenanceMode;
       into.entry.port_flags |= kMaintenanceState;
     }},
    {"rom", [](const Value& value, EntryReading& into) { into.entry.rom_flags = MaskOf(value, kRomImages); }},
    {"pci-bus", [](const Value& value, EntryReading& into) { value.Into(into.entry.pci_bus); }},
    {"pci-device", [](const Value& value, EntryReading& into) { value.Into(into.entry.pci_device); }},
    {"pci-function", [](const Value& value, EntryReading& into) { value.Into(into.entry.pci_function); }},
    {"pci-capability",
     [](const Value& value, EntryReading& into) {
       ReadMap(value, kPciLinkKeys, into.entry.pci.link_capability);
     }},
    {"pci-status", [](const Value& value,
                      EntryReading& into) { ReadMap(value, kPciLinkKeys, into.entry.pci.link_status); }},
    {"driver-counters",
     [](const Value& value, EntryReading& into) { ReadCounters(value, into.entry.driver_counters); }},
    {"firmware-counters",
     [](const Value& value, EntryReading& into) { ReadCounters(value, into.entry.firmware_counters); }},
    {"diagnostics", [](const Value& value, EntryReading& into) { ReadDiagnostics(value, into.setup.diag); }},
    {"configuration",
     [](const Value& value, EntryReading& into) { ReadConfiguration(value, into.setup.config); }},
    {"congestion", [](const Value& value, EntryReading& into) { ReadCongestion(value, into.setup); }},
    {"temperature",
     [](const Value& value, EntryReading& into) { ReadTemperature(value, into.setup.reports); }},
    {"lockdown", [](const Value& value, EntryReading& into) { ReadLockdown(value, into.setup.reports); }},
    {"vpd", [](const Value& value, EntryReading& into) { ReadVpd(value, into.setup.reports); }},
    {"rdp", [](const Value& value, EntryReading& into) { ReadRdp(value, into.setup.reports); }},
    {"firmware-dump",
     [](const Value& value, EntryReading& into) { ReadFirmwareDump(value, into.setup.reports); }},
    {"targets", ReadElsewhere},
    {"sfp", ReadElsewhere},
    {"number", ReadElsewhere},
    {"no-protocols", [](const Value& value, EntryReading& into) { into.port.has_list = !value.Bool(); }},
    {"npiv", ReadElsewhere},
};

// A virtual port has the keys of a port but these, which stand last.
constexpr std::size_t kPortOnlyKeys = 4;
constexpr std::span<const KeyRow<EntryReading>> kAllKeys(kEntryKeys);
constexpr auto kVirtualKeys = kAllKeys.first(kAllKeys.size() - kPortOnlyKeys);

// The link decides what the other keys begin with, and they what the targets begin with, wherever they stand.
void ReadEntry(const Value& map, std::span<const KeyRow<EntryReading>> keys, EntryReading& reading,
               std::set<std::string>& names) {
  map.EachKey([&](const Value& value) {
    if (value.Key() == "link") ReadLink(value, reading);
  });
  ReadMap(map, keys, reading);
  const std::string name = OctetText(reading.entry.port_name.octets);
  if (!names.insert(name).second)
    map.Wrong("wwpn: expected a name of its own, got '" + name + "' a second time");
  map.EachKey([&](const Value& value) {
    if (value.Key() == "targets") ReadTargets(value, reading.target_defaults, reading.setup);
  });
}

// The module in the port's cage: without a word about it, one that fits the adapter's family.
std::shared_ptr<SfpModule> ModuleOf(const Value& map, const SfpValues& defaults) {
  std::shared_ptr<SfpModule> module = MakeSfp(defaults);
  map.EachKey([&](const Value& value) {
    if (value.Key() == "sfp") module = ReadSfp(value, defaults);
  });
  return module;
}

}  // namespace

void ReadPort(const Value& map, Adapter& adapter, std::size_t adapter_index, std::set<std::string>& names) {
  auto number = static_cast<std::uint32_t>(adapter.ports.size());
  map.EachKey([&](const Value& value) {
    if (value.Key() == "number") value.Into(number);
  });
  Port& port = adapter.ports.emplace_back();
  port.record.number = number;
  Entry& entry = port.entries.emplace_back();
  entry.record = MakeProtocolEntry(adapter, adapter_index, number);
  entry.config = MakeConfig(*adapter.family);
  const TargetDefaults target_defaults = {adapter_index, number, adapter.family->speed};
  EntryReading reading{entry.record, entry, port, target_defaults};
  ReadEntry(map, kAllKeys, reading, names);
  entry.sfp = ModuleOf(map, DefaultSfpValues(*adapter.family, adapter_index, number));

  map.EachKey([&](const Value& value) {
    if (value.Key() != "npiv") return;
    value.EachItem([&](const Value& item) {
      Entry virtual_entry;
      FCProtocolEntry& record = virtual_entry.record;
      record = port.entries.front().record;
      virtual_entry.diag = port.entries.front().diag;
      virtual_entry.sfp = port.entries.front().sfp;
      virtual_entry.congestion = port.entries.front().congestion;
      virtual_entry.config = port.entries.front().config;
      virtual_entry.reports = port.entries.front().reports;
      const auto place = static_cast<std::uint8_t>(port.entries.size());
      record.interface_type = PortInterfaceType::kNpivVirtual;
      record.port_name[1] = record.node_name[1] = place;
      record.port_id.octets[2] = static_cast<std::uint8_t>(record.port_id.octets[2] + place);
      EntryReading virtual_reading{record, virtual_entry, port, target_defaults};
      ReadEntry(item, kVirtualKeys, virtual_reading, names);
      port.entries.push_back(std::move(virtual_entry));
    });
  });
}

}  // namespace lab
