#include "host_file/config_keys.h"

#include "base/text.h"

namespace lab {
namespace {

constexpr std::size_t kReasonBytes = 64;

void ReadField(const ConfigField& row, const Value& value, HBAParamsInfo& into) {
  std::uint32_t& field = into.*row.field;
  if (row.kind == ConfigField::kNumber) {
    field = value.ChoiceOrNumber(row.names, UINT32_MAX);
  } else {
    field = value.Bool() == (row.kind == ConfigField::kFlag) ? 1 : 0;
  }
}

// Reads a map whose keys are the fields and `other_key`, which other(value) reads.
template <typename Other>
void ReadFields(const Value& map, std::span<const ConfigField> rows, const char* other_key,
                HBAParamsInfo& into, Other other) {
  map.EachKey([&](const Value& value) {
    if (value.Key() == other_key) return other(value);
    std::vector<std::string_view> names;
    for (const ConfigField& row : rows) {
      if (value.Key() == row.key) return ReadField(row, value, into);
      names.emplace_back(row.key);
    }
    names.emplace_back(other_key);
    value.UnknownKey(names);
  });
}

void ReadParameters(const Value& map, ConfigSetup& into) {
  ReadFields(map, ParameterFields(), "virtual-lane", into.nvram,
             [&](const Value& value) { into.nvram.enable_virtual_lane = value.Bool() ? 1 : 0; });
}

constexpr KeyRow<BootDrive> kDriveKeys[] = {
    {"wwpn", [](const Value& value, BootDrive& into) { value.Octets(into.port_name.octets); }},
    {"lun", [](const Value& value, BootDrive& into) { value.Into(into.lun); }},
};

void ReadDrives(const Value& list, HBAParamsInfo& into) {
  for (BootDrive HBAParamsInfo::*drive : kBootDrives) into.*drive = {};
  list.EachItemUpTo(std::size(kBootDrives), "drives", [&](const Value& item, std::size_t place) {
    ReadMap(item, kDriveKeys, into.*kBootDrives[place]);
  });
}

void ReadBoot(const Value& map, ConfigSetup& into) {
  ReadFields(map, BootFields(), "drives", into.nvram,
             [&](const Value& value) { ReadDrives(value, into.nvram); });
}

constexpr KeyRow<NVMeBootEntry> kNvmeKeys[] = {
    {"enabled", [](const Value& value, NVMeBootEntry& into) { into.enable = value.Bool() ? 1 : 0; }},
    {"wwpn", [](const Value& value, NVMeBootEntry& into) { value.Octets(into.port_name.octets); }},
    {"wwnn", [](const Value& value, NVMeBootEntry& into) { value.Octets(into.node_name.octets); }},
    {"nqn", [](const Value& value, NVMeBootEntry& into) { value.Into(into.nqn); }},
    {"controller", [](const Value& value, NVMeBootEntry& into) { value.Into(into.controller_id); }},
    {"namespace", [](const Value& value, NVMeBootEntry& into) { value.Into(into.namespace_id); }},
};

void ReadNvmeBoot(const Value& value, ConfigSetup& into) {
  into.nvme = {};
  into.nvme_present = !value.Is("none");
  if (!into.nvme_present) return;
  value.EachItemUpTo(std::size(into.nvme.entries), "entries", [&](const Value& item, std::size_t place) {
    ReadMap(item, kNvmeKeys, into.nvme.entries[place]);
  });
}

constexpr NamedNumber kStates[] = {{"offline", 0}, {"online", 1}};

constexpr KeyRow<CreditRecovery> kCreditKeys[] = {
    {"enabled", [](const Value& value, CreditRecovery& into) { into.status = value.Bool() ? 1 : 0; }},
    {"count", [](const Value& value,
                 CreditRecovery& into) { into.count = static_cast<std::uint8_t>(value.Number(0, 255)); }},
    {"state", [](const Value& value, CreditRecovery& into) { into.online = value.Choice(kStates) != 0; }},
    {"negotiated", [](const Value& value, CreditRecovery& into) { value.Into(into.negotiated.emplace()); }},
    {"reason", [](const Value& value, CreditRecovery& into) { into.reason = value.Text(kReasonBytes); }},
};

constexpr KeyRow<ErrorCorrection> kFecKeys[] = {
    {"enabled", [](const Value& value, ErrorCorrection& into) { into.setting = value.Bool() ? 1 : 0; }},
    {"correctable-errors", [](const Value& value, ErrorCorrection& into) { value.Into(into.correctable); }},
    {"uncorrectable-errors",
     [](const Value& value, ErrorCorrection& into) { value.Into(into.uncorrectable); }},
};

constexpr NamedNumber kBeacons[] = {{"off", 0}, {"on", 1}};

constexpr KeyRow<ConfigSetup> kKeys[] = {
    {"parameters", ReadParameters},
    {"boot", ReadBoot},
    {"nvme-boot", ReadNvmeBoot},
    {"credit-recovery",
     [](const Value& value, ConfigSetup& into) { ReadMap(value, kCreditKeys, into.credit_recovery); }},
    {"fec", [](const Value& value, ConfigSetup& into) { ReadMap(value, kFecKeys, into.fec); }},
    {"beacon", [](const Value& value, ConfigSetup& into) { value.CodeInto(kBeacons, into.beacon); }},
};

// Writes a number by its name, where it has one, and a flag as true or false.
void AddField(StateNode& node, const ConfigField& row, const HBAParamsInfo& nvram) {
  const std::uint32_t number = nvram.*row.field;
  if (row.kind != ConfigField::kNumber) {
    node[row.key] = (number != 0) == (row.kind == ConfigField::kFlag);
    return;
  }
  for (const NamedNumber& named : row.names) {
    if (named.number != number) continue;
    node[row.key] = std::string(named.name);
    return;
  }
  node[row.key] = number;
}

StateNode BootState(const HBAParamsInfo& nvram) {
  StateNode node;
  for (const ConfigField& row : BootFields()) AddField(node, row, nvram);
  for (BootDrive HBAParamsInfo::*place : kBootDrives) {
    const BootDrive& drive = nvram.*place;
    StateNode item;
    item["wwpn"] = OctetText(drive.port_name.octets);
    item["lun"] = unsigned{drive.lun};
    node["drives"].Add(std::move(item));
  }
  return node;
}

StateNode NvmeState(const NVMeBootRecord& record) {
  StateNode node;
  for (const NVMeBootEntry& entry : record.entries) {
    StateNode item;
    item["enabled"] = entry.enable != 0;
    item["wwpn"] = OctetText(entry.port_name.octets);
    item["wwnn"] = OctetText(entry.node_name.octets);
    item["nqn"] = std::string(entry.nqn.View());
    item["controller"] = unsigned{entry.controller_id};
    item["namespace"] = entry.namespace_id;
    node.Add(std::move(item));
  }
  return node;
}

}  // namespace

void ReadConfiguration(const Value& map, ConfigSetup& setup) {
  ReadMap(map, kKeys, setup);
}

StateNode ConfigurationState(const ConfigSetup& setup) {
  StateNode node;
  StateNode& parameters = node["parameters"];
  for (const ConfigField& row : ParameterFields()) AddField(parameters, row, setup.nvram);
  parameters["virtual-lane"] = setup.nvram.enable_virtual_lane != 0;
  node["boot"] = BootState(setup.nvram);
  if (setup.nvme_present) node["nvme-boot"] = NvmeState(setup.nvme);
  node["credit-recovery"]["enabled"] = setup.credit_recovery.status != 0;
  node["credit-recovery"]["count"] = unsigned{setup.credit_recovery.count};
  node["fec"]["enabled"] = setup.fec.setting != 0;
  node["fec"]["correctable-errors"] = setup.fec.correctable;
  node["fec"]["uncorrectable-errors"] = setup.fec.uncorrectable;
  node["beacon"] = setup.beacon;
  return node;
}

}  // namespace lab
