#include "tools/lab/diff/hosts.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tools/lab/diff/answers.h"
#include "tools/lab/diff/fields.h"
#include "tools/lab/diff/matching.h"
#include "tools/lab/diff/record_fields.h"
#include "tools/lab/view/text.h"
#include "tools/lab/view/words.h"

namespace diff {
namespace {

using recording::AdapterRecording;
using recording::HostRecording;
using recording::PhyPortRecording;
using recording::ProtocolRecording;
using recording::TargetRecording;

// LUNs.

// A library may fill in both sizes and both lengths of a LUN, that of an FCP target and that of a namespace.
// What changed in both is said once.
LunEntry WithoutDoubles(LunEntry lun, const LunEntry& before, const LunEntry& after) {
  const auto same_sizes = [](const LunEntry& one) {
    return one.fcp_size_mb.Value() == one.nvme_size_mb.Value();
  };
  const auto same_lengths = [](const LunEntry& one) {
    return one.fcp_unique_id_length == one.nvme_unique_id_length;
  };
  if (same_sizes(before) && same_sizes(after)) lun.nvme_size_mb = {};
  if (same_lengths(before) && same_lengths(after)) lun.nvme_unique_id_length = 0;
  return lun;
}

void CompareLun(Report& report, const LunEntry& before, const LunEntry& after) {
  CompareRecords(report, "the LUN's record", LunFields(), WithoutDoubles(before, before, after),
                 WithoutDoubles(after, before, after));
}

void CompareLuns(Report& report, const TargetRecording& before, const TargetRecording& after) {
  const bool is_nvme = IsNvmeTarget(after.record);
  const std::vector<Match> matches =
      MatchByKey(before.luns, after.luns, [](const LunEntry& lun) { return lun.number; });
  for (const Match& match : matches) {
    report.At().lun = match.before ? before.luns[*match.before].number : after.luns[*match.after].number;
    const char* const kind = is_nvme ? "Namespace" : "LUN";
    if (!match.after) {
      report.Add(kind, "there", std::nullopt, "gone.");
    } else if (!match.before) {
      report.Add(kind, std::nullopt, "there", "new.");
    } else {
      CompareLun(report, before.luns[*match.before], after.luns[*match.after]);
    }
  }
  report.At().lun.reset();
  if (IsReordered(matches)) {
    report.Add("LUNs", std::nullopt, std::nullopt, "The LUNs are listed in another order.");
  }
}

// Targets.

std::string TargetSummary(const TargetRecording& target) {
  return std::string(view::TargetStateText(target.record)) + ", " +
         view::Counted(target.luns.size(), IsNvmeTarget(target.record) ? "namespace" : "LUN");
}

// A count that only counts what is listed says nothing by itself.
template <class Record>
Record WithoutCount(const Record& record, std::uint32_t Record::*count, std::size_t listed) {
  Record counted = record;
  if (counted.*count == listed) counted.*count = 0;
  return counted;
}

template <class Record>
void CompareCounted(Report& report, const char* name, std::span<const Field> fields, const Record& before,
                    std::size_t listed_before, const Record& after, std::size_t listed_after,
                    std::uint32_t Record::*count) {
  const bool counts_listed = before.*count == listed_before && after.*count == listed_after;
  const auto own = [&](const Record& record, std::size_t listed) {
    return counts_listed ? WithoutCount(record, count, listed) : record;
  };
  CompareRecords(report, name, fields, own(before, listed_before), own(after, listed_after));
}

void CompareTargets(Report& report, const std::vector<TargetRecording>& before,
                    const std::vector<TargetRecording>& after) {
  const std::vector<Match> matches =
      MatchByKey(before, after, [](const TargetRecording& target) { return target.record.port_name.Text(); });
  for (const Match& match : matches) {
    const TargetRecording& any = match.before ? before[*match.before] : after[*match.after];
    report.At().target = any.record.port_name.Text();
    if (!match.after) {
      report.Add("Target", TargetSummary(any), std::nullopt,
                 "The target is gone. It was " + TargetSummary(any) + ".");
    } else if (!match.before) {
      report.Add("Target", std::nullopt, TargetSummary(any),
                 "The target is new: " + TargetSummary(any) + ".");
    } else {
      const TargetRecording& now = after[*match.after];
      CompareCounted(report, "the target's record", TargetFields(), any.record, any.luns.size(), now.record,
                     now.luns.size(), &TargetEntry::lun_count);
      CompareTargetAnswers(report, any, now);
      CompareLuns(report, any, now);
    }
  }
  report.At().target.clear();
  if (IsReordered(matches)) {
    report.Add("Targets", std::nullopt, std::nullopt, "The targets are listed in another order.");
  }
}

// Ports.

// A protocol with the physical port that it is on. A port without protocols is one item too.
struct PortItem {
  const PhyPortRecording* physical;
  const ProtocolRecording* protocol;  // null: none
};

std::vector<PortItem> PortsOf(const AdapterRecording& adapter) {
  std::vector<PortItem> items;
  for (const PhyPortRecording& port : adapter.ports) {
    for (const ProtocolRecording& protocol : port.protocols) items.push_back({&port, &protocol});
    if (port.protocols.empty()) items.push_back({&port, nullptr});
  }
  return items;
}

bool IsVirtual(const PortItem& port) {
  return port.protocol != nullptr && IsVirtualPort(port.protocol->record);
}

std::string PortName(const PortItem& port) {
  const bool named = port.protocol != nullptr && !port.protocol->record.port_name.IsZero();
  return named ? port.protocol->record.port_name.Text()
               : "port " + std::to_string(port.physical->record.number);
}

std::string PortTitle(const PortItem& port) {
  const std::string number = std::to_string(port.physical->record.number);
  const std::string name = PortName(port);
  if (IsVirtual(port)) return "Virtual port " + name + " of port " + number;
  return "Port " + number + (name.starts_with("port") ? "" : ", " + name);
}

std::string PortSummary(const PortItem& port) {
  if (port.protocol == nullptr) return "without protocols";
  const FCProtocolEntry& fc = port.protocol->record;
  return "link " + view::WordOf(view::kLinkStates, static_cast<std::uint32_t>(fc.port_state)) + ", " +
         view::SpeedText(fc.port_speed);
}

// By port name first; what is left by port number and kind, so that a port with a new name is still the port.
std::vector<Match> MatchPorts(const std::vector<PortItem>& before, const std::vector<PortItem>& after) {
  const auto name_of = [](const PortItem& port) { return PortName(port); };
  std::vector<Match> matches = MatchByKey(before, after, name_of);
  std::vector<PortItem> left_before;
  std::vector<PortItem> left_after;
  std::vector<std::size_t> places_before;
  std::vector<std::size_t> places_after;
  for (const Match& match : matches) {
    if (!match.after) {
      left_before.push_back(before[*match.before]);
      places_before.push_back(*match.before);
    } else if (!match.before) {
      left_after.push_back(after[*match.after]);
      places_after.push_back(*match.after);
    }
  }
  std::erase_if(matches, [](const Match& match) { return !match.before || !match.after; });
  const auto number_of = [](const PortItem& port) {
    return std::tuple(port.physical->record.number, IsVirtual(port));
  };
  for (Match match : MatchByKey(left_before, left_after, number_of)) {
    if (match.before) match.before = places_before[*match.before];
    if (match.after) match.after = places_after[*match.after];
    matches.push_back(match);
  }
  return matches;
}

void ComparePhysical(Report& report, const PhyPortRecording& before, const PhyPortRecording& after) {
  CompareRecords(report, "the physical port's record", PhyPortFields(), before.record, after.record);
  const bool same_list = std::memcmp(&before.protocol_list, &after.protocol_list, sizeof(ProtocolList)) == 0;
  if (before.has_protocols != after.has_protocols || !same_list) {
    report.AddOtherBytes("the port's protocol list");
  }
}

void ComparePort(Report& report, const PortItem& before, const PortItem& after) {
  if (before.protocol == nullptr && after.protocol == nullptr) return;
  if (before.protocol == nullptr || after.protocol == nullptr) {
    const bool gone = after.protocol == nullptr;
    return report.Add("Protocols", PortSummary(before), PortSummary(after),
                      gone ? "The port has no protocols any more." : "The port has protocols now.");
  }
  CompareCounted(report, "the port's record", PortFields(), before.protocol->record,
                 before.protocol->targets.size(), after.protocol->record, after.protocol->targets.size(),
                 &FCProtocolEntry::target_count);
  ComparePortAnswers(report, *before.protocol, *after.protocol);
  CompareTargets(report, before.protocol->targets, after.protocol->targets);
}

void ComparePorts(Report& report, const AdapterRecording& adapter_before,
                  const AdapterRecording& adapter_after) {
  const std::vector<PortItem> before = PortsOf(adapter_before);
  const std::vector<PortItem> after = PortsOf(adapter_after);
  std::vector<Match> matches = MatchPorts(before, after);
  const auto place_of = [&](const Match& match) {
    const PortItem& port = match.before ? before[*match.before] : after[*match.after];
    return std::tuple(port.physical->record.number, IsVirtual(port), PortName(port));
  };
  std::stable_sort(matches.begin(), matches.end(),
                   [&](const Match& one, const Match& other) { return place_of(one) < place_of(other); });
  std::set<std::pair<const PhyPortRecording*, const PhyPortRecording*>> physical_done;
  for (const Match& match : matches) {
    const PortItem& any = match.before ? before[*match.before] : after[*match.after];
    report.At().port = PortName(any);
    report.At().port_title = PortTitle(any);
    if (!match.after) {
      report.Add("Port", PortSummary(any), std::nullopt,
                 "The port is gone. It was " + PortSummary(any) + ".");
    } else if (!match.before) {
      report.Add("Port", std::nullopt, PortSummary(any), "The port is new: " + PortSummary(any) + ".");
    } else {
      const PortItem& now = after[*match.after];
      if (physical_done.insert({any.physical, now.physical}).second) {
        ComparePhysical(report, *any.physical, *now.physical);
      }
      ComparePort(report, any, now);
    }
  }
  report.At().port.clear();
  report.At().port_title.clear();
  if (IsReordered(matches)) {
    report.Add("Ports", std::nullopt, std::nullopt, "The ports are listed in another order.");
  }
}

// Adapters.

std::string AdapterName(const AdapterRecording& adapter) {
  const std::string parts[] = {view::CleanText(adapter.record.model.View()),
                               view::CleanText(adapter.record.serial_number.View())};
  const std::string name = view::Joined(parts, " ");
  return name.empty() ? "without a name" : name;
}

void CompareAdapter(Report& report, const AdapterRecording& before, const AdapterRecording& after) {
  CompareRecords(report, "the adapter's record", AdapterFields(), before.record, after.record);
  const bool same_list = std::memcmp(&before.port_list, &after.port_list, sizeof(PortList)) == 0;
  if (before.has_ports != after.has_ports) {
    report.AddValue("Port list", before.has_ports ? "there" : "none", after.has_ports ? "there" : "none");
  } else if (!same_list) {
    report.AddOtherBytes("the adapter's port list");
  }
  ComparePorts(report, before, after);
}

void CompareAdapters(Report& report, const std::vector<AdapterRecording>& before,
                     const std::vector<AdapterRecording>& after) {
  const auto key_of = [](const AdapterRecording& adapter) {
    return std::pair(adapter.record.model.View(), adapter.record.serial_number.View());
  };
  const std::vector<Match> matches = MatchByKey(before, after, key_of);
  std::map<std::string, int> times;
  for (const Match& match : matches) {
    const AdapterRecording& any = match.before ? before[*match.before] : after[*match.after];
    std::string name = AdapterName(any);
    if (const int time = ++times[name]; time > 1) name += " #" + std::to_string(time);
    report.At().adapter = name;
    const std::string ports = view::Counted(any.ports.size(), "port");
    if (!match.after) {
      report.Add("Adapter", ports, std::nullopt, "The adapter is gone. It had " + ports + ".");
    } else if (!match.before) {
      report.Add("Adapter", std::nullopt, ports, "The adapter is new: it has " + ports + ".");
    } else {
      CompareAdapter(report, any, after[*match.after]);
    }
  }
  report.At().adapter.clear();
  if (IsReordered(matches)) {
    report.Add("Adapters", std::nullopt, std::nullopt, "The adapters are listed in another order.");
  }
}

}  // namespace

Report CompareHosts(const HostRecording& before, const HostRecording& after) {
  Report report;
  if (before.has_list != after.has_list) {
    report.AddValue("Adapter list", before.has_list ? "there" : "none", after.has_list ? "there" : "none");
  }
  CompareCounted(report, "the adapter list", AdapterListFields(), before.list, before.adapters.size(),
                 after.list, after.adapters.size(), &AdapterList::count);
  CompareHostAnswers(report, before, after);
  CompareAdapters(report, before.adapters, after.adapters);
  return report;
}

}  // namespace diff
