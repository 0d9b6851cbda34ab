#include "target/fc_target_tlsd_cmds_processor.h"

#include <string_view>

#include "discovery/port_lookup.h"
#include "framework/device_library/families.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"

namespace {

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

// Intended: without a rank, it is shown, but can neither be set nor be the greatest speed of an adapter.
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

// The speed that a word asks for. Intended: an unknown word is no error, it asks for 1 Gbps.
const Speed& WantedSpeed(std::string_view word) {
  for (const Speed& speed : kSpeeds) {
    if (EqualNoCase(word, speed.text)) return speed;
  }
  return kLowestSpeed;
}

StatusCode DisplayTargetTLSD(CommandRun& run, const TargetEntry& target, std::uint32_t speed) {
  const FunctionScope function(run, __func__);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.DisplayNoMemory();
  TargetLines(text, target);
  TextLine(text, "Target Maximum Link Speed", SpeedText(speed));
  return run.DisplayReport(text);
}

// A target of a physical port: a virtual one has no link speed of its own.
StatusCode SelectPhysicalTarget(CommandRun& run, TargetSelection& selected) {
  const StatusCode status = SelectTarget(run, selected);
  return status == kSuccess ? CheckPhysical(run, *selected.fc) : status;
}

// Reading and writing have one status each for every failure, maintenance mode included.

StatusCode ReadSpeed(const CommandRun& run, const TargetSelection& selected, std::uint32_t& speed) {
  return CallLibraryWithOneStatus(run, "Get Link Speed", kReadFailed, [&] {
    return TORPI_GetTargetLinkSpeed(&selected.fc->handle, selected.target->number, &speed);
  });
}

StatusCode WriteSpeed(const CommandRun& run, const TargetSelection& selected, std::uint32_t speed) {
  // Intended: the log has the wording of the read.
  return CallLibraryWithOneStatus(run, "Get Link Speed", kUpdateFailed, [&] {
    return TORPI_SetTargetLinkSpeed(&selected.fc->handle, selected.target->number, speed);
  });
}

StatusCode CmdGetCommon(CommandRun& run) {
  TargetSelection selected;
  if (const StatusCode status = SelectPhysicalTarget(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  std::uint32_t speed = kNoSpeed;
  if (const StatusCode status = ReadSpeed(run, selected, speed); status != kSuccess) {
    return run.DisplayError(status);
  }
  const Speed maximum = MaximumSpeed(*selected.fc);
  if (RankOf(speed) > maximum.rank) {
    run.Trace("Got TgtSpeed %d > MaxSpeed %d", RankOf(speed), maximum.rank);
    speed = maximum.code;
  }
  return DisplayTargetTLSD(run, *selected.target, speed);
}

StatusCode CmdSetCommon(CommandRun& run) {
  TargetSelection selected;
  if (const StatusCode status = SelectPhysicalTarget(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  if (IsDeviceGroupCedar(selected.fc->pci)) {
    return run.DisplayError(run.Refuse(kDataNotAvailable, "Command not supported for this adapter"));
  }
  if (run.words.size() < 2) return run.DisplayError(run.Refuse(kInvalidParameter, "speed not given"));
  const Speed& wanted = WantedSpeed(run.words[1]);
  if (MaximumSpeed(*selected.fc).rank < wanted.rank || EqualNoCase(run.words[1], kTenGbps.text)) {
    return run.DisplayError(run.Refuse(kSpeedTooLow, "speed not supported for this adapter"));
  }
  std::uint32_t current = kNoSpeed;
  if (const StatusCode status = ReadSpeed(run, selected, current); status != kSuccess) {
    return run.DisplayError(status);
  }
  if (current != wanted.code) {
    const StatusCode status = WriteSpeed(run, selected, wanted.code);
    if (status != kSuccess) return run.DisplayError(status);
  }
  return DisplayTargetTLSD(run, *selected.target, wanted.code);
}

constexpr CommandRow kCommands[] = {
    // The usage texts say "port": the identifier is a target's, and `set` needs a speed too.
    {"get", "get Sorvex FC Target TLSD Speed", "Usage: get [port identifier]\r\n", &CmdGetCommon},
    {"set", "set Sorvex FC Target TLSD Speed", "Usage: set [port identifier]\r\n", &CmdSetCommon},
};

constexpr NodeClass kClass = {
    .name = "FCTargetTLSDCmdsProcessor",
    .help_words = "FC Target tlsd",
    .commands = kCommands,
    .frame = {"TargetTLSDInformation", "Target TLSD Info", "TargetTLSDInfoList"},
    .messages = kMessages,
};

}  // namespace

FCTargetTLSDCmdsProcessor::FCTargetTLSDCmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
