// Configuration of a port: parameters, boot records, credit recovery, error correction, beacon, NVRAM images.
#include <cstdlib>
#include <cstring>
#include <string>

#include "unit/simulator/lab_fixture.h"

namespace {

class Config : public LabTest {
 protected:
  // A host with one port of the family that has these keys.
  void UsePort(const std::string& configuration, const std::string& family = "hazel",
               const std::string& more = "") const {
    UseHost("adapters:\n  - family: " + family + "\n    serial: AB1\n    ports:\n      - {configuration: {" +
            configuration + "}" + more + "}\n");
  }

  static HBAParamsInfo Params() {
    HBAParamsInfo record = {};
    HBAParamsExtra extra = {};
    EXPECT_EQ(TORPI_GetHBAParamsInfo(HandleAt(0), &record, &extra), 0u);
    return record;
  }

  static HBAParamsInfo Boot() {
    HBAParamsInfo record = {};
    EXPECT_EQ(TORPI_GetBootDeviceInfo(HandleAt(0), &record, 0), 0u);
    return record;
  }

  static NVMeBootRecord Nvme() {
    NVMeBootRecord record = {};
    EXPECT_EQ(TORPI_GetNVMeBootDeviceEntries(HandleAt(0), &record), 0u);
    return record;
  }

  struct Credit {
    std::uint8_t status = 0xEE, configured = 0xEE, state = 0xEE, negotiated = 0xEE;
    std::string reason;
  };
  static Credit CreditOf(const DeviceHandle* handle) {
    Credit credit;
    char reason[64];
    EXPECT_EQ(TORPI_FCGetBBCSupportInfoEx(handle, &credit.status, &credit.configured, &credit.state,
                                          &credit.negotiated, reason, sizeof reason),
              0u);
    credit.reason.assign(reason, strnlen(reason, sizeof reason));
    return credit;
  }

  struct Stats {
    std::uint64_t correctable = 0, uncorrectable = 0;
  };
  static Stats StatsOf(const DeviceHandle* handle) {
    FWPrivateStats* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(TORPI_GetFWPrivateStats(handle, &block, &size), 0u);
    EXPECT_GE(size, sizeof(FWPrivateStats));
    const Stats stats = {block->correctable_fec_errors, block->uncorrectable_fec_errors};
    std::free(block);
    return stats;
  }

  static std::uint32_t Beacon() {
    std::uint32_t state = 0xEE;
    EXPECT_EQ(TORPI_GetAdapterBeaconStatus(HandleAt(0), &state), 0u);
    return state;
  }

  static std::uint8_t RebootRequired() {
    std::uint8_t required = 0xEE;
    EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
    return required;
  }

