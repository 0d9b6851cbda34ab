#include "config/bbcr.h"

#include <cstddef>

#include "config/options.h"
#include "config/staged/staged_parameter.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "framework/report_text.h"

namespace {

constexpr std::size_t kReportBytes = 1024;

// In the order in which options and a file's values are checked.
constexpr StagedParameter kParameters[] = {
    {.key = "BBCR_Status",
     .offset = offsetof(Bbcr::State, status),
     .width = sizeof(Bbcr::State::status),
     .form = ParameterForm::kFlag,
     .option = {"--bbcr-status", "-b"}},
    {.key = "BBCR_Count",
     .offset = offsetof(Bbcr::State, configured),
     .width = sizeof(Bbcr::State::configured),
     .rule = {.limit = 15},
     .option = {"--bbcr-configured", "-c"}},
};

}  // namespace

StatusCode Bbcr::Open(CommandRun& run, StagedCommand) {
  if (!IsAnyOf(fc_.pci, kHazel | kIris | kDahlia)) {
    return run.Refuse(kFeatureNotSupported, "Command not supported for this adapter");
  }
  state_ = {};
  const StatusCode status = CallLibrary(run, "Get BBCR info", kReadFailed, [&] {
    return TORPI_FCGetBBCSupportInfoEx(&fc_.handle, &state_.status, &state_.configured, &state_.online,
                                       &state_.negotiated, state_.offline_reason.bytes,
                                       sizeof state_.offline_reason);
  });
  if (status == kSuccess) LogValues(run, kParameters, &state_);
  return status;
}

void Bbcr::AddAll(StagedValues& values) const {
  AddValues(kParameters, &state_, values);
}

StatusCode Bbcr::TakeOptions(CommandRun& run, const StagedFile&, StagedValues& changes) {
  for (const StagedParameter& parameter : kParameters) {
    const StatusCode status = TakeOption(run, parameter.option, [&](const std::string& value) {
      return TakeValue(parameter, value, changes);
    });
    if (status != kSuccess) return status;
  }
  return kSuccess;
}

StatusCode Bbcr::ReadFile(CommandRun& run, const StagedFile& file) {
  return ReadValues(run, kParameters, file, &state_);
}

StatusCode Bbcr::WriteDevice(CommandRun& run) {
  return CallLibrary(run, "Set BBCR info", kUpdateFailed, [&] {
    return TORPI_FCSetBBCSupportInfo(&fc_.handle, state_.status, state_.configured);
  });
}

StatusCode Bbcr::Display(CommandRun& run, RebootField reboot) const {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  const bool online = state_.online != 0;
  FirstTextLine(text, "BBCR Status", BoolText(state_.status != 0));
  NumberLine(text, "BBCR Configured", state_.configured);
  TextLine(text, "BBCR State", online ? "Online" : "Offline");
  if (online) {
    NumberLine(text, "BBCR Negotiated", state_.negotiated);
  } else if (!state_.offline_reason.Empty()) {
    TextLine(text, "BBCR Offline Reason Code", state_.offline_reason.View());
  }
  return run.DisplayReport(text, reboot);
}
