#include "state/adapter_state.h"

#include <cstdio>
#include <vector>

#include "base/text.h"
#include "host_file/adapter_keys.h"
#include "host_file/config_keys.h"
#include "host_file/congestion_keys.h"
#include "host_file/diag_keys.h"
#include "host_file/report_keys.h"
#include "host_file/sfp_keys.h"
#include "host_file/target_keys.h"
#include "state/running_state.h"

namespace lab {
namespace {

std::string NameOf(const Entry& entry) {
  return OctetText(entry.record.port_name.octets);
}

constexpr KeyRow<Entry> kPortStateKeys[] = {
    {"diagnostics", [](const Value& value, Entry& into) { ReadDiagnostics(value, into.diag); }},
    {"configuration", [](const Value& value, Entry& into) { ReadConfiguration(value, into.config); }},
    {"congestion", ReadCongestionState},
    {"reports", ReadReportState},
    {"sfp", [](const Value& value, Entry& into) { ReadSfpState(value, into.sfp.get()); }},
    {"running", ReadRunning},
    {"target-speeds", [](const Value& value, Entry& into) { ReadTargetSpeeds(value, into.targets); }},
};

StateNode PortState(const Entry& entry) {
  StateNode node;
  node["diagnostics"] = DiagnosticsState(entry.diag);
  node["configuration"] = ConfigurationState(entry.config);
  node["congestion"] = CongestionState(entry.congestion);
  if (StateNode reports = ReportState(entry); !reports.Items().empty()) node["reports"] = std::move(reports);
  node["running"] = RunningState(entry);
  if (StateNode speeds = TargetSpeeds(entry.targets); !speeds.Items().empty())
    node["target-speeds"] = std::move(speeds);
  return node;
}

void ReadPortStates(const Value& map, Adapter& adapter) {
  map.EachKey([&](const Value& state) {
    for (Port& port : adapter.ports) {
      for (Entry& entry : port.entries) {
        if (NameOf(entry) != state.Key()) continue;
        ReadMap(state, kPortStateKeys, entry);
      }
    }
  });
}

void ReadRestarted(const Value& value, Adapter& adapter) {
  if (value.Bool()) Restart(adapter);
}

// The module that virtual ports share with their port is the port's alone here.
StateNode PortStates(const Adapter& adapter) {
  StateNode node(StateNode::Kind::kMap);
  for (const Port& port : adapter.ports) {
    for (const Entry& entry : port.entries) {
      StateNode state = PortState(entry);
      if (&entry == &port.entries.front() && entry.sfp) state["sfp"] = SfpState(*entry.sfp);
      node[NameOf(entry)] = std::move(state);
    }
  }
  return node;
}

// An emptied field reads back as "", and an emptied version as "none".
std::string Shown(ComponentVersion version) {
  return version.AllZero() ? "none" : VersionText(version);
}

std::string Characters(const char* field, std::size_t size) {
  return std::string(field, strnlen(field, size));
}

StateNode MemoNode(const FlashMemoBlock& memo) {
  StateNode node;
  node["signature"] = Characters(memo.signature, sizeof memo.signature);
  node["family-firmware"] = Shown(memo.family_firmware);
  node["mbi-version"] = Shown(memo.mbi_version);
  const std::string date = Characters(memo.mbi_build_date, sizeof memo.mbi_build_date);
  if (date.size() == 8)
    node["build-date"] = date.substr(0, 4) + '-' + date.substr(4, 2) + '-' + date.substr(6);
  node["tool-id"] = Characters(memo.tool_id, sizeof memo.tool_id);
  char version[16];
  std::snprintf(version, sizeof version, "%u.%u.%u.%u", memo.tool_version[0], memo.tool_version[1],
                memo.tool_version[2], memo.tool_version[3]);
  node["tool-version"] = std::string(version);
  if (memo.update_month > 0) node["updated"] = TimeText(memo);
  return node;
}

}  // namespace

void ReadAdapterState(const Value& map, Adapter& adapter) {
  std::vector<KeyRow<Adapter>> keys(ChangeableAdapterKeys().begin(), ChangeableAdapterKeys().end());
  keys.push_back({"restarted", ReadRestarted});
  keys.push_back({"ports", ReadPortStates});
  ReadMap<Adapter>(map, keys, adapter);
}

StateNode AdapterState(const Adapter& adapter) {
  StateNode node;
  node["personality"] = unsigned{adapter.personality};
  StateNode& versions = node["versions"];
  versions["multiboot"] = std::string(adapter.record.multiboot_version.View());
  versions["firmware"] = std::string(adapter.record.flash_firmware_version.View());
  versions["bios"] = std::string(adapter.record.flash_bios_version.View());
  versions["efi"] = std::string(adapter.record.flash_efi_version.View());
  versions["fcode"] = std::string(adapter.record.flash_fcode_version.View());
  StateNode& flash = node["flash"];
  for (const FlashComponent& component : kFlashComponents) {
    flash[component.name] = Shown(adapter.flash.*component.field);
  }
  if (adapter.family->memo_block) node["memo-block"] = MemoNode(adapter.memo);
  if (adapter.restarted) node["restarted"] = true;
  node["ports"] = PortStates(adapter);
  return node;
}

}  // namespace lab
