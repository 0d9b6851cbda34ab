#include "state/reboot.h"

#include "base/text.h"
#include "framework/device_library/speeds.h"
#include "state/running_state.h"

namespace lab {
namespace {

// A port, real or virtual, with its state and as the host file has it, and the real port that it is or is on,
// whose parameters decide.
struct Start {
  Entry& entry;
  const Entry& of_file;
  const Entry& port;
  const Entry& port_of_file;
};

template <typename Visit>
void EachEntry(Adapter& changed, const Adapter& first, Visit visit) {
  for (std::size_t port = 0; port < changed.ports.size(); ++port) {
    std::vector<Entry>& entries = changed.ports[port].entries;
    const std::vector<Entry>& of_file = first.ports[port].entries;
    for (std::size_t entry = 0; entry < entries.size(); ++entry) {
      visit(Start{entries[entry], of_file[entry], entries.front(), of_file.front()});
    }
  }
}

// Whether commands have changed this field of the NVRAM: a parameter that they have not touched leaves the
// link as the host file has it.
bool IsSet(std::uint32_t HBAParamsInfo::*field, const Start& start) {
  return start.port.config.nvram.*field != start.port_of_file.config.nvram.*field;
}

// A text that is no version, and a component that is missing or erased, can't be what runs after the start.
void RunFlash(Adapter& changed, const Adapter& first) {
  EachEntry(changed, first, [&changed](const Start& start) {
    const std::string_view firmware = changed.record.flash_firmware_version.View();
    const auto run = [](std::uint8_t(&field)[4], ComponentVersion version) {
      if (!version.AllZero() && !version.AllOnes()) StoreVersion(field, version);
    };
    ComponentVersion version{};
    if (ReadVersion(firmware, version)) StoreText(start.entry.record.running_firmware_version, firmware);
    run(start.entry.record.running_mpi_version, changed.flash.mpi_firmware);
    run(start.entry.record.running_pep_version, changed.flash.pep_firmware);
  });
}

const LinkSpeed* SpeedOfRate(std::uint32_t data_rate, std::uint8_t supported_speeds) {
  for (const LinkSpeed& speed : kSettableSpeeds) {
    if (speed.data_rate == data_rate && IsSupported(supported_speeds, speed)) return &speed;
  }
  return nullptr;
}

void SetLinkSpeed(Adapter& changed, const Adapter& first) {
  EachEntry(changed, first, [](const Start& start) {
    FCProtocolEntry& record = start.entry.record;
    const std::uint32_t rate = start.port.config.nvram.data_rate;
    const LinkSpeed* const asked = SpeedOfRate(rate, record.supported_speeds);
    const bool comes_up = IsSet(&HBAParamsInfo::data_rate, start) && asked != nullptr && IsLinkUp(record);
    record.port_speed = comes_up ? asked->code : start.of_file.record.port_speed;
  });
}

void SetConnection(Adapter& changed, const Adapter& first) {
  EachEntry(changed, first, [](const Start& start) {
    constexpr std::uint32_t kLoop = 0;
    constexpr std::uint32_t kPointToPoint = 1;
    ConnectionMode& mode = start.entry.record.connection_mode;
    const std::uint32_t option = start.port.config.nvram.connection_options;
    mode = start.of_file.record.connection_mode;
    if (!IsSet(&HBAParamsInfo::connection_options, start)) return;
    if (option == kLoop) mode = ConnectionMode::kLoop;
    if (option == kPointToPoint) mode = ConnectionMode::kPointToPoint;
  });
}

// Comes after the link speed: error correction in use is a matter of a link of 16 Gbps, and of the host
// file's link as it was.
void SetErrorCorrection(Adapter& changed, const Adapter& first) {
  EachEntry(changed, first, [](const Start& start) {
    FCProtocolEntry& record = start.entry.record;
    const FCProtocolEntry& of_file = start.of_file.record;
    const std::uint32_t setting = start.port.config.fec.setting;
    const bool is_set = setting != start.port_of_file.config.fec.setting;
    const bool in_use =
        is_set ? setting != 0 && IsLinkUp(record) && record.port_speed == k16Gbps.code
               : (of_file.link_flags & kFecInUse) != 0 && record.port_speed == of_file.port_speed;
    const auto others = static_cast<std::uint16_t>(record.link_flags & ~kFecInUse);
    record.link_flags = static_cast<std::uint16_t>(others | (in_use ? kFecInUse : 0));
  });
}

void SetCongestionManagement(Adapter& changed, const Adapter& first) {
  EachEntry(changed, first, [](const Start& start) {
    start.entry.congestion.enabled = IsSet(&HBAParamsInfo::disable_scm, start)
                                         ? start.port.config.nvram.disable_scm == 0
                                         : start.of_file.congestion.enabled;
  });
}

void EndBeacon(Adapter& changed, const Adapter& first) {
  EachEntry(changed, first, [](const Start& start) { start.entry.config.beacon = 0; });
}

void EndRegistration(Adapter& changed, const Adapter& first) {
  EachEntry(changed, first, [](const Start& start) { start.entry.diag.nqn_registered = false; });
}

void BeginCounting(Adapter& changed, const Adapter&) {
  Restart(changed);
}

constexpr RebootEffect kEffects[] = {
    {"running versions", RunFlash},
    {"link speed", SetLinkSpeed},
    {"connection", SetConnection},
    {"error correction", SetErrorCorrection},
    {"congestion management", SetCongestionManagement},
    {"beacon", EndBeacon},
    {"host NQN", EndRegistration},
    {"counters and modules", BeginCounting},
};

}  // namespace

std::span<const RebootEffect> RebootEffects() {
  return kEffects;
}

void Reboot(Host& host, const Host& first) {
  for (std::size_t adapter = 0; adapter < host.adapters.size(); ++adapter) {
    for (const RebootEffect& effect : kEffects) effect.play(host.adapters[adapter], first.adapters[adapter]);
  }
  host.reboot_required = false;
}

}  // namespace lab
