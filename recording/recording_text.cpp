#include "recording/recording_text.h"

#include <concepts>
#include <string_view>

#include "recording/byte_text.h"

namespace recording {
namespace {

constexpr std::string_view kHead =
    "# A host as zfc-snapshot has read it. docs/snapshots.md describes the form; TORPI_LAB_HOST names the "
    "file to\n"
    "# the simulated library, which plays it back.\n";

template <class Record>
std::span<const std::uint8_t> BytesOf(const Record& record) {
  return {reinterpret_cast<const std::uint8_t*>(&record), sizeof record};
}

// What is in front of an adapter and so on, for the eye. Device texts can hold anything.
void AppendPrintable(std::string& text, std::string_view device_text) {
  for (const char character : device_text) {
    text += character >= 0x20 && character < 0x7f ? character : '.';
  }
}

std::string NameText(const WorldWideName& name) {
  std::string text;
  for (const std::uint8_t& octet : name.octets) {
    if (!text.empty()) text += ':';
    AppendHex(text, {&octet, 1});
  }
  return text;
}

class Writer {
 public:
  std::string Write(const HostRecording& host);

 private:
  void Write(const AdapterRecording& adapter);
  void Write(const PhyPortRecording& port);
  void Write(const ProtocolRecording& protocol);
  void Write(const ProtocolRecording& protocol, const TargetRecording& target);
  void WriteLuns(const std::vector<LunEntry>& luns);

  // "key:" at the present depth; the first key of a list's item has its dash in front.
  void Key(const char* key) {
    text_.append(dash_ ? depth_ - 2 : depth_, ' ');
    if (dash_) text_ += "- ";
    dash_ = false;
    text_.append(key).append(":");
  }
  void Line(std::string_view value) { text_.append(" ").append(value).append("\n"); }
  void Number(const char* key, std::uint32_t number) {
    Key(key);
    Line(std::to_string(number));
  }

  // "key: |" and the record's lines, or "key: zeros".
  void Bytes(const char* key, std::span<const std::uint8_t> bytes, std::span<const Field> fields) {
    Key(key);
    BytesAfterKey(bytes, fields);
  }
  void BytesAfterKey(std::span<const std::uint8_t> bytes, std::span<const Field> fields) {
    const std::size_t before = text_.size();
    Line("|");
    const std::size_t begin = text_.size();
    AppendRecord(text_, depth_ + 2, bytes, fields);
    if (text_.size() > begin) return;
    text_.resize(before);
    Line("zeros");
  }
  template <class Record>
  void RecordOf(const char* key, const Record& record) {
    Bytes(key, BytesOf(record), FieldsOf<Record>());
  }

  void RecordOf(const char* key, const SfpImage& image) { Bytes(key, BytesOf(image), FieldsOfModule(image)); }

  // One item per entry, with a comment ahead.
  template <class Items, class Visit>
  void List(const char* key, const Items& items, Visit visit) {
    if (items.empty()) return;
    Key(key);
    text_ += '\n';
    depth_ += 4;
    for (const auto& item : items) {
      dash_ = true;
      visit(item);
    }
    depth_ -= 4;
  }
  void Comment(std::string_view what) {
    text_.append(depth_ - 2, ' ').append("# ");
    AppendPrintable(text_, what);
    text_ += '\n';
  }

  // An answer that is good is its value alone where one key can hold it; any other is a map.
  template <class Value>
  void AnswerOf(const char* key, const Answer<Value>& answer) {
    if (answer.asked == Asked::kNo) return;
    if (answer.asked == Asked::kMissing) {
      Key(key);
      return Line("missing");
    }
    if (answer.result == kLibrarySuccess && Alone(key, answer.record)) return;
    Key(key);
    text_ += '\n';
    depth_ += 2;
    if (answer.result != kLibrarySuccess) Number("result", answer.result);
    Members(answer.record);
    depth_ -= 2;
  }

