#include "recording/recording_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

using recording::Asked;
using recording::HostRecording;

// The text past its head, which ends with the line of the version.
std::string TextOf(const HostRecording& host) {
  const std::string text = recording::ToText(host);
  const std::string version = "snapshot: 1\n";
  const std::size_t at = text.find(version);
  EXPECT_NE(at, std::string::npos);
  return text.substr(at + version.size());
}

// A host with one protocol entry.
HostRecording WithPort() {
  HostRecording host;
  host.has_list = true;
  host.list.count = 1;
  recording::AdapterRecording& adapter = host.adapters.emplace_back();
  adapter.has_ports = true;
  recording::PhyPortRecording& port = adapter.ports.emplace_back();
  port.has_protocols = true;
  port.protocols.emplace_back();
  return host;
}

recording::ProtocolRecording& PortOf(HostRecording& host) {
  return host.adapters[0].ports[0].protocols[0];
}

// The lines of the protocol entry, without their common indent.
std::string PortText(const HostRecording& host) {
  std::string text = TextOf(host);
  const std::string before = "          - record: zeros\n";
  text = text.substr(text.find(before) + before.size());
  std::string lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at);
    lines += text.substr(at + 12, end + 1 - at - 12);
    at = end + 1;
  }
  return lines;
}

TEST(RecordingText, HostWithoutAList) {
  EXPECT_EQ(TextOf({}), "no-list: true\n");
}

TEST(RecordingText, HostWithoutAdapters) {
  HostRecording host;
  host.has_list = true;
  host.reboot_required = {Asked::kYes, 0, 1};
  host.boot_mode = {Asked::kMissing, 0, 0};
  EXPECT_EQ(TextOf(host), "reboot-required: 1\nboot-mode: missing\nlist: zeros\n");
}

TEST(RecordingText, ListsOfEveryLevel) {
  HostRecording host = WithPort();
  std::memcpy(host.adapters[0].record.serial_number.bytes, "A\n1", 3);
  host.adapters[0].record.type = 2;
  host.adapters[0].ports[0].record.number = 258;
  PortOf(host).targets.emplace_back().record.number = 7;
  host.adapters.emplace_back();
  EXPECT_EQ(TextOf(host),
            "list: |\n"
            "  0: 01  # count 1\n"
            "adapters:\n"
            "  # Adapter__A.1\n"
            "  - record: |\n"
            "      0: \"A\" 0a \"1\"  # serial number\n"
            "      32: 02  # type 2\n"
            "    port-list: zeros\n"
            "    ports:\n"
            "      # port 258\n"
            "      - record: |\n"
            "          0: 0201  # port number 258\n"
            "        protocol-list: zeros\n"
            "        protocols:\n"
            "          # FC_00:00:00:00:00:00:00:00\n"
            "          - record: zeros\n"
            "            targets:\n"
            "              # FC_00:00:00:00:00:00:00:00_Target_00:00:00:00:00:00:00:00\n"
            "              - record: |\n"
            "                  22: 07  # target number 7\n"
            "  # Adapter__\n"
            "  - record: zeros\n");
}

TEST(RecordingText, AnswersThatAreGood) {
  HostRecording host = WithPort();
  recording::ProtocolRecording& port = PortOf(host);
  port.personality = {Asked::kYes, 0, 1};
  port.temperature.asked = Asked::kYes;
  port.temperature.record.celsius = 51;
  port.lockdown.asked = Asked::kYes;
  port.vpd = {Asked::kYes, 0, {3, {0x82, 0x01}}};
  port.firmware_statistics.asked = Asked::kYes;
  port.firmware_statistics.record.size = 1024;
  port.firmware_statistics.record.block.correctable_fec_errors = 41;
  EXPECT_EQ(PortText(host),
            "personality: 1\n"
            "temperature: |\n"
            "  0: 33  # celsius 51\n"
            "lockdown: zeros\n"
            "vpd:\n"
            "  size: 3\n"
            "  bytes: |\n"
            "    0: 8201\n"
            "firmware-statistics:\n"
            "  size: 1024\n"
            "  block: |\n"
            "    256: 29  # correctable FEC errors 41\n");
}

TEST(RecordingText, AnswersThatAreNot) {
  HostRecording host = WithPort();
  recording::ProtocolRecording& port = PortOf(host);
  port.memo_block.asked = Asked::kMissing;
  port.personality = {Asked::kYes, 150, 0};
  port.temperature.asked = Asked::kYes;
  port.temperature.result = 4294967295;
  port.lockdown = {Asked::kYes, 5, {}};
  port.lockdown.record.mpi_flag = 0xa5;
  port.vpd = {Asked::kYes, 121, {1024, {}}};
  port.beacon = {Asked::kYes, 9, 7};
  EXPECT_EQ(PortText(host),
            "memo-block: missing\n"
            "personality:\n"
            "  result: 150\n"
            "temperature:\n"
            "  result: 4294967295\n"
            "lockdown:\n"
            "  result: 5\n"
            "  record: |\n"
            "    2: a5  # MPI flag 165\n"
            "vpd:\n"
            "  result: 121\n"
            "  size: 1024\n"
            "beacon:\n"
            "  result: 9\n"
            "  value: 7\n");
}

