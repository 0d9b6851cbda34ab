#include "target/fc_target_tlsd_cmds_processor.h"

#include <string_view>

#include "discovery/port_lookup.h"
#include "framework/device_library/families.h"
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

// A link speed: the library's code, its rank among the speeds that can be set, and the bit of it in a port's
// mask of supported speeds. The codes for 16, 32 and 64 Gbps read as decimal digits in hexadecimal.
struct Speed {
  std::uint32_t code;
  int rank;
  std::uint8_t mask;
  const char* text;
};

constexpr int kNoRank = 0;
constexpr std::uint32_t kNoSpeed = 0;

constexpr Speed kSpeeds[] = {
    {0x64, 7, 0x80, "64_Gbps"}, {0x32, 6, 0x40, "32_Gbps"}, {0x16, 5, 0x20, "16_Gbps"},
    {8, 4, 0x10, "8_Gbps"},     {4, 3, 0x08, "4_Gbps"},     {2, 2, 0x02, "2_Gbps"},
    {1, 1, 0x01, "1_Gbps"},
};

// Deliberately without a rank: it is shown, but can neither be set nor be the greatest speed of an adapter.
constexpr Speed kTenGbps = {16, kNoRank, 0x04, "10_Gbps"};

constexpr const Speed& kLowestSpeed = kSpeeds[std::size(kSpeeds) - 1];

const char* SpeedText(std::uint32_t code) {
  for (const Speed& speed : kSpeeds) {
    if (speed.code == code) return speed.text;
  }
  return code == kTenGbps.code ? kTenGbps.text : "Unknown";
}

int RankOf(std::uint32_t code) {
  for (const Speed& speed : kSpeeds) {
    if (speed.code == code) return speed.rank;
  }
  return kNoRank;
}

// The greatest speed that the port supports; rank and code are 0 for an empty mask.
Speed MaximumSpeed(const FCProtocolEntry& fc) {
  for (const Speed& speed : kSpeeds) {
    if ((fc.supported_speeds & speed.mask) != 0) return speed;
  }
  return {kNoSpeed, kNoRank, 0, nullptr};
}

// The speed that a word asks for. Deliberately without an error for an unknown word: it asks for 1 Gbps.
const Speed& WantedSpeed(std::string_view word) {
  for (const Speed& speed : kSpeeds) {
    if (EqualNoCase(word, speed.text)) return speed;
  }
  return kLowestSpeed;
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
  if (selected.fc->interface_type == PortInterfaceType::kNpivVirtual) {
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
  const Speed maximum = MaximumSpeed(*selected.fc);
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
  const Speed& wanted = WantedSpeed(words[1]);
  if (MaximumSpeed(*selected.fc).rank < wanted.rank || EqualNoCase(words[1], kTenGbps.text)) {
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
