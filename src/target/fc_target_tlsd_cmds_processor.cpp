#include "target/fc_target_tlsd_cmds_processor.h"

#include <string_view>

#include "discovery/port_lookup.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "FCTargetTLSDCmdsProcessor";

constexpr ReportFrame kFrame = {"TargetTLSDInformation", "Target TLSD Info", "TargetTLSDInfoList"};
constexpr std::size_t kReportBytes = 4096;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kDataNotAvailable, "Failed, Read-Only feature for this adapter"},
    {kReadFailed, "Failed, TLSD read failed"},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, TLSD set failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    kMemoryError,
    {kSpeedTooLow, "Failed, Speed not supported for this adapter"},
    kVirtualPort,
};

constexpr std::uint32_t kNoSpeed = 0;

const char* SpeedText(std::uint32_t code) {
  const LinkSpeed* const speed = SpeedOfCode(code);
  return speed == nullptr ? "Unknown" : speed->word;
}

int RankOf(std::uint32_t code) {
  const LinkSpeed* const speed = SpeedOfCode(code);
  return speed == nullptr ? 0 : speed->rank;
}

// The greatest speed that the port supports and a user can set; rank and code are 0 when there is none.
LinkSpeed MaximumSpeed(const FCProtocolEntry& fc) {
  for (const LinkSpeed& speed : kSettableSpeeds) {
    if (IsSupported(fc.supported_speeds, speed)) return speed;
  }
  return {};
}

// The speed that a word asks for. Intended: an unknown word is no error, but asks for 1 Gbps.
const LinkSpeed& WantedSpeed(std::string_view word) {
  for (const LinkSpeed& speed : kSettableSpeeds) {
    if (EqualNoCase(word, speed.word)) return speed;
  }
  return k1Gbps;
}

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplayTargetTLSD(Serializer& out, const TargetEntry& target, std::uint32_t speed,
                             OutputMode mode) {
  ReportText text(kReportBytes);
  if (!text.Allocated()) return DisplayError(out, kMemoryError, mode);
  TargetLines(text, target);
  TextLine(text, "Target Maximum Link Speed", SpeedText(speed));
  WriteReport(out, mode, kFrame, text);
  return kSuccess;
}

// Resolves the target and refuses a virtual port.
StatusCode OpenTarget(const Words& words, TargetSelection& selected) {
  if (const StatusCode status = GetTargetFromTargetString(words, selected); status != kSuccess) {
    DebugLogLevel(kDebugFailure, "%s::%s: Get target failed err=%u", kClassName, __func__, status);
    return status;
  }
  if (IsVirtualPort(*selected.fc)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for vport", kClassName, __func__);
    return kVirtualPort;
  }
  return kSuccess;
}

// Reading and writing deliberately have one status each for every failure, maintenance mode included.

StatusCode ReadSpeed(const TargetSelection& selected, std::uint32_t& speed) {
  return CallLibraryWithOneStatus(kClassName, "Get Link Speed", kReadFailed, [&] {
    return TORPI_GetTargetLinkSpeed(&selected.fc->handle, selected.target->number, &speed);
  });
}

StatusCode WriteSpeed(const TargetSelection& selected, std::uint32_t speed) {
  // The log deliberately has the wording of the read.
  return CallLibraryWithOneStatus(kClassName, "Get Link Speed", kUpdateFailed, [&] {
    return TORPI_SetTargetLinkSpeed(&selected.fc->handle, selected.target->number, speed);
  });
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  TargetSelection selected;
  if (const StatusCode status = OpenTarget(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  std::uint32_t speed = kNoSpeed;
  if (const StatusCode status = ReadSpeed(selected, speed); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  const LinkSpeed maximum = MaximumSpeed(*selected.fc);
  if (RankOf(speed) > maximum.rank) {
    DebugLogLevel(kDebugTrace, "%s::%s: Got TgtSpeed %d > MaxSpeed %d", kClassName, __func__, RankOf(speed),
                  maximum.rank);
    speed = maximum.code;
  }
  return DisplayTargetTLSD(out, *selected.target, speed, mode);
}

StatusCode CmdSetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplayError(out, code, mode); };

  TargetSelection selected;
  if (const StatusCode status = OpenTarget(words, selected); status != kSuccess) return fail(status);
  if (IsDeviceGroupCedar(selected.fc->pci)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Command not supported for this adapter", kClassName, __func__);
    return fail(kDataNotAvailable);
  }
  if (words.size() < 2) return fail(kInvalidParameter);
  const LinkSpeed& wanted = WantedSpeed(words[1]);
  if (MaximumSpeed(*selected.fc).rank < wanted.rank || EqualNoCase(words[1], k10Gbps.word)) {
    DebugLogLevel(kDebugFailure, "%s::%s: speed not supported for this adapter", kClassName, __func__);
    return fail(kSpeedTooLow);
  }
  std::uint32_t current = kNoSpeed;
  if (const StatusCode status = ReadSpeed(selected, current); status != kSuccess) return fail(status);
  if (current != wanted.code) {
    if (const StatusCode status = WriteSpeed(selected, wanted.code); status != kSuccess) return fail(status);
  }
  return DisplayTargetTLSD(out, *selected.target, wanted.code, mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdSet = &InXml<CmdSetCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdSetCli = &InText<CmdSetCommon>;

constexpr const char* kGetDescription = "get Sorvex FC Target TLSD Speed";
constexpr const char* kSetDescription = "set Sorvex FC Target TLSD Speed";

constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"set", 1, kSetDescription, CmdSet},
    {"help", 2, "list of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 3, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"setcli", 4, kSetDescription, CmdSetCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {3, "Usage: get [port identifier]\r\n"},
    {4, "Usage: set [port identifier]\r\n"},
};

constexpr NodeClass kClass = {kClassName, "FC Target tlsd", kLeaves, kUsage};

}  // namespace

FCTargetTLSDCmdsProcessor::FCTargetTLSDCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
