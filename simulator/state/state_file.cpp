#include "state/state_file.h"

#include <cerrno>
#include <cstring>

#include "base/file.h"
#include "state/adapter_state.h"

namespace lab {
namespace {

void ReadAdapterStates(const Value& map, Host& host) {
  map.EachKey([&](const Value& state) {
    for (Adapter& adapter : host.adapters) {
      if (adapter.state_key != state.Key()) continue;
      ReadAdapterState(state, adapter);
      adapter.changed = true;
      RefreshPortVersions(adapter);
    }
  });
}

constexpr KeyRow<Host> kStateFileKeys[] = {
    {"reboot-required", [](const Value& value, Host& into) { value.Into(into.reboot_required); }},
    {"adapters", ReadAdapterStates},
};

// The document in the file now: what other runs wrote about other adapters is kept.
YAML::Node CurrentDocument(const std::string& path) {
  std::string text;
  if (ReadFile(path.c_str(), text) != FileResult::kRead) return {};
  try {
    YAML::Node document = YAML::Load(text);
    return document.IsMap() ? document : YAML::Node();
  } catch (const YAML::Exception&) {
    return {};
  }
}

}  // namespace

std::string LoadState(const std::string& path, Host& host) {
  std::string text;
  if (ReadFile(path.c_str(), text) != FileResult::kRead) {
    return errno == ENOENT ? "" : path + ": can't be read: " + std::strerror(errno);
  }
  if (text.empty()) return {};  // a fresh temporary file
  return ReadDocument(path, text,
                      [&host](const Value& document) { ReadMap(document, kStateFileKeys, host); });
}

std::string SaveState(const std::string& path, const Host& host) {
  YAML::Node document = CurrentDocument(path);
  document["reboot-required"] = host.reboot_required;
  YAML::Node adapters = document["adapters"];
  for (const Adapter& adapter : host.adapters) {
    if (adapter.changed) adapters[adapter.state_key] = AdapterState(adapter);
  }
  return ReplaceFile(
      path, "# State of the simulated host, written by the library.\n" + YAML::Dump(document) + '\n');
}

}  // namespace lab
