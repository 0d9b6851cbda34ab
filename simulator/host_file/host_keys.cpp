#include "host_file/host_keys.h"

#include <string_view>
#include <vector>

#include "base/call_table.h"
#include "device/family_table.h"
#include "host_file/adapter_keys.h"
#include "host_file/host_reading.h"
#include "host_file/port_keys.h"
#include "host_file/yaml_value.h"

namespace lab {
namespace {

constexpr NamedNumber kBootModes[] = {
    {"bios", kBootModeBios}, {"uefi", kBootModeUefi}, {"nvme", kBootModeNvme}};
constexpr NamedNumber kChatterWords[] = {{"false", static_cast<std::uint32_t>(Chatter::kOff)},
                                         {"true", static_cast<std::uint32_t>(Chatter::kAllCalls)},
                                         {"ports", static_cast<std::uint32_t>(Chatter::kPortCalls)}};

// The family of an adapter. After a mistake it is any family, so that the other keys are read all the same.
const Family& ReadFamily(const Value& map) {
  std::vector<std::string_view> names;
  std::string joined;
  for (const Family& family : Families()) {
    joined += (names.empty() ? "" : ", ") + std::string(family.name);
    names.emplace_back(family.name);
  }
  const Family* found = nullptr;
  bool there = false;
  map.At("family", [&](const Value& value) {
    there = true;
    found = FindFamily(value.Word());
    if (found == nullptr) value.Expected("one of " + joined, names);
  });
  if (!there) map.Missing("family");
  return found != nullptr ? *found : Families().front();
}

void ReadAdapter(const Value& map, HostReading& reading) {
  if (!map.IsMap()) return map.Expected("a map");
  const std::size_t index = reading.host.adapters.size();
  Adapter& adapter = reading.host.adapters.emplace_back(MakeAdapter(ReadFamily(map), index));
  ReadAdapterKeys(map, adapter);
  map.At("ports", [&](const Value& ports) {
    adapter.has_list = true;
    ports.EachItemUpTo(ports.GetLimits().ports, "ports",
                       [&](const Value& item, std::size_t) { ReadPort(item, adapter, index, reading); });
  });
}

struct FaultReading {
  std::string call;
  std::string result;
  bool once = false;
};

constexpr KeyRow<FaultReading> kFaultKeys[] = {
    {"call", [](const Value& value, FaultReading& into) { into.call = value.Text(256); }},
    {"result",
     [](const Value& value, FaultReading& into) { into.result = value.IsNull() ? "null" : value.Text(256); }},
    {"once", [](const Value& value, FaultReading& into) { value.Into(into.once); }},
};

void ReadFault(const Value& map, FaultQueue& faults) {
  FaultReading fault;
  ReadMap(map, kFaultKeys, fault);
  if (!map.IsMap()) return;
  if (fault.call.empty()) map.Missing("call");
  if (fault.result.empty()) map.Missing("result");
  if (fault.call.empty() || fault.result.empty()) return;
  const std::string wrong = faults.Add(fault.call, fault.result, fault.once);
  const Value part = map.AtOrHere(FindCall(fault.call) != nullptr ? "result" : "call");
  if (!wrong.empty()) part.Wrong(part.Key() + ": " + wrong);
}

constexpr KeyRow<HostReading> kHostKeys[] = {
    {"adapters",
     [](const Value& value, HostReading& into) {
       value.EachItemUpTo(value.GetLimits().adapters, "adapters",
                          [&](const Value& item, std::size_t) { ReadAdapter(item, into); });
     }},
    {"no-list", [](const Value& value, HostReading& into) { value.Into(into.host.no_list); }},
    {"reboot-required", [](const Value& value, HostReading& into) { value.Into(into.host.reboot_required); }},
    {"boot-mode",
     [](const Value& value, HostReading& into) { value.CodeInto(kBootModes, into.host.boot_mode); }},
    {"chatter",
     [](const Value& value, HostReading& into) {
       into.host.chatter = static_cast<Chatter>(value.Choice(kChatterWords));
     }},
    {"faults",
     [](const Value& value, HostReading& into) {
       value.EachItemUpTo(value.GetLimits().faults, "faults",
                          [&](const Value& item, std::size_t) { ReadFault(item, into.host.faults); });
     }},
};

}  // namespace

std::string ReadHost(const std::string& name, const std::string& text, Host& host, const Limits& limits) {
  const auto read = [&host](const Value& document) {
    HostReading reading{host, {}};
    ReadMap(document, kHostKeys, reading);
  };
  return ReadDocument(name, text, read, limits);
}

}  // namespace lab
