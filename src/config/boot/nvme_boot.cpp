#include "config/boot/nvme_boot.h"

#include <algorithm>
#include <string>

#include "config/staged/staged_parameter.h"
#include "framework/report_lines.h"

namespace {

// Of one entry, in the order in which a file's values are checked; the key is the end of the file's key.
constexpr StagedParameter kParameters[] = {
    {.key = "WWNN",
     .offset = offsetof(NVMeBootEntry, node_name),
     .width = sizeof(NVMeBootEntry::node_name),
     .form = ParameterForm::kName},
    {.key = "WWPN",
     .offset = offsetof(NVMeBootEntry, port_name),
     .width = sizeof(NVMeBootEntry::port_name),
     .form = ParameterForm::kName},
    {.key = "Enable",
     .offset = offsetof(NVMeBootEntry, enable),
     .width = sizeof(NVMeBootEntry::enable),
     .form = ParameterForm::kFlag},
    {.key = "NQN",
     .offset = offsetof(NVMeBootEntry, nqn),
     .width = sizeof(NVMeBootEntry::nqn),
     .form = ParameterForm::kText},
    {.key = "ControllerID",
     .offset = offsetof(NVMeBootEntry, controller_id),
     .width = sizeof(NVMeBootEntry::controller_id)},
    {.key = "NamespaceID",
     .offset = offsetof(NVMeBootEntry, namespace_id),
     .width = sizeof(NVMeBootEntry::namespace_id)},
};

// What the keys of an entry begin with.
std::string KeyBegin(std::size_t number) {
  return "NVME_" + std::to_string(number) + "_";
}

}  // namespace

bool AnyEnabled(const NVMeBootRecord& record) {
  return std::any_of(std::begin(record.entries), std::end(record.entries),
                     [](const NVMeBootEntry& entry) { return entry.enable != 0; });
}

void AddNvmeEntry(std::size_t number, const NVMeBootEntry& entry, StagedValues& values) {
  const std::string begin = KeyBegin(number);
  for (const StagedParameter& parameter : kParameters) AddValue(parameter, &entry, values, begin);
}

void AddNvmeEntries(const NVMeBootRecord& record, StagedValues& values) {
  for (std::size_t i = 0; i < std::size(record.entries); ++i) AddNvmeEntry(i, record.entries[i], values);
}

StatusCode ReadNvmeEntries(const CommandRun& run, const StagedFile& file, NVMeBootRecord& record) {
  for (std::size_t i = 0; i < std::size(record.entries); ++i) {
    const std::string begin = KeyBegin(i);
    for (const StagedParameter& parameter : kParameters) {
      const StatusCode status = ReadValue(run, parameter, file, &record.entries[i], begin);
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