  template <class Record>
  bool Alone(const char* key, const Record& record) {
    RecordOf(key, record);
    return true;
  }
  template <std::integral Value>
  bool Alone(const char* key, const Value& value) {
    Number(key, value);
    return true;
  }
  static bool Alone(const char*, const SizedBytes&) { return false; }
  static bool Alone(const char*, const StatisticsBlock&) { return false; }
  static bool Alone(const char*, const StatisticsList&) { return false; }

  // The members of an answer's map. What is zero after a refusal is left out.
  template <class Record>
  void Members(const Record& record) {
    for (const std::uint8_t byte : BytesOf(record)) {
      if (byte != 0) return RecordOf("record", record);
    }
  }
  template <std::integral Value>
  void Members(const Value& value) {
    if (value != 0) Number("value", value);
  }
  void Members(const SizedBytes& sized) {
    Number("size", sized.size);
    if (!sized.bytes.empty()) Bytes("bytes", sized.bytes, {});
  }
  void Members(const StatisticsBlock& statistics) {
    Number("size", statistics.size);
    if (!statistics.is_null) RecordOf("block", statistics.block);
  }
  void Members(const StatisticsList& list) {
    Number("free-result", list.free_result);
    List("elements", list.elements, [&](const SCMRStatisticsEntry& element) { RecordOf("record", element); });
  }

  std::string text_;
  std::size_t depth_ = 0;
  bool dash_ = false;
};

std::string Writer::Write(const HostRecording& host) {
  text_ = kHead;
  Number("snapshot", kTextVersion);
  AnswerOf("reboot-required", host.reboot_required);
  AnswerOf("boot-mode", host.boot_mode);
  if (!host.has_list) {
    Key("no-list");
    Line("true");
    return std::move(text_);
  }
  RecordOf("list", host.list);
  List("adapters", host.adapters, [&](const AdapterRecording& adapter) { Write(adapter); });
  return std::move(text_);
}

void Writer::Write(const AdapterRecording& adapter) {
  Comment("Adapter_" + std::string(adapter.record.model.View()) + "_" +
          std::string(adapter.record.serial_number.View()));
  RecordOf("record", adapter.record);
  if (adapter.has_ports) RecordOf("port-list", adapter.port_list);
  List("ports", adapter.ports, [&](const PhyPortRecording& port) { Write(port); });
}

void Writer::Write(const PhyPortRecording& port) {
  Comment("port " + std::to_string(port.record.number));
  RecordOf("record", port.record);
  if (port.has_protocols) RecordOf("protocol-list", port.protocol_list);
  List("protocols", port.protocols, [&](const ProtocolRecording& protocol) { Write(protocol); });
}

void Writer::Write(const ProtocolRecording& protocol) {
  Comment("FC_" + NameText(protocol.record.port_name));
  RecordOf("record", protocol.record);
  VisitAnswers(protocol, [&](const char* key, const char*, const auto& answer) { AnswerOf(key, answer); });
  List("targets", protocol.targets, [&](const TargetRecording& target) { Write(protocol, target); });
}

void Writer::Write(const ProtocolRecording& protocol, const TargetRecording& target) {
  Comment("FC_" + NameText(protocol.record.port_name) + "_Target_" + NameText(target.record.port_name));
  RecordOf("record", target.record);
  VisitAnswers(target, [&](const char* key, const char*, const auto& answer) { AnswerOf(key, answer); });
  WriteLuns(target.luns);
}

// One line each, with what differs from the one before; the first one differs from zeros.
void Writer::WriteLuns(const std::vector<LunEntry>& luns) {
  if (luns.empty()) return;
  Key("luns");
  Line("|");
  const LunEntry zeros{};
  const LunEntry* before = &zeros;
  for (const LunEntry& lun : luns) {
    text_.append(depth_ + 2, ' ');
    const std::size_t begin = text_.size();
    AppendChange(text_, BytesOf(lun), BytesOf(*before));
    if (text_.size() == begin) text_ += "same";
    text_ += '\n';
    before = &lun;
  }
}

}  // namespace

std::string ToText(const HostRecording& host) {
  return Writer().Write(host);
}

}  // namespace recording
