#include "state/state_file.h"

#include <sys/stat.h>

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
StateNode NodeOf(const Value& value) {
  if (value.IsMap()) {
    StateNode map(StateNode::Kind::kMap);
    value.EachKey([&map](const Value& item) { map.AddNew(item.Key(), NodeOf(item)); });
    return map;
  }
  if (value.IsList()) {
    StateNode list(StateNode::Kind::kList);
    value.EachItem([&list](const Value& item) { list.Add(NodeOf(item)); });
    return list;
  }
  return value.IsText() ? StateNode(value.Text(kLargestFile)) : StateNode();
}

struct Document {
  bool reboot_required = false;
  StateNode adapters{StateNode::Kind::kMap};
};

constexpr KeyRow<Document> kDocumentKeys[] = {
    {kRebootRequired, [](const Value& value, Document& into) { into.reboot_required = value.Bool(); }},
    {kAdapters,
     [](const Value& value, Document& into) {
       value.EachKey([](const Value& adapter) {
         if (!adapter.IsMap()) adapter.Expected("a map");
       });
       into.adapters = NodeOf(value);
     }},
};

// Items of a list that both sides have in full are settings of their own: boot drives, NVMe entries.
void MergeList(const StateNode& before, const StateNode& mine, StateNode& now) {
  for (std::size_t i = 0; i < mine.Items().size(); ++i) {
    if (before.Items()[i] != mine.Items()[i]) now.Item(i) = mine.Items()[i];
  }
}

// The other one may be null.
bool AreListsOfOneLength(const StateNode& one, const StateNode* other) {
  return one.IsList() && other != nullptr && other->IsList() && one.Items().size() == other->Items().size();
}

// Sets in the map `now` what differs between the maps `before` and `mine`, down to single settings. `place`
// names the map in mistakes, which `document` takes.
void Merge(const StateNode& before, const StateNode& mine, StateNode& now, const std::string& place,
           const Value& document) {
  const StateNode nothing;
  for (std::size_t i = 0; i < mine.Items().size(); ++i) {
    const std::string& key = mine.Keys()[i];
    const StateNode& value = mine.Items()[i];
    const StateNode* const found = before.Find(key);
    const StateNode& old = found != nullptr ? *found : nothing;
    if (old == value) continue;
    if (AreListsOfOneLength(old, &value) && AreListsOfOneLength(value, now.Find(key))) {
      MergeList(old, value, now[key]);
    } else if (!value.IsMap()) {
      now[key] = value;
    } else {
      if (now.Find(key) == nullptr) now[key] = StateNode(StateNode::Kind::kMap);
      if (!now[key].IsMap()) return document.Wrong(place + key + ": expected a map");
      Merge(old, value, now[key], place + key + ": ", document);
    }
  }
}

// The states of the adapters by their keys.
StateNode StatesOf(std::span<const Adapter> adapters) {
  StateNode states(StateNode::Kind::kMap);
  for (const Adapter& adapter : adapters) states[adapter.state_key] = AdapterState(adapter);
  return states;
}

std::string TextOf(Document& document) {
  StateNode node;
  node[kRebootRequired] = document.reboot_required;
  node[kAdapters] = std::move(document.adapters);
  return kHead + YamlOf(node) + '\n';
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
  StateNode states = StatesOf({&adapter, 1});  // ahead of the lock, which others may wait for
  FileLock lock;
  if (std::string wrong = Lock(lock); !wrong.empty()) return wrong;
  return SaveLocked(host, std::move(states));
}

std::string StateFile::Change(Host& host, const std::function<void(Host&)>& change) {
  FileLock lock;
  if (std::string wrong = Lock(lock); !wrong.empty()) return wrong;
  if (std::string wrong = Load(host); !wrong.empty()) return wrong;
  change(host);
  return SaveLocked(host, StatesOf(host.adapters));
}

std::string StateFile::SaveLocked(const Host& host, StateNode states) {
  std::string text;
  std::string wrong = ReadText(path_, text);
  if (!wrong.empty()) return wrong;
  Document document;
  document.reboot_required = reboot_required_;
  wrong = ReadDocument(path_, text.empty() ? "{}" : text, [&](const Value& value) {
    ReadMap(value, kDocumentKeys, document);
    if (host.reboot_required != reboot_required_) document.reboot_required = host.reboot_required;
    Merge(adapters_, states, document.adapters, "adapters: ", value);
  });
  if (wrong.empty()) wrong = ReplaceFile(path_, TextOf(document));
  if (!wrong.empty()) return wrong;
  reboot_required_ = host.reboot_required;
  for (std::size_t i = 0; i < states.Items().size(); ++i) {
    adapters_[states.Keys()[i]] = std::move(states.Item(i));
  }
  return {};
}

}  // namespace lab