using Names = std::vector<std::pair<std::string, std::string>>;

template <class Answered>
Names NamesOfAnswers(Answered& answered) {
  Names names;
  VisitAnswers(answered,
               [&names](const char* key, const char* call, auto&) { names.emplace_back(key, call); });
  return names;
}

// The keys are those of docs/snapshots.md, the calls those of the library.
TEST(RecordingText, AnswersHaveTheirKeysAndCalls) {
  recording::ProtocolRecording port;
  EXPECT_EQ(NamesOfAnswers(port), (Names{{"flash-versions", "TORPI_GetFlashComponentVersion"},
                                         {"memo-block", "TORPI_GetAdapterFlashMemoBlock"},
                                         {"personality-change", "TORPI_CheckOrindaPersonalityChangeOption"},
                                         {"personality", "TORPI_GetPersonalityType"},
                                         {"temperature", "TORPI_GetAdapterAsicBoardTemperature"},
                                         {"lockdown", "TORPI_GetLockdownStatus"},
                                         {"vpd", "TORPI_GetVpd"},
                                         {"rdp", "TORPI_DiagnosticsRDPTest"},
                                         {"sfp", "TORPI_GetSFPDataEx"},
                                         {"sfp-straight", "TORPI_GetSFPDataEx"},
                                         {"hba-params", "TORPI_GetHBAParamsInfo"},
                                         {"credit-recovery", "TORPI_FCGetBBCSupportInfoEx"},
                                         {"error-correction", "TORPI_FCGetFECSupportInfo"},
                                         {"firmware-statistics", "TORPI_GetFWPrivateStats"},
                                         {"mezzanine", "TORPI_IsMezzAdapter"},
                                         {"boot", "TORPI_GetBootDeviceInfo"},
                                         {"nvme-boot", "TORPI_GetNVMeBootDeviceEntries"},
                                         {"beacon", "TORPI_GetAdapterBeaconStatus"},
                                         {"diagnostic-port", "TORPI_CheckAdapterDPortOption"},
                                         {"host-nqn-registered", "TORPI_GetNVMeHostNQNStatus"},
                                         {"congestion-enabled", "TORPI_IsVCLMFeatureEnabled"},
                                         {"congestion-statistics", "TORPI_GetSCMRStatisticsList"},
                                         {"congestion-profile", "TORPI_GetSCMRProfile"}}));
  recording::TargetRecording target;
  EXPECT_EQ(NamesOfAnswers(target),
            (Names{{"statistics", "TORPI_GetPortStatisticsFC"}, {"link-speed", "TORPI_GetTargetLinkSpeed"}}));
}

TEST(RecordingText, TextsOfAModuleAreNamed) {
  HostRecording host = WithPort();
  recording::ProtocolRecording& port = PortOf(host);
  port.sfp.asked = port.sfp_straight.asked = Asked::kYes;
  port.sfp.record.bytes[0] = 0x03;
  std::memcpy(port.sfp.record.bytes + 68, "SN1             ", 16);
  port.sfp_straight.record.bytes[0] = 0x11;
  std::memcpy(port.sfp_straight.record.bytes + 196, "Q2", 2);
  EXPECT_EQ(PortText(host),
            "sfp: |\n"
            "  0: 03\n"
            "  68: \"SN1             \"  # serial number\n"
            "sfp-straight: |\n"
            "  0: 11\n"
            "  196: \"Q2\"  # serial number\n");
}

TEST(RecordingText, StatisticsAndNullBlocks) {
  HostRecording host = WithPort();
  recording::ProtocolRecording& port = PortOf(host);
  port.firmware_statistics.asked = Asked::kYes;
  port.firmware_statistics.record.is_null = true;
  port.congestion_statistics.asked = Asked::kYes;
  port.congestion_statistics.record.elements.resize(2);
  port.congestion_statistics.record.elements[1].pun = 1;
  port.congestion_statistics.record.free_result = 5;
  EXPECT_EQ(PortText(host),
            "firmware-statistics:\n"
            "  size: 0\n"
            "congestion-statistics:\n"
            "  free-result: 5\n"
            "  elements:\n"
            "    - record: zeros\n"
            "    - record: |\n"
            "        248: 01  # pun 1\n");
}

TEST(RecordingText, LunsAreChangesOfTheOneBefore) {
  HostRecording host = WithPort();
  recording::TargetRecording& target = PortOf(host).targets.emplace_back();
  target.luns.resize(4);
  std::memcpy(target.luns[0].vendor_id.bytes, "LABSTOR", 7);
  target.luns[1] = target.luns[2] = target.luns[3] = target.luns[0];
  target.luns[1].number = target.luns[2].number = 1;
  target.luns[3].unique_id[31] = 0x0c;
  target.link_speed = {Asked::kYes, 0, 22};
  EXPECT_EQ(PortText(host),
            "targets:\n"
            "  # FC_00:00:00:00:00:00:00:00_Target_00:00:00:00:00:00:00:00\n"
            "  - record: zeros\n"
            "    link-speed: 22\n"
            "    luns: |\n"
            "      14: \"LABSTOR\"\n"
            "      0: 01\n"
            "      same\n"
            "      0: 00 74: 0c\n");
}

}  // namespace
