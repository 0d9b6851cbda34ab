#include "state/reboot.h"

#include <string>

#include "base/text.h"
#include "host_file/host_keys.h"
#include "state/state_file.h"
#include "unit/simulator/lab_fixture.h"
#include "unit/simulator/source_path.h"

namespace {

constexpr std::uint32_t kLoop = 0, kPointToPoint = 1, kLoopPreferred = 2;
constexpr std::uint32_t kRateOf4 = 3, kRateAuto = 2, kRateOf16 = 5, kRateOf64 = 7;
constexpr std::uint32_t k4 = 0x04, k16 = 0x16, k32 = 0x32;

// A host, and the same with changes; both alone in memory.
class Reboot : public testing::Test {
 protected:
  void Load(const std::string& yaml) {
    ASSERT_EQ(lab::ReadHost("host", yaml, first_), "");
    lab::LinkHost(first_);
    ASSERT_EQ(lab::ReadHost("host", yaml, host_), "");
    lab::LinkHost(host_);
  }
  void Play() { lab::Reboot(host_, first_); }
  lab::Adapter& Adapter() { return host_.adapters[0]; }
  lab::Entry& Entry(std::size_t port = 0, std::size_t entry = 0) {
    return Adapter().ports[port].entries[entry];
  }
  std::string Running() { return std::string(Entry().record.running_firmware_version.View()); }
  bool ErrorCorrection() { return (Entry().record.link_flags & kFecInUse) != 0; }

