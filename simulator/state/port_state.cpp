#include "state/port_state.h"

#include "base/text.h"
#include "host_file/config_keys.h"
#include "host_file/congestion_keys.h"
#include "host_file/diag_keys.h"
#include "host_file/report_keys.h"
#include "host_file/sfp_keys.h"
#include "host_file/target_keys.h"

namespace lab {
namespace {

std::string NameOf(const Entry& entry) {
  return OctetText(entry.record.port_name.octets);
}

constexpr KeyRow<Entry> kPortStateKeys[] = {
    {"diagnostics", [](const Value& value, Entry& into) { ReadDiagnostics(value, into.diag); }},
    {"configuration",
     [](const Value& value, Entry& into) {
       ReadConfiguration(value, into.config);
       into.config.changed = true;
     }},
    {"congestion", ReadCongestionState},
    {"reports", ReadReportState},
    {"sfp", [](const Value& value, Entry& into) { ReadSfpState(value, into.sfp.get()); }},
    {"target-speeds", [](const Value& value, Entry& into) { ReadTargetSpeeds(value, into.targets); }},
};

YAML::Node PortState(const Entry& entry) {
  YAML::Node node;
  node["diagnostics"] = DiagnosticsState(entry.diag);
  if (entry.config.changed) node["configuration"] = ConfigurationState(entry.config);
  if (entry.congestion.changed) node["congestion"] = CongestionState(entry.congestion);
  if (const YAML::Node reports = ReportState(entry); reports.size() > 0) node["reports"] = reports;
  if (entry.sfp) {
    if (const YAML::Node module = SfpState(*entry.sfp); module.size() > 0) node["sfp"] = module;
  }
  if (const YAML::Node speeds = TargetSpeeds(entry.targets); speeds.size() > 0)
    node["target-speeds"] = speeds;
  return node;
}

}  // namespace

void ReadPortStates(const Value& map, Adapter& adapter) {
  map.EachKey([&](const Value& state) {
    for (Port& port : adapter.ports) {
      for (Entry& entry : port.entries) {
        if (NameOf(entry) != state.Key()) continue;
        ReadMap(state, kPortStateKeys, entry);
        entry.changed = true;
      }
    }
  });
}

YAML::Node PortStates(const Adapter& adapter) {
  YAML::Node node(YAML::NodeType::Map);
  for (const Port& port : adapter.ports) {
    for (const Entry& entry : port.entries) {
      if (entry.changed) node[NameOf(entry)] = PortState(entry);
    }
  }
  return node;
}

}  // namespace lab
