#include "host_file/host_keys.h"

#include <set>

#include "host_file/adapter_keys.h"
#include "host_file/port_keys.h"
#include "host_file/yaml_value.h"

namespace lab {
namespace {

constexpr NamedNumber kBootModes[] = {
    {"bios", kBootModeBios}, {"uefi", kBootModeUefi}, {"nvme", kBootModeNvme}};
constexpr NamedNumber kChatterWords[] = {{"false", static_cast<std::uint32_t>(Chatter::kOff)},
                                         {"true", static_cast<std::uint32_t>(Chatter::kAllCalls)},
                                         {"ports", static_cast<std::uint32_t>(Chatter::kPortCalls)}};

// A host while it is read.
struct HostReading {
  Host& host;
  std::set<std::string> port_names;
};

void ReadAdapter(const Value& map, HostReading& reading) {
  const Family* family = nullptr;
  map.At("family", [&](const Value& value) {
    family = FindFamily(value.Text(64));
    if (!family) value.Expected("one of " + std::string(FamilyNames()));
  });
  if (!family) map.Missing("family");

  const std::size_t index = reading.host.adapters.size();
  Adapter& adapter = reading.host.adapters.emplace_back(MakeAdapter(*family, index));
  ReadAdapterKeys(map, adapter);
  map.At("ports", [&](const Value& ports) {
    adapter.has_list = true;
    ports.EachItem([&](const Value& item) { ReadPort(item, adapter, index, reading.port_names); });
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
  if (fault.call.empty()) map.Missing("call");
  if (fault.result.empty()) map.Missing("result");
  if (const std::string wrong = faults.Add(fault.call, fault.result, fault.once); !wrong.empty())
    map.Wrong(wrong);
}

constexpr KeyRow<HostReading> kHostKeys[] = {
    {"adapters",
     [](const Value& value, HostReading& into) {
       value.EachItem([&](const Value& item) { ReadAdapter(item, into); });
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
       value.EachItem([&](const Value& item) { ReadFault(item, into.host.faults); });
     }},
};

}  // namespace

std::string ReadHost(const std::string& name, const std::string& text, Host& host) {
  return ReadDocument(name, text, [&host](const Value& document) {
    HostReading reading{host, {}};
    ReadMap(document, kHostKeys, reading);
  });
}

}  // namespace lab
