#include "state/state_file.h"

#include <sys/stat.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/file.h"
#include "host_file/yaml_value.h"
#include "state/adapter_state.h"

namespace lab {
namespace {

constexpr const char* kRebootRequired = "reboot-required";
constexpr const char* kAdapters = "adapters";
constexpr const char* kHead = "# State of the simulated host, written by the library.\n";

void ReadAdapterStates(const Value& map, Host& host) {
  map.EachKey([&](const Value& state) {
    for (Adapter& adapter : host.adapters) {
      if (adapter.state_key != state.Key()) continue;
      ReadAdapterState(state, adapter);
      RefreshPortVersions(adapter);
    }
  });
}

constexpr KeyRow<Host> kStateFileKeys[] = {
    {kRebootRequired, [](const Value& value, Host& into) { value.Into(into.reboot_required); }},
    {kAdapters, ReadAdapterStates},
};

// Reads the file as it is; one that is not there has no text. Returns an empty text, or the mistake.
std::string ReadText(const std::string& path, std::string& text) {
  const auto unreadable = [&path](const char* why) { return path + ": can't be read: " + why; };
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) return errno == ENOENT ? "" : unreadable(std::strerror(errno));
  if (!S_ISREG(info.st_mode)) return unreadable("not a regular file");
  if (ReadFile(path.c_str(), text) != FileResult::kRead) {
    return errno == ENOENT ? "" : unreadable(std::strerror(errno));
  }
  return text.size() > kLargestFile ? unreadable("larger than 16 MiB") : "";
}

// A copy of the value that can be changed.
YAML::Node NodeOf(const Value& value) {
  if (value.IsMap()) {
    YAML::Node map(YAML::NodeType::Map);
    value.EachKey([&map](const Value& item) { map.force_insert(item.Key(), NodeOf(item)); });
    return map;
  }
  if (value.IsList()) {
    YAML::Node list(YAML::NodeType::Sequence);
    value.EachItem([&list](const Value& item) { list.push_back(NodeOf(item)); });
    return list;
  }
  return value.IsText() ? YAML::Node(value.Text(kLargestFile)) : YAML::Node(YAML::NodeType::Null);
}

struct Document {
  YAML::Node reboot_required;
  YAML::Node adapters{YAML::NodeType::Map};
};

constexpr KeyRow<Document> kDocumentKeys[] = {
    {kRebootRequired,
     [](const Value& value, Document& into) { into.reboot_required = YAML::Node(value.Bool()); }},
    {kAdapters,
     [](const Value& value, Document& into) {
       value.EachKey([](const Value& adapter) {
         if (!adapter.IsMap()) adapter.Expected("a map");
       });
       into.adapters = NodeOf(value);
     }},
};

// Whether both would be written alike, their maps in the same order.
bool Same(const YAML::Node& one, const YAML::Node& other) {
  if (!one.IsDefined() || !other.IsDefined() || one.Type() != other.Type()) return false;
  if (one.IsScalar()) return one.Scalar() == other.Scalar();
  if (one.size() != other.size()) return false;
  const auto same_items = [](const auto& mine, const auto& its) {
    return mine.IsDefined() ? Same(mine, its) : Same(mine.first, its.first) && Same(mine.second, its.second);
  };
  return std::equal(one.begin(), one.end(), other.begin(), same_items);
}

// Items of a list that both sides have in full are settings of their own: boot drives, NVMe entries.
void MergeList(const YAML::Node& before, const YAML::Node& mine, YAML::Node now) {
  for (std::size_t item = 0; item < mine.size(); ++item) {
    if (!Same(before[item], mine[item])) now[item] = YAML::Clone(mine[item]);
  }
}

bool AreListsOfOneLength(const YAML::Node& one, const YAML::Node& other) {
  return one.IsDefined() && one.IsSequence() && other.IsDefined() && other.IsSequence() &&
         one.size() == other.size();
}

// Sets in the map `now` what differs between the maps `before` and `mine`, down to single settings. `place`
// names the map in mistakes, which `document` takes.
void Merge(const YAML::Node& before, const YAML::Node& mine, YAML::Node now, const std::string& place,
           const Value& document) {
  for (const auto& pair : mine) {
    const std::string key = pair.first.Scalar();
    const YAML::Node& value = pair.second;
    const YAML::Node old = before.IsMap() && before[key].IsDefined() ? before[key] : YAML::Node();
    if (Same(old, value)) continue;
    if (AreListsOfOneLength(old, value) && AreListsOfOneLength(value, now[key])) {
      MergeList(old, value, now[key]);
    } else if (!value.IsMap()) {
      now[key] = YAML::Clone(value);
    } else {
      if (!now[key].IsDefined()) now[key] = YAML::Node(YAML::NodeType::Map);
      if (!now[key].IsMap()) return document.Wrong(place + key + ": expected a map");
      Merge(old, value, now[key], place + key + ": ", document);
    }
  }
}

// The states of the adapters by their keys.
YAML::Node StatesOf(std::span<const Adapter> adapters) {
  YAML::Node states(YAML::NodeType::Map);
  for (const Adapter& adapter : adapters) states.force_insert(adapter.state_key, AdapterState(adapter));
  return states;
}

std::string TextOf(const Document& document) {
  YAML::Node node(YAML::NodeType::Map);
  node[kRebootRequired] = document.reboot_required;
  node[kAdapters] = document.adapters;
  return kHead + YAML::Dump(node) + '\n';
}

}  // namespace

