#include "config/hba_params/hba_params.h"

#include "config/hba_params/hba_option_rules.h"
#include "config/hba_params/hba_parameters.h"
#include "framework/code_text.h"
#include "framework/library_call.h"
#include "framework/report.h"

namespace {

bool IsAmong(AdapterTest test, const PciIdentity& pci) {
  return test == nullptr || test(pci);
}

void WriteParameter(Serializer& out, const HbaParameter& parameter, const HBAParamsInfo& record,
                    const PciIdentity& pci) {
  const bool shown = IsAmong(parameter.shows != nullptr ? parameter.shows : parameter.has, pci);
  const std::uint32_t number = NumberIn(parameter.staged, &record);
  if (parameter.word != nullptr) {
    out.WriteStringField(parameter.label, shown ? parameter.word(number, pci) : "NA");
  } else if (IsFlag(parameter.staged.form)) {
    const char* const flag = BoolText(FlagIn(parameter.staged, &record));
    out.WriteStringField(parameter.label, shown ? flag : "NA");
  } else {
    out.WriteIntField(parameter.label, shown ? number : 0, kUnsigned32);
  }
}

CheckResult Take(const HbaParameter& parameter, HbaChecks& checks, const std::string& value) {
  if (!IsAmong(parameter.has, checks.Pci())) return kNotThisAdapter;
  if (parameter.take != nullptr) return parameter.take(checks, value);
  return TakeValue(parameter.staged, value, checks.changes);
}

}  // namespace

StatusCode HbaParams::Open(CommandRun& run, StagedCommand) {
  record_ = {};
  HBAParamsExtra extra = {};
  const StatusCode status = CallLibrary(run, "Get HBA params", kReadFailed, [&] {
    return TORPI_GetHBAParamsInfo(&fc_.handle, &record_, &extra);
  });
  if (status != kSuccess) return status;
  for (const HbaParameter& parameter : HbaParameters()) LogValue(run, parameter.staged, &record_);
  return kSuccess;
}

void HbaParams::AddAll(StagedValues& values) const {
  for (const HbaParameter& parameter : HbaParameters()) AddValue(parameter.staged, &record_, values);
}

StatusCode HbaParams::TakeOptions(CommandRun& run, const StagedFile& file, StagedValues& changes) const {
  HbaChecks checks = {fc_, file, changes};
  for (const HbaParameter& parameter : HbaParameters()) {
    const StatusCode status = TakeOption(run, parameter.staged.option, [&](const std::string& value) {
      return Take(parameter, checks, value);
    });
    if (status != kSuccess) return status;
  }
  return kSuccess;
}

// Intended: rules between parameters are not checked here, so that a file edited by hand can break them.
StatusCode HbaParams::ReadFile(CommandRun& run, const StagedFile& file) {
  for (const HbaParameter& parameter : HbaParameters()) {
    const StatusCode status = ReadValue(run, parameter.staged, file, &record_);
    if (status != kSuccess) return status;
  }
  return kSuccess;
}

StatusCode HbaParams::WriteDevice(CommandRun& run) {
  return CallLibrary(run, "Update HBA params", kUpdateFailed,
                     [&] { return TORPI_UpdateHBAParameters(&fc_.handle, &record_); });
}

StatusCode HbaParams::Display(CommandRun& run, RebootField reboot) const {
  const Document document(run, kHbaParamsFrame.structure, "Success", reboot);
  const ListField list(run.out, kHbaParamsFrame.field);
  const ListStructure element(run.out, kHbaParamsFrame.list_structure);
  for (const HbaParam id : ShownHbaParameters()) {
    WriteParameter(run.out, HbaParameterOf(id), record_, fc_.pci);
  }
  return kSuccess;
}