  lab::Host host_, first_;
};

TEST_F(Reboot, UntouchedHostIsTheSameButForItsCounters) {
  Load("adapters: [{family: hazel, ports: [{speed: 16, error-correction: true, connection: loop}]}]");
  Play();
  EXPECT_EQ(Entry().record.port_speed, k16);
  EXPECT_TRUE(ErrorCorrection());
  EXPECT_EQ(Entry().record.connection_mode, ConnectionMode::kLoop);
  EXPECT_EQ(Running(),
            std::string(first_.adapters[0].ports[0].entries[0].record.running_firmware_version.View()));
}

TEST_F(Reboot, FlashBecomesWhatRuns) {
  Load(
      "adapters: [{family: hazel, versions: {firmware: 9.1.5, running-firmware: 9.1.4}, flash: "
      "{mpi-firmware: 1.2.3,"
      " pep-firmware: 4.5.6}, ports: [{running-firmware: 9.0.1, npiv: [{}]}]}]");
  Play();
  EXPECT_EQ(Running(), "9.1.5");
  EXPECT_EQ(Entry(0, 1).record.running_firmware_version.View(), "9.1.5");
  EXPECT_EQ(lab::OctetText(Entry().record.running_mpi_version), "01:02:03:00");
  EXPECT_EQ(lab::OctetText(Entry().record.running_pep_version), "04:05:06:00");
}

TEST_F(Reboot, WhatIsNoVersionDoesNotRun) {
  Load(
      "adapters: [{family: hazel, versions: {firmware: \"\", running-firmware: 9.1.4, running-mpi: 1.1.1, "
      "running-pep:"
      " 2.2.2}, flash: {mpi-firmware: 255.255.255, pep-firmware: none}, ports: [{}]}]");
  Play();
  EXPECT_EQ(Running(), "9.1.4");
  EXPECT_EQ(lab::OctetText(Entry().record.running_mpi_version), "01:01:01:00");
  EXPECT_EQ(lab::OctetText(Entry().record.running_pep_version), "02:02:02:00");
}

struct Rate {
  const char* name;
  const char* port;  // keys of the host file
  std::uint32_t data_rate;
  std::uint32_t speed;
};

constexpr Rate kRates[] = {
    {"Set", "speed: 32", kRateOf16, k16},
    {"NotSupported", "speed: 32", kRateOf4, k32},
    {"AlsoNotSupported", "speed: 32", kRateOf64, k32},
    {"SupportedByThisPort", "speed: 32, supported-speeds: [4, 32]", kRateOf4, k4},
    {"LinkDown", "link: down", kRateOf16, 0},
    {"NotSet", "speed: 32, configuration: {parameters: {data-rate: 16}}", kRateOf16, k32},
    {"BackToAuto", "speed: 32, configuration: {parameters: {data-rate: 16}}", kRateAuto, k32},
};

class RebootRate : public Reboot, public testing::WithParamInterface<Rate> {};

TEST_P(RebootRate, DecidesTheLinkSpeed) {
  Load("adapters: [{family: hazel, ports: [{" + std::string(GetParam().port) + ", npiv: [{}]}]}]");
  Entry().config.nvram.data_rate = GetParam().data_rate;
  Play();
  EXPECT_EQ(Entry().record.port_speed, GetParam().speed);
  EXPECT_EQ(Entry(0, 1).record.port_speed, GetParam().speed);
}

INSTANTIATE_TEST_SUITE_P(Simulator, RebootRate, testing::ValuesIn(kRates),
                         [](const auto& test) { return test.param.name; });

TEST_F(Reboot, SpeedThatIsSetBackIsThatOfTheFile) {
  Load("adapters: [{family: hazel, ports: [{speed: 32}]}]");
  Entry().config.nvram.data_rate = kRateOf16;
  Play();
  Entry().config.nvram.data_rate = kRateAuto;
  Play();
  EXPECT_EQ(Entry().record.port_speed, k32);
}

TEST_F(Reboot, Connection) {
  Load(
      "adapters: [{family: hazel, ports: [{connection: loop, configuration: {parameters: {connection: "
      "loop}}}]}]");
  for (const auto& [option, mode] :
       {std::pair(kPointToPoint, ConnectionMode::kPointToPoint),
        std::pair(kLoopPreferred, ConnectionMode::kLoop), std::pair(kLoop, ConnectionMode::kLoop)}) {
    Entry().config.nvram.connection_options = option;
    Play();
    EXPECT_EQ(Entry().record.connection_mode, mode) << option;
  }
}

TEST_F(Reboot, ErrorCorrectionOfALinkOf16Gbps) {
  Load("adapters: [{family: hazel, ports: [{speed: 16, error-correction: true}]}]");
  Entry().config.fec.setting = 0;
  Play();
  EXPECT_FALSE(ErrorCorrection());
  Entry().config.fec.setting = 1;
  Play();
  EXPECT_TRUE(ErrorCorrection());
}

TEST_F(Reboot, ErrorCorrectionThatIsSwitchedOnNeedsSuchALink) {
  Load("adapters: [{family: hazel, ports: [{speed: 32, configuration: {fec: {enabled: false}}}]}]");
  Entry().config.fec.setting = 1;
  Play();
  EXPECT_FALSE(ErrorCorrection());
  Entry().config.nvram.data_rate = kRateOf16;
  Play();
  EXPECT_TRUE(ErrorCorrection());
}

TEST_F(Reboot, CongestionManagement) {
  Load("adapters: [{family: hazel, ports: [{congestion: {enabled: false}}, {}]}]");
  Entry(1).config.nvram.disable_scm = 1;
  Play();
  EXPECT_FALSE(Entry(0).congestion.enabled);
  EXPECT_FALSE(Entry(1).congestion.enabled);
  Entry(1).config.nvram.disable_scm = 0;
  Play();
  EXPECT_TRUE(Entry(1).congestion.enabled);
}

TEST_F(Reboot, WhatLastsUntilTheNextStart) {
  Load(
      "reboot-required: true\n"
      "adapters: [{family: hazel, ports: [{configuration: {beacon: on}, diagnostics: {nqn-registered: true,"
      " diagnostic-port: true}}]}]");
  Play();
  EXPECT_FALSE(host_.reboot_required);
  EXPECT_EQ(Entry().config.beacon, 0u);
  EXPECT_FALSE(Entry().diag.nqn_registered);
  EXPECT_TRUE(Entry().diag.diagnostic_port);  // a setting of the NVRAM
}

TEST_F(Reboot, CountersBeginAtZero) {
  Load(R"(
adapters:
  - family: hazel
    ports:
      - driver-counters: [1, 2, 3, 4, 5, 6]
        firmware-counters: [1, 2, 3, 4, 5, 6]
        configuration: {fec: {correctable-errors: 7, uncorrectable-errors: 8}}
        congestion:
          alarms: 1
          warnings: 2
          link-integrity-events: 3
          delivery-events: 4
          statistics: {port: {pun: 5}, targets: {"50:00:00:00:00:00:00:01": {pun: 6}}, departed-targets: 2}
        targets: {wwpn: 50:00:00:00:00:00:00:01, statistics: {invalid-crc: 9}}
        sfp: {measured: {temperature: 30}, after-refresh: {temperature: 60}}
)");
  ASSERT_NE(Entry().sfp->known, Entry().sfp->now);
  Play();
  const FCProtocolEntry& record = Entry().record;
  for (unsigned counter = 0; counter < 6; ++counter) {
    EXPECT_EQ(record.driver_counters[counter], 0u);
    EXPECT_EQ(record.firmware_counters[counter], 0u);
  }
  EXPECT_EQ(record.congestion_alarms, 0u);
  EXPECT_EQ(record.congestion_warnings, 0u);
  EXPECT_EQ(record.link_integrity_events, 0u);
  EXPECT_EQ(record.delivery_notification_events, 0u);
  EXPECT_EQ(Entry().config.fec.correctable, 0u);
  EXPECT_EQ(Entry().config.fec.uncorrectable, 0u);
  const auto statistics = lab::MakeStatisticsList(Entry());
  ASSERT_EQ(statistics->size(), 2u);  // the port and its target; the departed ones are forgotten
  for (const SCMRStatisticsEntry& element : *statistics) EXPECT_EQ(std::uint64_t{element.pun}, 0u);
  Entry().targets.Each([](const TargetEntry&, const lab::TargetState& state) {
    const TargetPortStatistics zeros{};
    EXPECT_EQ(std::memcmp(&state.statistics, &zeros, sizeof zeros), 0);
  });
  EXPECT_EQ(Entry().sfp->known, Entry().sfp->now);
}

TEST_F(Reboot, EffectsComeBackFromTheStateFile) {
  const ScratchFolder folder;
  const std::string yaml =
      "adapters: [{family: hazel, serial: S, versions: {running-firmware: 1.1.1}, ports: [{speed: 32,"
      " driver-counters: [1]}]}]";
  Load(yaml);
  const std::string path = folder / "state.yaml";
  lab::StateFile file(path);
  ASSERT_EQ(file.Change(host_,
                        [this](lab::Host& host) {
                          host.adapters[0].ports[0].entries[0].config.nvram.data_rate = kRateOf16;
                          lab::Reboot(host, first_);
                        }),
            "");
  lab::Host again;
  ASSERT_EQ(lab::ReadHost("host", yaml, again), "");
  lab::LinkHost(again);
  ASSERT_EQ(lab::StateFile(path).Load(again), "");
  const FCProtocolEntry& record = again.adapters[0].ports[0].entries[0].record;
  EXPECT_EQ(record.port_speed, k16);
  EXPECT_EQ(record.running_firmware_version.View(), first_.adapters[0].record.flash_firmware_version.View());
  EXPECT_EQ(record.driver_counters[0], 0u);
  EXPECT_TRUE(again.adapters[0].restarted);
}

TEST(RebootEffects, AreThoseOfTheDocument) {
  const std::string document = ContentOf(SourcePath("docs/lab-host.md"));
  const std::size_t start = document.find("### Playing a reboot");
  ASSERT_NE(start, std::string::npos);
  const std::string section = document.substr(start);
  std::size_t at = 0;
  for (const lab::RebootEffect& effect : lab::RebootEffects()) {
    const std::size_t row = section.find("\n| " + std::string(effect.what) + " | ", at);
    ASSERT_NE(row, std::string::npos) << effect.what;
    at = row;
  }
}

}  // namespace
