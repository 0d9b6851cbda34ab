#include "host_file/port_keys.h"

#include "base/named_number.h"
#include "base/text.h"
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

void ReadCounters(const Value& list, std::uint32_t (&counters)[6]) {
  list.EachItemUpTo(std::size(counters), "numbers",
                    [&](const Value& item, std::size_t place) { item.Into(counters[place]); });
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

// A port that is down has neither speed nor address nor fabric, unless later keys say so.
void ReadLink(const Value& value, EntryReading& into) {
  FCProtocolEntry& entry = into.entry;
  value.CodeInto(kLinkStates, entry.port_state);
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
    {"type", [](const Value& value,
                EntryReading& into) { value.CodeInto(kInterfaceTypes, into.entry.interface_type); }},
    {"protocol",
     [](const Value& value, EntryReading& into) { value.CodeInto(kProtocols, into.entry.protocol_type); }},
    {"port-type", [](const Value& value, EntryReading& into) { value.Into(into.entry.port_type); }},
    {"connection", [](const Value& value,
                      EntryReading& into) { value.CodeInto(kConnections, into.entry.connection_mode); }},
    {"supported-speeds",
     [](const Value& value, EntryReading& into) {
       into.entry.supported_speeds = static_cast<std::uint8_t>(value.Mask(kSpeedBits));
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
     [](const Value& value, EntryReading& into) {
       StoreVersion(into.entry.running_mpi_version, value.Version());
     }},
    {"running-pep",
     [](const Value& value, EntryReading& into) {
       StoreVersion(into.entry.running_pep_version, value.Version());
     }},
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
    {"rom", [](const Value& value, EntryReading& into) { into.entry.rom_flags = value.Mask(kRomImages); }},
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

// A virtual port has the keys of a port but for the last ones.
constexpr std::size_t kPortOnlyKeys = 4;
constexpr std::span<const KeyRow<EntryReading>> kAllKeys(kEntryKeys);
constexpr auto kVirtualKeys = kAllKeys.first(kAllKeys.size() - kPortOnlyKeys);

// The link sets the defaults of the other keys, and they those of the targets, in whatever order they are.
void ReadEntry(const Value& map, std::span<const KeyRow<EntryReading>> keys, EntryReading& reading,
               HostReading& host) {
  if (++host.ports == map.GetLimits().host_ports + 1) {
    map.Wrong("ports: expected at most " + std::to_string(map.GetLimits().host_ports) + " in the whole host");
  }
  map.At("link", [&](const Value& link) { ReadLink(link, reading); });
  ReadMap(map, keys, reading);
  const std::string name = OctetText(reading.entry.port_name.octets);
  if (!host.port_names.insert(name).second) {
    map.AtOrHere("wwpn").Wrong("wwpn: expected a name of its own, got '" + name + "' a second time");
  }
  map.At("targets",
         [&](const Value& targets) { ReadTargets(targets, reading.target_defaults, reading.setup, host); });
}

// The module in the port's cage: without the key, one that fits the adapter's family.
std::shared_ptr<SfpModule> ModuleOf(const Value& map, const SfpValues& defaults) {
  std::shared_ptr<SfpModule> module = MakeSfpModule(defaults);
  map.At("sfp", [&](const Value& sfp) { module = ReadSfp(sfp, defaults); });
  return module;
}

// A virtual port: a copy of its port but for kind, names and address. It has no targets yet.
Entry MakeVirtualEntry(const Entry& of_port, std::uint8_t place) {
  Entry entry;
  entry.record = of_port.record;
  entry.diag = of_port.diag;
  entry.sfp = of_port.sfp;
  entry.congestion = of_port.congestion;
  entry.config = of_port.config;
  entry.reports = of_port.reports;
  entry.record.interface_type = PortInterfaceType::kNpivVirtual;
  entry.record.port_name[1] = entry.record.node_name[1] = place;
  entry.record.port_id.octets[2] = static_cast<std::uint8_t>(entry.record.port_id.octets[2] + place);
  return entry;
}

}  // namespace

void ReadPort(const Value& map, Adapter& adapter, std::size_t adapter_index, HostReading& host) {
  if (host.ports > map.GetLimits().host_ports) return;
  auto number = static_cast<std::uint32_t>(adapter.ports.size());
  map.At("number", [&](const Value& value) { value.Into(number); });
  Port& port = adapter.ports.emplace_back();
  port.record.number = number;
  const TargetDefaults target_defaults = {adapter_index, number, adapter.family->speed};
  const auto read_entry = [&](const Value& entry_map, std::span<const KeyRow<EntryReading>> keys,
                              Entry& entry) {
    EntryReading reading{entry.record, entry, port, target_defaults};
    ReadEntry(entry_map, keys, reading, host);
  };

  Entry& entry = port.entries.emplace_back();
  entry.record = MakeProtocolEntry(adapter, adapter_index, number);
  entry.config = MakeConfig(*adapter.family);
  read_entry(map, kAllKeys, entry);
  entry.sfp = ModuleOf(map, DefaultSfpValues(*adapter.family, adapter_index, number));

  map.At("npiv", [&](const Value& list) {
    list.EachItemUpTo(list.GetLimits().virtual_ports, "virtual ports", [&](const Value& item, std::size_t) {
      if (host.ports > list.GetLimits().host_ports) return;
      const auto place = static_cast<std::uint8_t>(port.entries.size());
      Entry virtual_entry = MakeVirtualEntry(port.entries.front(), place);
      read_entry(item, kVirtualKeys, virtual_entry);
      port.entries.push_back(std::move(virtual_entry));
    });
  });
}

}  // namespace lab