  // What the library says about a host whose port has this configuration.
  std::string MistakeOf(const std::string& configuration) const {
    UsePort(configuration);
    testing::internal::CaptureStderr();
    TORPI_GetAdapterList();
    std::string reported = testing::internal::GetCapturedStderr();
    NextRun();
    const std::size_t at = reported.find(": ");
    return at == std::string::npos ? reported : reported.substr(at + 2, reported.size() - at - 3);
  }
};

TEST_F(Config, FactorySettingsDependOnTheFamily) {
  UsePort("");
  EXPECT_EQ(Params().data_rate, 2u);
  EXPECT_EQ(Params().connection_options, 2u);
  EXPECT_EQ(Params().execution_throttle, 65535u);
  EXPECT_EQ(Params().max_luns_per_target, 256u);
  EXPECT_EQ(Params().disable_scm, 0u);
  NextRun();
  UsePort("", "cedar");
  EXPECT_EQ(Params().connection_options, 1u);
  EXPECT_EQ(Params().execution_throttle, 32u);
  EXPECT_EQ(Params().disable_scm, 1u);
}

TEST_F(Config, ParametersOfTheHostFile) {
  UsePort(
      "parameters: {data-rate: 64, connection: loop, operation-mode: timer, interrupt-delay: 9, frame-size: "
      "512, "
      "hard-loop-id: 5, use-hard-loop-id: true, loop-reset-delay: 6, execution-throttle: 7, login-retries: "
      "1, "
      "port-down-retries: 2, link-down-timeout: 3, luns-per-target: 4, fc-tape: false, lip-full-login: "
      "false, "
      "target-reset: false, out-of-order-frames: true, lr: true, fabric-assigned-wwn: true, vclm: false, "
      "virtual-lane: true}");
  const HBAParamsInfo record = Params();
  EXPECT_EQ(record.data_rate, 7u);
  EXPECT_EQ(record.connection_options, 0u);
  EXPECT_EQ(record.operation_mode, 5u);
  EXPECT_EQ(record.interrupt_delay_timer, 9u);
  EXPECT_EQ(record.frame_size, 512u);
  EXPECT_EQ(record.hard_loop_id, 5u);
  EXPECT_EQ(record.enable_hard_loop_id, 1u);
  EXPECT_EQ(record.loop_reset_delay, 6u);
  EXPECT_EQ(record.execution_throttle, 7u);
  EXPECT_EQ(record.login_retry_count, 1u);
  EXPECT_EQ(record.port_down_retry_count, 2u);
  EXPECT_EQ(record.link_down_timeout, 3u);
  EXPECT_EQ(record.max_luns_per_target, 4u);
  EXPECT_EQ(record.enable_fc_tape, 0u);
  EXPECT_EQ(record.enable_lip_full_login, 0u);
  EXPECT_EQ(record.enable_target_reset, 0u);
  EXPECT_EQ(record.receive_out_of_order, 1u);
  EXPECT_EQ(record.enable_lr, 1u);
  EXPECT_EQ(record.enable_fabric_assign_wwn, 1u);
  EXPECT_EQ(record.disable_scm, 1u);
  EXPECT_EQ(record.enable_virtual_lane, 1u);
}

TEST_F(Config, BootSettingsOfTheHostFile) {
  UsePort(
      "boot: {enabled: true, selectable: true, selective-login: true, selective-lun-login: true, "
      "world-login: true, "
      "fabric-assigned-lun: true, drives: [{wwpn: 50:06:0b:00:00:00:00:01, lun: 3}, {lun: 65535}]}");
  const HBAParamsInfo record = Boot();
  EXPECT_EQ(record.disable_bios, 0u);
  EXPECT_EQ(record.enable_selectable_boot, 1u);
  EXPECT_EQ(record.enable_selective_login, 1u);
  EXPECT_EQ(record.enable_selective_lun, 1u);
  EXPECT_EQ(record.force_world_login, 1u);
  EXPECT_EQ(record.enable_fabric_assign_boot_lun, 1u);
  EXPECT_EQ(record.primary_drive.port_name[7], 1);
  EXPECT_EQ(record.primary_drive.lun, 3);
  EXPECT_EQ(record.alternate_drive_1.lun, 65535);
}

TEST_F(Config, ParametersAndBootSettingsAreOneRecordThatLasts) {
  UseState();
  UsePort("");
  HBAParamsInfo record = Params();
  record.data_rate = 6;
  record.disable_bios = 0;
  EXPECT_EQ(TORPI_UpdateHBAParameters(HandleAt(0), &record), 0u);
  EXPECT_EQ(RebootRequired(), 1);
  EXPECT_EQ(Boot().disable_bios, 0u);
  record = Boot();
  record.alternate_drive_7 = {{0x50, 0, 0, 0, 0, 0, 0, 7}, 700};
  EXPECT_EQ(TORPI_SetBootDeviceInfo(HandleAt(0), &record), 0u);
  NextRun();
  EXPECT_EQ(Params().data_rate, 6u);
  EXPECT_EQ(Boot().alternate_drive_7.lun, 700);
  EXPECT_EQ(Boot().alternate_drive_7.port_name[7], 7);
}

TEST_F(Config, DefaultsAreRestored) {
  UsePort(
      "parameters: {data-rate: 16, frame-size: 512}, boot: {drives: [{lun: 3}]}, credit-recovery: {count: "
      "9}");
  EXPECT_EQ(Params().frame_size, 512u);
  EXPECT_EQ(TORPI_RestoreDefaultNVRAM(HandleAt(0)), 0u);
  EXPECT_EQ(Params().frame_size, 2048u);
  EXPECT_EQ(Params().data_rate, 2u);
  EXPECT_EQ(Boot().primary_drive.lun, 0);
  EXPECT_EQ(CreditOf(HandleAt(0)).configured, 3);
  EXPECT_EQ(RebootRequired(), 1);
}

TEST_F(Config, NvmeEntries) {
  UseState();
  UsePort(
      "nvme-boot: [{enabled: true, wwpn: 50:06:0b:00:00:00:00:01, wwnn: 50:06:0b:00:00:00:00:02, nqn: nqn.x, "
      "controller: 3, namespace: 4}]");
  NVMeBootRecord record = Nvme();
  EXPECT_EQ(record.entries[0].enable, 1);
  EXPECT_EQ(record.entries[0].port_name[7], 1);
  EXPECT_EQ(record.entries[0].node_name[7], 2);
  EXPECT_EQ(record.entries[0].nqn.View(), "nqn.x");
  EXPECT_EQ(record.entries[0].controller_id, 3);
  EXPECT_EQ(record.entries[0].namespace_id, 4u);
  record.entries[7].namespace_id = 0xFFFFFFFF;
  EXPECT_EQ(TORPI_SetNVMeBootDeviceEntries(HandleAt(0), &record), 0u);
  NextRun();
  EXPECT_EQ(Nvme().entries[7].namespace_id, 0xFFFFFFFFu);
  EXPECT_EQ(Nvme().entries[0].nqn.View(), "nqn.x");
}

TEST_F(Config, PortsWithoutNvmeEntries) {
  NVMeBootRecord record = {};
  UsePort("nvme-boot: none");
  EXPECT_EQ(TORPI_GetNVMeBootDeviceEntries(HandleAt(0), &record), 908u);
  EXPECT_EQ(TORPI_SetNVMeBootDeviceEntries(HandleAt(0), &record), 908u);
  NextRun();
  UsePort("", "elm");
  EXPECT_EQ(TORPI_GetNVMeBootDeviceEntries(HandleAt(0), &record), 121u);
  EXPECT_EQ(TORPI_SetNVMeBootDeviceEntries(HandleAt(0), &record), 121u);
}

TEST_F(Config, BootModeIsThatOfTheProcess) {
  UseState();
  EXPECT_EQ(TORPI_GetBfsConfigMode(), 1u);
  EXPECT_EQ(TORPI_SetBfsConfigMode(4), 0u);
  EXPECT_EQ(TORPI_GetBfsConfigMode(), 4u);
  EXPECT_EQ(TORPI_SetBfsConfigMode(3), 903u);
  EXPECT_EQ(TORPI_GetBfsConfigMode(), 4u);
  NextRun();
  EXPECT_EQ(TORPI_GetBfsConfigMode(), 1u);
  NextRun();
  UseHost("boot-mode: uefi\nadapters: []\n");
  EXPECT_EQ(TORPI_GetBfsConfigMode(), 2u);
}

TEST_F(Config, CreditRecoveryFollowsSettingAndLink) {
  UsePort("credit-recovery: {count: 9}");
  Credit credit = CreditOf(HandleAt(0));
  EXPECT_EQ(credit.status, 1);
  EXPECT_EQ(credit.configured, 9);
  EXPECT_EQ(credit.state, 1);
  EXPECT_EQ(credit.negotiated, 9);
  EXPECT_EQ(credit.reason, "");
  EXPECT_EQ(TORPI_FCSetBBCSupportInfo(HandleAt(0), 0, 15), 0u);
  EXPECT_EQ(RebootRequired(), 1);
  credit = CreditOf(HandleAt(0));
  EXPECT_EQ(credit.configured, 15);
  EXPECT_EQ(credit.state, 0);
  EXPECT_EQ(credit.negotiated, 0);
  EXPECT_EQ(credit.reason, "Feature disabled");
  NextRun();
  UsePort("", "iris", ", link: down");
  EXPECT_EQ(CreditOf(HandleAt(0)).reason, "Link down");
  NextRun();
  UsePort("credit-recovery: {state: offline, negotiated: 7, reason: Not agreed}");
  credit = CreditOf(HandleAt(0));
  EXPECT_EQ(credit.state, 0);
  EXPECT_EQ(credit.negotiated, 7);
  EXPECT_EQ(credit.reason, "Not agreed");
}

TEST_F(Config, CreditRecoveryIsRefused) {
  UsePort("");
  EXPECT_EQ(TORPI_FCSetBBCSupportInfo(HandleAt(0), 2, 0), 903u);
  EXPECT_EQ(TORPI_FCSetBBCSupportInfo(HandleAt(0), 1, 16), 903u);
  NextRun();
  UsePort("", "elm");
  EXPECT_EQ(TORPI_FCSetBBCSupportInfo(HandleAt(0), 1, 1), 121u);
}

TEST_F(Config, ErrorCorrectionAndItsCounters) {
  UseState();
  UsePort("fec: {enabled: false, correctable-errors: 4294967296, uncorrectable-errors: 2}", "elm");
  std::uint32_t setting = 9;
  EXPECT_EQ(TORPI_FCGetFECSupportInfo(HandleAt(0), &setting), 0u);
  EXPECT_EQ(setting, 0u);
  EXPECT_EQ(StatsOf(HandleAt(0)).correctable, 4294967296u);
  EXPECT_EQ(StatsOf(HandleAt(0)).uncorrectable, 2u);
  EXPECT_EQ(TORPI_ResetFECCounters(HandleAt(0)), 0u);
  EXPECT_EQ(RebootRequired(), 0);
  EXPECT_EQ(TORPI_FCSetFECSupportInfo(HandleAt(0), 1), 0u);
  EXPECT_EQ(TORPI_FCSetFECSupportInfo(HandleAt(0), 2), 903u);
  EXPECT_EQ(RebootRequired(), 1);
  NextRun();
  EXPECT_EQ(TORPI_FCGetFECSupportInfo(HandleAt(0), &setting), 0u);
  EXPECT_EQ(setting, 1u);
  EXPECT_EQ(StatsOf(HandleAt(0)).correctable, 0u);
  NextRun();
  UsePort("", "birch");
  EXPECT_EQ(TORPI_FCGetFECSupportInfo(HandleAt(0), &setting), 121u);
  EXPECT_EQ(TORPI_ResetFECCounters(HandleAt(0)), 121u);
}

TEST_F(Config, BeaconLasts) {
  UseState();
  UsePort("beacon: 7");
  EXPECT_EQ(Beacon(), 7u);
  EXPECT_EQ(TORPI_UpdateAdapterBeaconStatus(HandleAt(0), 1), 0u);
  EXPECT_EQ(TORPI_UpdateAdapterBeaconStatus(HandleAt(0), 2), 903u);
  EXPECT_EQ(RebootRequired(), 0);
  NextRun();
  EXPECT_EQ(Beacon(), 1u);
}

TEST_F(Config, NvramImageComesBackAsItWas) {
  UsePort(
      "parameters: {data-rate: 32, connection: loop, frame-size: 1024, vclm: false, virtual-lane: true, lr: "
      "true}, "
      "boot: {enabled: true, world-login: true, drives: [{wwpn: 50:06:0b:00:00:00:00:01, lun: 3}, {lun: "
      "9}]}");
  const HBAParamsInfo before = Params();
  EXPECT_EQ(TORPI_SaveSingleAdapterNVRAMToFile(HandleAt(0), Path("image").c_str()), 0u);
  EXPECT_EQ(TORPI_RestoreDefaultNVRAM(HandleAt(0)), 0u);
  EXPECT_NE(Params().data_rate, before.data_rate);
  EXPECT_EQ(TORPI_UpdateAdapterNVRAMFromFile(HandleAt(0), Path("image").c_str()), 0u);
  const HBAParamsInfo after = Params();
  EXPECT_EQ(std::memcmp(&after, &before, sizeof after), 0);
}

TEST_F(Config, NvramImageAsText) {
  UsePort(
      "parameters: {data-rate: 32, vclm: false}, boot: {drives: [{wwpn: 50:06:0b:00:00:00:00:01, lun: 3}]}");
  EXPECT_EQ(TORPI_SaveSingleAdapterNVRAMToFile(HandleAt(0), Path("image").c_str()), 0u);
  const std::string image = Read("image");
  EXPECT_TRUE(image.starts_with("ZNFC NVRAM image\nfamilies: hazel\nparameters.data-rate: 6\n")) << image;
  EXPECT_NE(image.find("\nparameters.vclm: 0\nvirtual-lane: 0\nboot.enabled: 0\n"), std::string::npos)
      << image;
  EXPECT_NE(image.find("\ndrive-0: 50:06:0b:00:00:00:00:01 3\n"), std::string::npos) << image;
  EXPECT_EQ(image.find("checksum: "), image.size() - 19);
}

TEST_F(Config, NvramImageIsRefusedAsAWhole) {
  struct Bad {
    const char* lines;
    std::uint32_t checksum;
  };
  // The checksums are those of zlib.crc32.
  const Bad images[] = {
      {"parameters.frame-size: 512\nparameters.nothing: 1\n", 0x8FEAD310},
      {"parameters.frame-size: 512\nparameters.vclm: 2\n", 0x22727C31},
      {"parameters.frame-size: 512\nvirtual-lane: 256\n", 0xCD9427C4},
      {"parameters.frame-size: 512\ndrive-8: 00:00:00:00:00:00:00:00 0\n", 0x899BD54E},
      {"parameters.frame-size: 512\ndrive-0: 00:00:00:00:00:00:00 0\n", 0x2F8DC2D7},
      {"parameters.frame-size: 512\ndrive-0: 00:00:00:00:00:00:00:00 65536\n", 0xC6C0093E},
  };
  UsePort("");
  for (const Bad& bad : images) {
    char checksum[32];
    std::snprintf(checksum, sizeof checksum, "checksum: %08X\n", bad.checksum);
    const std::string image = std::string("ZNFC NVRAM image\n") + bad.lines + checksum;
    EXPECT_EQ(TORPI_UpdateAdapterNVRAMFromFile(HandleAt(0), Write("image", image).c_str()), 105u)
        << bad.lines;
    EXPECT_EQ(Params().frame_size, 2048u);
  }
}

TEST_F(Config, NvramImageThatCannotBeWritten) {
  UsePort("");
  EXPECT_EQ(TORPI_SaveSingleAdapterNVRAMToFile(HandleAt(0), Path("no/such/folder").c_str()), 3u);
  EXPECT_EQ(TORPI_SaveSingleAdapterNVRAMToFile(HandleAt(0), nullptr), 903u);
  if (std::filesystem::exists("/dev/full")) {
    EXPECT_EQ(TORPI_SaveSingleAdapterNVRAMToFile(HandleAt(0), "/dev/full"), 101u);
  }
}

TEST_F(Config, VirtualPortsHaveNoConfiguration) {
  UsePort("", "hazel", ", npiv: [{}]");
  const DeviceHandle* const handle = &EntryAt(0, 0, 1)->handle;
  HBAParamsInfo record = {};
  std::uint32_t word = 0;
  EXPECT_EQ(TORPI_GetBootDeviceInfo(handle, &record, 0), 29u);
  EXPECT_EQ(TORPI_UpdateHBAParameters(handle, &record), 29u);
  EXPECT_EQ(TORPI_GetAdapterBeaconStatus(handle, &word), 29u);
}

TEST_F(Config, MissingPlacesForResults) {
  UsePort("");
  HBAParamsInfo record = {};
  std::uint32_t word = 0;
  EXPECT_EQ(TORPI_GetHBAParamsInfo(HandleAt(0), &record, nullptr), 903u);
  EXPECT_EQ(TORPI_GetBootDeviceInfo(HandleAt(0), nullptr, 0), 903u);
  EXPECT_EQ(TORPI_UpdateHBAParameters(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_SetNVMeBootDeviceEntries(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_GetFWPrivateStats(HandleAt(0), nullptr, &word), 903u);
  EXPECT_EQ(TORPI_FCGetFECSupportInfo(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_FCGetBBCSupportInfoEx(HandleAt(0), nullptr, nullptr, nullptr, nullptr, nullptr, 0), 903u);
}

TEST_F(Config, WholeRecordsAreInTheTrace) {
  UsePort("parameters: {data-rate: 8}");
  const HBAParamsInfo record = Params();
  EXPECT_EQ(TORPI_UpdateHBAParameters(HandleAt(0), &record), 0u);
  const std::string trace = Read("trace");
  const std::string begin = "0400000002000000";  // data rate 4, loop preferred
  EXPECT_NE(trace.find("-> 0 record=" + begin), std::string::npos);
  const std::size_t call = trace.find("TORPI_UpdateHBAParameters(port=");
  ASSERT_NE(call, std::string::npos);
  const std::string line = trace.substr(call, trace.find('\n', call) - call);
  EXPECT_NE(line.find(", \"" + begin), std::string::npos);
  EXPECT_EQ(line.rfind("\") -> 0") - line.find(", \"") - 3, 1024u);
}

TEST_F(Config, MistakesAreReported) {
  EXPECT_EQ(MistakeOf("parameter: {}"),
            "parameter: expected one of the keys parameters, boot, nvme-boot, credit-recovery, fec, beacon; "
            "did you mean "
            "'parameters'?");
  EXPECT_EQ(
      MistakeOf("parameters: {data-rate: fast}"),
      "data-rate: expected one of 1, 2, auto, 4, 8, 16, 32, 64, or a number up to 4294967295, got 'fast'");
  EXPECT_EQ(MistakeOf("parameters: {lr: 1}"), "lr: expected true or false, got '1'");
  EXPECT_EQ(MistakeOf("boot: {drives: [{}, {}, {}, {}, {}, {}, {}, {}, {lun: 1}]}").substr(0, 37),
            "drives: expected at most 8 drives, go");
  EXPECT_EQ(MistakeOf("boot: {drives: [{lun: 65536}]}"),
            "lun: expected a number from 0 to 65535, got '65536'");
  EXPECT_EQ(MistakeOf("beacon: blink"),
            "beacon: expected one of off, on, or a number up to 4294967295, got 'blink'");
  EXPECT_EQ(MistakeOf("credit-recovery: {count: 256}"), "count: expected a number from 0 to 255, got '256'");
}

}  // namespace
