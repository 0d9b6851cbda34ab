#include "state/state_check.h"

#include <utility>

#include "base/text.h"
#include "device/host.h"
#include "device/sfp_module.h"
#include "state/adapter_state.h"

namespace lab {
namespace {

constexpr const char* kAdapters = "adapters";

// Gives the adapter a port of this name, with a module, so that all of the port's state is read.
void AddPort(const Value& state, Adapter& adapter) {
  Entry entry;
  if (!ReadOctets(state.Key(), entry.record.port_name.octets)) return state.WrongKey("the name of a port");
  entry.sfp = MakeSfpModule(DefaultSfpValues(*adapter.family, 0, 0));
  adapter.ports.emplace_back().entries.push_back(std::move(entry));
}

void CheckAdapter(const Value& state, StateContent& into) {
  if (!state.IsMap()) return state.Expected("a map");
  Adapter adapter = MakeAdapter(Families().front(), 0);
  ++into.adapters;
  state.At("ports", [&](const Value& ports) {
    if (!ports.IsMap()) return;  // reported below
    ports.EachKey([&](const Value& port) {
      if (adapter.ports.size() < port.GetLimits().host_ports) AddPort(port, adapter);
    });
  });
  into.ports += adapter.ports.size();
  ReadAdapterState(state, adapter);
}

constexpr KeyRow<StateContent> kKeys[] = {
    {"reboot-required", [](const Value& value, StateContent& into) { value.Into(into.reboot_required); }},
    {kAdapters,
     [](const Value& value, StateContent& into) {
       value.EachKey([&](const Value& adapter) { CheckAdapter(adapter, into); });
     }},
};

}  // namespace

bool IsState(const std::string& text) {
  bool is_state = false;
  ReadDocument("", text, [&](const Value& document) {
    document.At(kAdapters, [&](const Value& adapters) { is_state = adapters.IsMap(); });
  });
  return is_state;
}

std::string CheckState(const std::string& name, const std::string& text, StateContent& content) {
  return ReadDocument(name, text, [&](const Value& document) { ReadMap(document, kKeys, content); });
}

}  // namespace lab
