#include "recorded/recorded_file.h"

#include <algorithm>
#include <concepts>
#include <cstdint>

#include "base/file.h"
#include "host_file/yaml_value.h"
#include "recording/byte_text.h"
#include "recording/recording_text.h"

namespace lab {
namespace {

using recording::Answer;
using recording::Asked;
using recording::ProtocolRecording;
using recording::Room;
using recording::TargetRecording;

template <class Record>
std::span<std::uint8_t> BytesOf(Record& record) {
  return {reinterpret_cast<std::uint8_t*>(&record), sizeof record};
}

// The mistake of a text of bytes, on whose line `line` it is, from 0.
void WrongBytes(const Value& value, const char* what, std::size_t line) {
  value.Wrong(value.Key() + ": " + what + ", in line " + std::to_string(line + 1) + " of its text");
}

void ReadBytesInto(const Value& value, std::span<std::uint8_t> bytes) {
  if (value.Is("zeros")) return;
  if (!value.IsText()) return value.Expected("bytes or the word zeros");
  std::size_t line = 0;
  const char* const what = recording::ReadBytes(value.Text(kLargestFile), bytes, line);
  if (what != nullptr) WrongBytes(value, what, line);
}

template <class Record>
void ReadRecord(const Value& value, Record& record) {
  ReadBytesInto(value, BytesOf(record));
}

// No address comes from a file: each of these records has its own ones set when the host is linked.
void ReadRecord(const Value& value, AdapterList& record) {
  ReadBytesInto(value, BytesOf(record));
  record.first = nullptr;
}
void ReadRecord(const Value& value, AdapterEntry& record) {
  ReadBytesInto(value, BytesOf(record));
  record.ports = nullptr;
  record.next = nullptr;
}
void ReadRecord(const Value& value, PortList& record) {
  ReadBytesInto(value, BytesOf(record));
  record.first = nullptr;
}
void ReadRecord(const Value& value, PhyPortEntry& record) {
  ReadBytesInto(value, BytesOf(record));
  record.protocols = nullptr;
  record.next = nullptr;
}
void ReadRecord(const Value& value, ProtocolList& record) {
  ReadBytesInto(value, BytesOf(record));
  record.first = nullptr;
}
void ReadRecord(const Value& value, FCProtocolEntry& record) {
  ReadBytesInto(value, BytesOf(record));
  record.first_target = nullptr;
  record.next = nullptr;
}
void ReadRecord(const Value& value, TargetEntry& record) {
  ReadBytesInto(value, BytesOf(record));
  record.first_lun = nullptr;
  record.next = nullptr;
}
void ReadRecord(const Value& value, SCMRStatisticsEntry& record) {
  ReadBytesInto(value, BytesOf(record));
  record.next = nullptr;
}

// A key of a map with its value, and the names that it has been compared to.
struct Key {
  const Value& value;
  std::vector<std::string_view>& known;

