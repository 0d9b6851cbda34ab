#include "config/nvme_boot.h"

#include <algorithm>

#include "config/record_fields.h"
#include "framework/report_lines.h"

namespace {

// Of one entry, in the order in which a file's values are checked; the key is the end of the file's key.
constexpr RecordField kFields[] = {
    {"WWNN", offsetof(NVMeBootEntry, node_name), sizeof(WorldWideName), FieldKind::kName},
    {"WWPN", offsetof(NVMeBootEntry, port_name), sizeof(WorldWideName), FieldKind::kName},
    {"Enable", offsetof(NVMeBootEntry, enable), sizeof(std::uint8_t), FieldKind::kUnsigned, {.limit = 1}},
    {"NQN", offsetof(NVMeBootEntry, nqn), sizeof(NVMeBootEntry::nqn), FieldKind::kText},
    {"ControllerID", offsetof(NVMeBootEntry, controller_id), sizeof(std::uint16_t)},
    {"NamespaceID", offsetof(NVMeBootEntry, namespace_id), sizeof(std::uint32_t)},
};

std::string EntryKey(std::size_t number, const RecordField& field) {
  return "NVME_" + std::to_string(number) + "_" + field.key;
}

}  // namespace

bool AnyEnabled(const NVMeBootRecord& record) {
  return std::any_of(std::begin(record.entries), std::end(record.entries),
                     [](const NVMeBootEntry& entry) { return entry.enable != 0; });
}

void AddNvmeEntry(std::size_t number, const NVMeBootEntry& entry, StagedValues& values) {
  for (const RecordField& field : kFields) AddFieldValue(field, EntryKey(number, field), &entry, values);
}

void AddNvmeEntries(const NVMeBootRecord& record, StagedValues& values) {
  for (std::size_t i = 0; i < std::size(record.entries); ++i) AddNvmeEntry(i, record.entries[i], values);
}

StatusCode ReadNvmeEntries(const StagedFile& file, NVMeBootRecord& record) {
  for (std::size_t i = 0; i < std::size(record.entries); ++i) {
    for (const RecordField& field : kFields) {
      const StatusCode status = ReadFieldValue(field, EntryKey(i, field), file, &record.entries[i]);
      if (status != kSuccess) return status;
    }
  }
  return kSuccess;
}

void NvmeEntryLines(ReportText& text, const NVMeBootRecord& record) {
  for (std::size_t i = 0; i < std::size(record.entries); ++i) {
    const NVMeBootEntry& entry = record.entries[i];
    text.Line("      %s %u:\n", "Storage", static_cast<unsigned>(i));
    FlagLine(text, "Enable", entry.enable != 0);
    NameLine(text, "WWNN", entry.node_name);
    NameLine(text, "WWPN", entry.port_name);
    TextOrNaLine(text, "NQN", entry.nqn.View());
    NumberLine(text, "ControllerID", entry.controller_id);
    NumberLine(text, "NamespaceID", entry.namespace_id);
  }
}
