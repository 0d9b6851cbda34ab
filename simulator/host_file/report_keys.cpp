#include "host_file/report_keys.h"

#include "base/text.h"

namespace lab {
namespace {

// Whether it is on, or the status that says why nobody knows.
constexpr NamedNumber kLockdowns[] = {
    {"off", 0}, {"on", 1}, {"unsupported-driver", 0x76}, {"unsupported-firmware", 0x86}};

constexpr std::size_t kLargestItem = 255;
constexpr std::uint32_t kLargestDump = 16u << 20;

// Bytes written as octets, at most `limit` of them.
std::string OctetsOf(const Value& value, std::size_t limit) {
  const std::string text = value.Text(3 * limit);
  std::string bytes((text.size() + 1) / 3, '\0');
  if (!text.empty() && !ReadOctets(text, {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()})) {
    value.Expected("hexadecimal octets joined by ':'");
  }
  return bytes;
}

// True for a map, false for "none" and after a mistake.
bool IsThere(const Value& value, bool& none) {
  none = value.Is("none");
  if (!none && !value.IsMap()) value.Expected("a map, or none");
  return value.IsMap();
}

void ReadOneLockdown(const Value& value, Lockdown& into) {
  into = {};
  const std::uint32_t code = value.ChoiceOrNumber(kLockdowns, UINT32_MAX);
  if (value.Is("on") || value.Is("off")) {
    into.on = code != 0;
  } else {
    into.status = code;
  }
}

constexpr KeyRow<LockdownSetup> kLockdownKeys[] = {
    {"config", [](const Value& value, LockdownSetup& into) { ReadOneLockdown(value, into.config); }},
    {"firmware-update",
     [](const Value& value, LockdownSetup& into) { ReadOneLockdown(value, into.firmware_update); }},
    {"mpi", [](const Value& value, LockdownSetup& into) { ReadOneLockdown(value, into.mpi); }},
};

void ReadItems(const Value& map, VpdSetup& into) {
  map.EachKey([&](const Value& item) {
    const std::string& keyword = item.Key();
    if (keyword.size() != 2) return item.WrongKey("a keyword of two characters");
    if (keyword == "RV" || keyword == "RW") return item.WrongKey("no item that is made by itself");
    std::optional<std::string>& value = into.items[keyword];
    if (item.Is("none")) {
      value.reset();
    } else {
      value = item.Text(kLargestItem);
    }
  });
}

constexpr KeyRow<VpdSetup> kVpdKeys[] = {
    {"bytes", [](const Value& value, VpdSetup& into) { into.bytes = OctetsOf(value, kLargestVpd); }},
    {"image", [](const Value& value, VpdSetup& into) { into.bytes = value.FileBytes(kLargestVpd); }},
    {"name", [](const Value& value, VpdSetup& into) { into.name = value.Text(kLargestItem); }},
    {"items", ReadItems},
};

template <typename Number>
void IntoOptional(const Value& value, std::optional<Number>& into) {
  value.Into(into.emplace());
}

constexpr KeyRow<SwitchModule> kModuleKeys[] = {
    {"vendor", [](const Value& value, SwitchModule& into) { into.vendor = value.Text(16); }},
    {"part", [](const Value& value, SwitchModule& into) { into.part = value.Text(16); }},
    {"serial", [](const Value& value, SwitchModule& into) { into.serial = value.Text(16); }},
    {"revision", [](const Value& value, SwitchModule& into) { into.revision = value.Text(4); }},
    {"date", [](const Value& value, SwitchModule& into) { into.date = value.Text(8); }},
    {"temperature",
     [](const Value& value, SwitchModule& into) { into.measured.temperature = value.Decimal(0, 255.99); }},
    {"voltage",
     [](const Value& value, SwitchModule& into) { into.measured.voltage = value.Decimal(0, 6.5535); }},
    {"bias", [](const Value& value, SwitchModule& into) { into.measured.bias = value.Decimal(0, 131.07); }},
    {"tx-power",
     [](const Value& value, SwitchModule& into) { into.measured.tx_power = value.Decimal(0, 6.5535); }},
    {"rx-power",
     [](const Value& value, SwitchModule& into) { into.measured.rx_power = value.Decimal(0, 6.5535); }},
    {"flags", [](const Value& value, SwitchModule& into) { IntoOptional(value, into.flags); }},
};

void ReadLinkErrors(const Value& list, RdpSetup& into) {
  list.EachItemUpTo(std::size(into.link_errors), "numbers",
                    [&](const Value& item, std::size_t place) { item.Into(into.link_errors[place]); });
}

constexpr KeyRow<RdpSetup> kRdpKeys[] = {
    {"bytes", [](const Value& value, RdpSetup& into) { into.bytes = OctetsOf(value, kLargestRdpResponse); }},
    {"image", [](const Value& value, RdpSetup& into) { into.bytes = value.FileBytes(kLargestRdpResponse); }},
    {"node-name", [](const Value& value, RdpSetup& into) { value.Octets(into.node_name.emplace().octets); }},
    {"port-name", [](const Value& value, RdpSetup& into) { value.Octets(into.port_name.emplace().octets); }},
    {"link-errors", ReadLinkErrors},
    {"corrected-blocks",
     [](const Value& value, RdpSetup& into) { IntoOptional(value, into.corrected_blocks); }},
    {"uncorrected-blocks",
     [](const Value& value, RdpSetup& into) { IntoOptional(value, into.uncorrected_blocks); }},
    {"credits", [](const Value& value, RdpSetup& into) { value.Into(into.credits); }},
    {"attached-credits", [](const Value& value, RdpSetup& into) { value.Into(into.attached_credits); }},
    {"round-trip-ns", [](const Value& value, RdpSetup& into) { value.Into(into.round_trip_ns); }},
    {"module", [](const Value& value, RdpSetup& into) { ReadMap(value, kModuleKeys, into.module); }},
};

constexpr KeyRow<DumpSetup> kDumpKeys[] = {
    {"size", [](const Value& value,
                DumpSetup& into) { into.size = static_cast<std::uint32_t>(value.Number(0, kLargestDump)); }},
    {"image", [](const Value& value, DumpSetup& into) { into.bytes = value.FileBytes(kLargestDump); }},
};

constexpr KeyRow<Entry> kStateKeys[] = {
    {"counters-reset",
     [](const Value& value, Entry& into) {
       if (value.Bool()) ResetCounters(into);
     }},
};

}  // namespace

void ReadTemperature(const Value& value, PortReportSetup& setup) {
  setup.temperature = value.SignedWord();
}

void ReadLockdown(const Value& map, PortReportSetup& setup) {
  ReadMap(map, kLockdownKeys, setup.lockdown);
}

void ReadVpd(const Value& value, PortReportSetup& setup) {
  if (IsThere(value, setup.vpd.none)) ReadMap(value, kVpdKeys, setup.vpd);
}

void ReadRdp(const Value& value, PortReportSetup& setup) {
  if (IsThere(value, setup.rdp.no_answer)) ReadMap(value, kRdpKeys, setup.rdp);
}

void ReadFirmwareDump(const Value& value, PortReportSetup& setup) {
  if (IsThere(value, setup.dump.none)) ReadMap(value, kDumpKeys, setup.dump);
}

void ReadReportState(const Value& map, Entry& entry) {
  ReadMap(map, kStateKeys, entry);
}

StateNode ReportState(const Entry& entry) {
  StateNode node(StateNode::Kind::kMap);
  if (entry.reports.counters_reset) node["counters-reset"] = true;
  return node;
}

}  // namespace lab
