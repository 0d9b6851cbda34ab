#include "config/bbcr.h"

#include "config/record_fields.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"

namespace {

constexpr std::size_t kReportBytes = 1024;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, NVRAM read failed"},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, NVRAM update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    kMemoryError,
    {kReadOnlyParameter, "Failed, Read-Only parameter"},
    kVirtualPort,
    kMaintenanceMode,
};

constexpr const char* kStatusKey = "BBCR_Status";
constexpr const char* kCountKey = "BBCR_Count";
constexpr std::uint32_t kMaxCount = 15;

constexpr RecordField kFields[] = {
    {kStatusKey, offsetof(Bbcr::State, status), 1, FieldKind::kSigned, {.limit = 1}},
    {kCountKey, offsetof(Bbcr::State, configured), 1, FieldKind::kSigned, {.limit = kMaxCount}},
};

using Option = StagedOption<OptionChecks>;

constexpr Option kOptions[] = {
    {"--bbcr-status", "-b", kStatusKey, nullptr, &TakeTrueFalse, 1},
    {"--bbcr-configured", "-c", kCountKey, nullptr, &TakeNumber, kMaxCount},
};

}  // namespace

const StagedNode kBbcrNode = {
    "PhysicalPortBBCRCmdsProcessor", "BBCR", {"BBCRInfo", "BBCR", "BBCRList"}, kMessages};

StatusCode Bbcr::Prepare(const Words&) {
  if (IsAnyOf(Fc().pci, kHazel | kIris | kDahlia)) return kSuccess;
  DebugLogLevel(kDebugFailure, "%s: Command not supported for this adapter", node_.class_name);
  return kFeatureNotSupported;
}

StatusCode Bbcr::ReadDevice() {
  state_ = {};
  return CallLibrary(node_.class_name, "Get BBCR info", kReadFailed, [&] {
    return TORPI_FCGetBBCSupportInfoEx(&Fc().handle, &state_.status, &state_.configured, &state_.online,
                                       &state_.negotiated, state_.offline_reason.bytes,
                                       sizeof state_.offline_reason);
  });
}

StagedValues Bbcr::AllValues() const {
  StagedValues values;
  AddFieldValues(kFields, &state_, values);
  return values;
}

StatusCode Bbcr::CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const {
  OptionChecks checks = {Fc(), file, values};
  return TakeOptions<OptionChecks>(kOptions, words, checks);
}

StatusCode Bbcr::ReadFile(const StagedFile& file) {
  return ReadFieldValues(kFields, file, &state_);
}

StatusCode Bbcr::WriteDevice() {
  return CallLibrary(node_.class_name, "Set BBCR info", kUpdateFailed, [&] {
    return TORPI_FCSetBBCSupportInfo(&Fc().handle, state_.status, state_.configured);
  });
}

StatusCode Bbcr::Display(Serializer& out, OutputMode mode, RebootField reboot) const {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayNoMemory(out, mode);
  const bool online = state_.online != 0;
  FirstTextLine(text, "BBCR Status", BoolText(state_.status != 0));
  NumberLine(text, "BBCR Configured", state_.configured);
  TextLine(text, "BBCR State", online ? "Online" : "Offline");
  if (online) {
    NumberLine(text, "BBCR Negotiated", state_.negotiated);
  } else if (!state_.offline_reason.Empty()) {
    TextLine(text, "BBCR Offline Reason Code", state_.offline_reason.View());
  }
  return WriteText(out, mode, text, reboot);
}