  bool Is(const char* name) const {
    known.emplace_back(name);
    return value.Key() == name;
  }
};

// Calls read(Key) for every key of the map, which says whether it knows the key.
template <class Read>
void ReadKeys(const Value& map, Read read) {
  map.EachKey([&](const Value& value) {
    std::vector<std::string_view> known;
    if (!read(Key{value, known})) value.UnknownKey(known);
  });
}

// Calls read(Value) when the key has this name; returns whether it has.
template <class Read>
bool Take(const Key& key, const char* name, Read read) {
  if (!key.Is(name)) return false;
  read(key.value);
  return true;
}

template <class Record>
bool TakeRecord(const Key& key, const char* name, Record& record) {
  return Take(key, name, [&](const Value& found) { ReadRecord(found, record); });
}

template <std::integral Number>
bool TakeNumber(const Key& key, const char* name, Number& number) {
  return Take(key, name, [&](const Value& found) { found.Into(number); });
}

// Calls read(Value, entry) for each item of a list, with a new entry: at most `most`, and no more than there
// is room for.
template <class Entry, class Read>
void ReadList(const Value& list, std::vector<Entry>& into, std::size_t most, std::size_t& room, Read read) {
  bool full = false;
  list.EachItem([&](const Value& item) {
    if (full) return;
    full = into.size() == most || room == 0;
    if (full) return item.Wrong(list.Key() + ": more than a recording holds");
    --room;
    read(item, into.emplace_back());
  });
}

// One line for each LUN, with what differs from the one before.
void ReadLuns(const Value& value, std::vector<LunEntry>& luns, std::size_t& room) {
  if (!value.IsText()) return value.Expected("LUNs, one a line");
  const std::string text = value.Text(kLargestFile);
  std::string_view rest = text;
  LunEntry lun{};
  for (std::size_t line = 0; !rest.empty(); ++line) {
    const std::string_view one = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(one.size() + 1, rest.size()));
    if (one.empty()) continue;
    if (luns.size() == recording::kMostLuns || room == 0) {
      return WrongBytes(value, "more than a recording holds", line);
    }
    std::size_t within = 0;
    const char* const what = one == "same" ? nullptr : recording::ReadBytes(one, BytesOf(lun), within);
    if (what != nullptr) return WrongBytes(value, what, line);
    lun.next = nullptr;
    luns.push_back(lun);
    --room;
  }
}

// What a call wrote. Each reads one key of an answer's map and says whether it knows it.
template <class Record>
bool TakeMember(const Key& key, Record& record, Room&) {
  return TakeRecord(key, "record", record);
}
template <std::integral Number>
bool TakeMember(const Key& key, Number& number, Room&) {
  return TakeNumber(key, "value", number);
}
bool TakeMember(const Key& key, recording::SizedBytes& sized, Room&) {
  constexpr std::size_t kLargestBuffer = 4096;  // more than any call is given
  return TakeNumber(key, "size", sized.size) || Take(key, "bytes", [&](const Value& found) {
           sized.bytes.resize(kLargestBuffer);
           ReadBytesInto(found, sized.bytes);
           while (!sized.bytes.empty() && sized.bytes.back() == 0) sized.bytes.pop_back();
         });
}
bool TakeMember(const Key& key, recording::StatisticsBlock& statistics, Room&) {
  return TakeNumber(key, "size", statistics.size) || Take(key, "block", [&](const Value& found) {
           statistics.is_null = false;
           ReadRecord(found, statistics.block);
         });
}
bool TakeMember(const Key& key, recording::StatisticsList& list, Room& room) {
  return TakeNumber(key, "free-result", list.free_result) || Take(key, "elements", [&](const Value& found) {
           ReadList(found, list.elements, recording::kMostStatistics, room.statistics,
                    [](const Value& item, SCMRStatisticsEntry& element) {
                      ReadKeys(item,
                               [&](const Key& member) { return TakeRecord(member, "record", element); });
                    });
         });
}

// An answer that is the value alone: good.
template <class Record>
void ReadAlone(const Value& value, Record& record) {
  ReadRecord(value, record);
}
template <std::integral Number>
void ReadAlone(const Value& value, Number& number) {
  value.Into(number);
}
void ReadAlone(const Value& value, recording::SizedBytes&) {
  value.Expected("a map with size and bytes");
}
void ReadAlone(const Value& value, recording::StatisticsBlock&) {
  value.Expected("a map with size and block");
}
void ReadAlone(const Value& value, recording::StatisticsList&) {
  value.Expected("a map with free-result and elements");
}

void Prepare(recording::StatisticsBlock& statistics) {
  statistics.is_null = true;  // until there is a block
}
template <class Record>
void Prepare(Record&) {}

template <class Record>
void ReadAnswer(const Value& value, Answer<Record>& answer, Room& room) {
  if (value.Is("missing")) {
    answer.asked = Asked::kMissing;
    return;
  }
  answer.asked = Asked::kYes;
  if (value.IsText()) return ReadAlone(value, answer.record);
  Prepare(answer.record);
  ReadKeys(value, [&](const Key& key) {
    return TakeNumber(key, "result", answer.result) || TakeMember(key, answer.record, room);
  });
}

// Reads the answer that the key names, if it is one of the entry's.
template <class Recorded>
bool TakeAnswer(const Key& key, Recorded& recorded, Room& room) {
  bool taken = false;
  VisitAnswers(recorded, [&](const char* name, const char*, auto& answer) {
    if (!key.Is(name)) return;
    ReadAnswer(key.value, answer, room);
    taken = true;
  });
  return taken;
}

void ReadTarget(const Value& map, TargetRecording& target, Room& room) {
  ReadKeys(map, [&](const Key& key) {
    return TakeRecord(key, "record", target.record) || TakeAnswer(key, target, room) ||
           Take(key, "luns", [&](const Value& luns) { ReadLuns(luns, target.luns, room.luns); });
  });
}

void ReadProtocol(const Value& map, ProtocolRecording& protocol, Room& room) {
  ReadKeys(map, [&](const Key& key) {
    return TakeRecord(key, "record", protocol.record) || TakeAnswer(key, protocol, room) ||
           Take(key, "targets", [&](const Value& targets) {
             ReadList(targets, protocol.targets, recording::kMostTargets, room.targets,
                      [&](const Value& item, TargetRecording& target) { ReadTarget(item, target, room); });
           });
  });
}

void ReadPort(const Value& map, recording::PhyPortRecording& port, Room& room) {
  ReadKeys(map, [&](const Key& key) {
    if (key.value.Key() == "protocol-list") port.has_protocols = true;
    return TakeRecord(key, "record", port.record) || TakeRecord(key, "protocol-list", port.protocol_list) ||
           Take(key, "protocols", [&](const Value& protocols) {
             ReadList(
                 protocols, port.protocols, recording::kMostProtocols, room.protocols,
                 [&](const Value& item, ProtocolRecording& protocol) { ReadProtocol(item, protocol, room); });
           });
  });
}

void ReadAdapter(const Value& map, recording::AdapterRecording& adapter, Room& room) {
  std::size_t enough = recording::kMostPorts;
  ReadKeys(map, [&](const Key& key) {
    if (key.value.Key() == "port-list") adapter.has_ports = true;
    return TakeRecord(key, "record", adapter.record) || TakeRecord(key, "port-list", adapter.port_list) ||
           Take(key, "ports", [&](const Value& ports) {
             ReadList(
                 ports, adapter.ports, recording::kMostPorts, enough,
                 [&](const Value& item, recording::PhyPortRecording& port) { ReadPort(item, port, room); });
           });
  });
}

void ReadHostKeys(const Value& document, recording::HostRecording& host) {
  Room room;
  std::size_t enough = recording::kMostAdapters;
  ReadKeys(document, [&](const Key& key) {
    if (key.value.Key() == "list") host.has_list = true;
    return Take(key, "snapshot",
                [](const Value& version) {
                  if (!version.Is(std::to_string(recording::kTextVersion))) {
                    version.Expected(std::to_string(recording::kTextVersion));
                  }
                }) ||
           Take(key, "reboot-required",
                [&](const Value& found) { ReadAnswer(found, host.reboot_required, room); }) ||
           Take(key, "boot-mode", [&](const Value& found) { ReadAnswer(found, host.boot_mode, room); }) ||
           Take(key, "no-list", [](const Value& found) { found.Bool(); }) ||
           TakeRecord(key, "list", host.list) || Take(key, "adapters", [&](const Value& adapters) {
             ReadList(adapters, host.adapters, recording::kMostAdapters, enough,
                      [&](const Value& item, recording::AdapterRecording& adapter) {
                        ReadAdapter(item, adapter, room);
                      });
           });
  });
}

}  // namespace

bool IsRecording(std::string_view text) {
  constexpr std::string_view kKey = "\nsnapshot:";
  return text.starts_with(kKey.substr(1)) || text.find(kKey) != std::string_view::npos;
}

std::string ReadRecording(const std::string& name, const std::string& text, recording::HostRecording& host) {
  return ReadDocument(name, text, [&](const Value& document) { ReadHostKeys(document, host); });
}

}  // namespace lab