std::string StateFile::Load(Host& host) {
  std::string text;
  std::string wrong = ReadText(path_, text);
  // An empty file is a fresh temporary one.
  if (wrong.empty() && !text.empty()) {
    wrong = ReadDocument(path_, text,
                         [&host](const Value& document) { ReadMap(document, kStateFileKeys, host); });
  }
  if (!wrong.empty()) return wrong;
  reboot_required_ = host.reboot_required;
  for (const Adapter& adapter : host.adapters) adapters_[adapter.state_key] = AdapterState(adapter);
  return {};
}

std::string StateFile::Lock(FileLock& lock) {
  const std::string wrong = lock.Take(FollowLinks(path_) + ".lock", patience_);
  return wrong.empty() ? "" : path_ + ": can't be written: " + wrong;
}

std::string StateFile::Save(const Host& host, const Adapter& adapter) {
  const YAML::Node states = StatesOf({&adapter, 1});  // ahead of the lock, which others may wait for
  FileLock lock;
  if (std::string wrong = Lock(lock); !wrong.empty()) return wrong;
  return SaveLocked(host, states);
}

std::string StateFile::Change(Host& host, const std::function<void(Host&)>& change) {
  FileLock lock;
  if (std::string wrong = Lock(lock); !wrong.empty()) return wrong;
  if (std::string wrong = Load(host); !wrong.empty()) return wrong;
  change(host);
  return SaveLocked(host, StatesOf(host.adapters));
}

std::string StateFile::SaveLocked(const Host& host, const YAML::Node& states) {
  std::string text;
  std::string wrong = ReadText(path_, text);
  if (!wrong.empty()) return wrong;
  Document document;
  document.reboot_required = YAML::Node(reboot_required_);
  wrong = ReadDocument(path_, text.empty() ? "{}" : text, [&](const Value& value) {
    ReadMap(value, kDocumentKeys, document);
    if (host.reboot_required != reboot_required_) document.reboot_required = host.reboot_required;
    YAML::Node before(YAML::NodeType::Map);
    for (const auto& state : states) before.force_insert(state.first, adapters_[state.first.Scalar()]);
    Merge(before, states, document.adapters, "adapters: ", value);
  });
  if (wrong.empty()) wrong = ReplaceFile(path_, TextOf(document));
  if (!wrong.empty()) return wrong;
  reboot_required_ = host.reboot_required;
  for (const auto& state : states) adapters_[state.first.Scalar()] = state.second;
  return {};
}

}  // namespace lab
