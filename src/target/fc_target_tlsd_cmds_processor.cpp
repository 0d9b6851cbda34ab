#include "target/fc_target_tlsd_cmds_processor.h"

#include <string_view>

#include "discovery/port_lookup.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/library_call.h"
#include "framework/report_lines.h"
#include "framework/table.h"

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
  const LinkSpeed maximum = MaximumSpeed(*selected.fc);
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
  const LinkSpeed& wanted = WantedSpeed(run.words[1]);
  if (MaximumSpeed(*selected.fc).rank < wanted.rank || EqualNoCase(run.words[1], k10Gbps.word)) {
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

}  // namespace

NodeClass FCTargetTLSDCmdsProcessor() {
  return {
      .name = "FCTargetTLSDCmdsProcessor",
      .help_words = "FC Target tlsd",
      .commands = TableOf<kCommands>(),
      .frame = {"TargetTLSDInformation", "Target TLSD Info", "TargetTLSDInfoList"},
      .messages = TableOf<kMessages>(),
  };
}
