#include <string>
#include <string_view>

#include "unit/simulator/lab_fixture.h"
#include "unit/simulator/marked_text.h"
#include "unit/simulator/source_path.h"

namespace {

struct BadHost {
  const char* name;
  const char* yaml;     // "^" ahead of the mistake
  const char* message;  // after its place
};

std::ostream& operator<<(std::ostream& out, const BadHost& host) {
  return out << host.name;
}

constexpr BadHost kBadHosts[] = {
    {"UnknownTopKey", "^adapter: []\n",
     "adapter: expected one of the keys adapters, no-list, reboot-required, boot-mode, chatter, faults; did "
     "you mean 'adapters'?"},
    {"EmptyFile", "^", "file: expected a map, got nothing"},
    {"TextOnly", "^hello\n", "file: expected a map, got 'hello'"},
    {"AdaptersNoList", "adapters: ^3\n", "adapters: expected a list, got '3'"},
    {"AdapterNoMap", "adapters:\n  - ^elm\n", "adapters: expected a map, got 'elm'"},
    {"NoFamily", "adapters:\n  - ^serial: A\n", "family: expected here, got nothing"},
    {"UnknownFamily", "adapters:\n  - family: ^oak\n",
     "family: expected one of aster, birch, cedar, ginkgo, elm, fern, hazel, iris, dahlia, got 'oak'"},
    {"SerialTooLong", "adapters:\n  - family: elm\n    serial: ^123456789012345678901234567890123\n",
     "serial: expected a text of at most 32 bytes, got '123456789012345678901234567890123'"},
    {"ModelNoText", "adapters:\n  - family: elm\n    model: ^[a]\n",
     "model: expected a text of at most 32 bytes, got a list"},
    {"BusOutOfRange", "adapters:\n  - family: elm\n    bus: ^65536\n",
     "bus: expected a number from 0 to 65535, got '65536'"},
    {"NegativeNumber", "adapters:\n  - family: elm\n    type: ^-1\n",
     "type: expected a number from 0 to 4294967295, got '-1'"},
    {"NumberWithRest", "adapters:\n  - family: elm\n    device-id: ^0x34g\n",
     "device-id: expected a number from 0 to 65535, got '0x34g'"},
    {"PersonalityWord", "adapters:\n  - family: elm\n    personality: ^iscsi\n",
     "personality: expected one of fc, cna, or a number up to 255, got 'iscsi'"},
    {"NoBool", "adapters:\n  - family: elm\n    firmware-lockdown: ^yes\n",
     "firmware-lockdown: expected true or false, got 'yes'"},
    {"KeyTwice", "adapters:\n  - family: elm\n    bus: 1\n    ^bus: 2\n", "bus: is here twice"},
    {"UnknownVersion", "adapters:\n  - family: elm\n    versions:\n      ^nvram: 1.2\n",
     "nvram: expected one of the keys multiboot, firmware, bios, efi, fcode, driver, running-firmware, "
     "running-mpi, running-pep"},
    {"UnknownComponent", "adapters:\n  - family: elm\n    flash:\n      ^bios: 1.2\n",
     "bios: expected one of the keys pep-firmware, pep-softrom, pep-board-config, preload-firmware-area, "
     "fc-board-config, mpi-firmware, mpi-softrom, pcie-serdes"},
    {"ComponentVersion", "adapters:\n  - family: elm\n    flash:\n      mpi-firmware: ^1.256.0\n",
     "mpi-firmware: expected a version like 9.12.01, or none, got '1.256.0'"},
    {"MemoSignature", "adapters:\n  - family: elm\n    memo-block:\n      signature: ^FMBSX\n",
     "signature: expected a text of at most 4 bytes, got 'FMBSX'"},
    {"MemoDate", "adapters:\n  - family: elm\n    memo-block:\n      build-date: ^2026-02-30\n",
     "build-date: expected a date like 2026-03-14, got '2026-02-30'"},
    {"MemoTime", "adapters:\n  - family: elm\n    memo-block:\n      updated: ^2026-02-03 24:00:00\n",
     "updated: expected a time like \"2026-03-14 09:26:53\", got '2026-02-03 24:00:00'"},
    {"MemoToolVersion", "adapters:\n  - family: elm\n    memo-block:\n      tool-version: ^1.9\n",
     "tool-version: expected four numbers like 1.9.0.0, got '1.9'"},
    {"PortsNoList", "adapters:\n  - family: elm\n    ports: ^2\n", "ports: expected a list, got '2'"},
    {"SpeedWord", "adapters:\n  - family: elm\n    ports:\n      - speed: ^fast\n",
     "speed: expected one of 1, 2, 4, 8, 10, 16, 32, 64, got 'fast'"},
    {"LinkWord", "adapters:\n  - family: elm\n    ports:\n      - link: ^upp\n",
     "link: expected one of up, down, or a number up to 255, got 'upp'"},
    {"PortNameShort", "adapters:\n  - family: elm\n    ports:\n      - wwpn: ^21:00:00:0e:1e:11:22\n",
     "wwpn: expected 8 hexadecimal octets joined by ':', got '21:00:00:0e:1e:11:22'"},
    {"PortIdDigits", "adapters:\n  - family: elm\n    ports:\n      - port-id: ^01:0g:00\n",
     "port-id: expected 3 hexadecimal octets joined by ':', got '01:0g:00'"},
    {"UnknownPortKey", "adapters:\n  - family: elm\n    ports:\n      - ^speeed: 16\n",
     "speeed: expected one of the keys wwpn, wwnn, port-id, link, speed, speed-code, type, protocol, "
     "port-type, connection, supported-speeds, error-correction, principal-fabric, adjacent-fabric, "
     "host-nqn, host-id, driver, running-firmware, running-mpi, running-pep, capabilities, driver-flags, "
     "maintenance, rom, pci-bus, pci-device, pci-function, pci-capability, pci-status, driver-counters, "
     "firmware-counters, diagnostics, configuration, congestion, temperature, lockdown, vpd, rdp, "
     "firmware-dump, targets, sfp, number, no-protocols, npiv; did you mean 'speed'?"},
    {"SevenCounters",
     "adapters:\n  - family: elm\n    ports:\n      - driver-counters: [1, 2, 3, 4, 5, 6, ^7]\n",
     "driver-counters: expected at most 6 numbers, got 7"},
    {"SamePortName",
     "adapters:\n  - family: elm\n    ports:\n      - wwpn: 21:00:00:0E:1e:11:22:33\n      - wwpn: "
     "^21:00:00:0e:1e:11:22:33\n",
     "wwpn: expected a name of its own, got '21:00:00:0e:1e:11:22:33' a second time"},
    {"NumberInVirtualPort", "adapters:\n  - family: elm\n    ports:\n      - npiv:\n        - ^number: 3\n",
     "number: expected one of the keys wwpn, wwnn, port-id, link, speed, speed-code, type, protocol, "
     "port-type, connection, supported-speeds, error-correction, principal-fabric, adjacent-fabric, "
     "host-nqn, host-id, driver, running-firmware, running-mpi, running-pep, capabilities, driver-flags, "
     "maintenance, rom, pci-bus, pci-device, pci-function, pci-capability, pci-status, driver-counters, "
     "firmware-counters, diagnostics, configuration, congestion, temperature, lockdown, vpd, rdp, "
     "firmware-dump, targets"},
    {"FaultCall", "faults:\n  - {call: ^TORPI_Nothing, result: 1}\n",
     "call: expected the name of a library call, got 'TORPI_Nothing'"},
    {"FaultWithoutCall", "faults:\n  - ^result: 1\n", "call: expected here, got nothing"},
    {"FaultWithoutResult", "faults:\n  - ^call: TORPI_GetVpd\n", "result: expected here, got nothing"},
    {"FaultResult", "faults:\n  - {call: TORPI_GetVpd, ^result: null}\n",
     "result: expected a number for TORPI_GetVpd, got 'null'"},
    {"FaultPointer", "faults:\n  - {call: TORPI_GetAdapterList, result: ^3}\n",
     "result: expected null for TORPI_GetAdapterList, got '3'"},
    {"Chatter", "chatter: ^loud\n", "chatter: expected one of false, true, ports, got 'loud'"},
};

class BadHostFile : public LabTest, public testing::WithParamInterface<BadHost> {};

TEST_P(BadHostFile, IsReportedWithItsLineAndGivesAnEmptyList) {
  const MarkedText host = WithoutMark(GetParam().yaml);
  UseHost(host.text);
  testing::internal::CaptureStderr();
  const AdapterList* list = TORPI_GetAdapterList();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->first, nullptr);
  EXPECT_EQ(list->count, 0u);
  EXPECT_EQ(TORPI_GetAdapterList(), list);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("lab.yaml") + host.place + ": " + GetParam().message + "\n");
}

INSTANTIATE_TEST_SUITE_P(HostFile, BadHostFile, testing::ValuesIn(kBadHosts),
                         [](const auto& test) { return test.param.name; });

using HostFile = LabTest;

TEST_F(HostFile, BrokenYamlIsReportedWithItsLine) {
  UseHost("adapters:\n  - family: [elm\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(
      testing::internal::GetCapturedStderr(),
      Path("lab.yaml") + ":3:1: expected ',' or the end of the brackets that begin at line 2, column 13\n");
}

TEST_F(HostFile, AllMistakesAreReportedInTheirOrder) {
  UseHost(
      "adapters:\n"
      "  - family: dahla\n"
      "    bus: x\n"
      "    bus: 3\n"
      "    ports:\n"
      "      - sped: 16\n"
      "        link: dwon\n"
      "        driver-counters: [1, b, c]\n"
      "        sfp: {image: none.hex}\n"
      "        targets: {type: fpc, luns: [3, x]}\n"
      "        npiv: [{sfp: none}]\n"
      "chater: true\n"
      "faults:\n"
      "  - {call: TORPI_GetVdp, result: 1}\n"
      "  - {once: true}\n");
  const std::string key = ": expected one of the keys ";
  const struct {
    const char* place;
    std::string begin;
    const char* end;
  } rows[] = {
      {":2:13: ", "family: expected one of aster, ", "got 'dahla'; did you mean 'dahlia'?"},
      {":3:10: ", "bus: expected a number from 0 to 65535, ", "got 'x'"},
      {":4:5: ", "bus: ", "is here twice"},
      {":6:9: ", "sped" + key, "; did you mean 'speed'?"},
      {":7:15: ", "link: expected one of up, down, ", "got 'dwon'; did you mean 'down'?"},
      {":8:30: ", "driver-counters: expected a number from 0 to 4294967295, ", "got 'b'"},
      {":8:33: ", "driver-counters: expected a number from 0 to 4294967295, ", "got 'c'"},
      {":9:22: ", "image: expected a file that can be read (No such file or directory), ", "got 'none.hex'"},
      {":10:25: ", "type: expected one of fcp, nvme, ", "got 'fpc'; did you mean 'fcp'?"},
      {":10:40: ", "luns: expected a number or a range like 0-63, up to 65535, ", "got 'x'"},
      {":11:17: ", "sfp" + key, ", firmware-dump, targets"},
      {":12:1: ", "chater" + key, "; did you mean 'chatter'?"},
      {":14:12: ", "call: expected the name of a library call, ",
       "got 'TORPI_GetVdp'; did you mean 'TORPI_GetVpd'?"},
      {":15:5: ", "call: expected here, ", "got nothing"},
      {":15:5: ", "result: expected here, ", "got nothing"},
  };
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  std::string reported = testing::internal::GetCapturedStderr();
  for (const auto& row : rows) {
    const std::string line = reported.substr(0, reported.find('\n'));
    EXPECT_TRUE(line.starts_with(Path("lab.yaml") + row.place + row.begin)) << row.place << line;
    EXPECT_TRUE(line.ends_with(row.end)) << line;
    reported.erase(0, line.size() + 1);
  }
  EXPECT_EQ(reported, "");
}

TEST_F(HostFile, MistakeInAnAliasedPartIsReportedOnce) {
  UseHost("adapters:\n  - &a {family: elm, bus: x}\n  - *a\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("lab.yaml") + ":2:27: bus: expected a number from 0 to 65535, got 'x'\n");
}

TEST_F(HostFile, WordsOfTheFileAreShownWithoutControlCharacters) {
  UseHost("adapters:\n  - family: \"\\e[31m\\n" + std::string(100, 'x') + "\"\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  const std::string reported = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(reported.ends_with("got '\\x1b[31m\\n" + std::string(58, 'x') + "...'\n")) << reported;
}

TEST_F(HostFile, MissingFileIsReported) {
  setenv("TORPI_LAB_HOST", Path("none.yaml").c_str(), 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("none.yaml") + ": can't be read: No such file or directory\n");
}

TEST_F(HostFile, HostWithoutAdaptersIsAnEmptyList) {
  UseHost("adapters: []\n");
  testing::internal::CaptureStderr();
  ASSERT_NE(TORPI_GetAdapterList(), nullptr);
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(HostFile, NoListGivesNull) {
  UseHost("no-list: true\nadapters:\n  - family: elm\n");
  EXPECT_EQ(TORPI_GetAdapterList(), nullptr);
  EXPECT_EQ(Read("trace"), "TORPI_GetAdapterList() -> null\n");
}

TEST_F(HostFile, KeysHoldInAnyOrder) {
  UseHost(
      "adapters:\n"
      "  - ports:\n"
      "      - {speed: 8, port-id: 0a:0b:0c, link: down}\n"
      "      - {link: down}\n"
      "    vendor-id: 0x1077\n"
      "    family: hazel\n");
  EXPECT_EQ(EntryAt(0)->pci.vendor_id, 0x1077);
  EXPECT_EQ(EntryAt(0)->port_state, PortState::kOffline);
  EXPECT_EQ(EntryAt(0)->port_speed, 8u);
  EXPECT_EQ(EntryAt(0)->port_id.octets[2], 0x0c);
  EXPECT_EQ(EntryAt(0, 1)->port_speed, 0u);
  EXPECT_EQ(EntryAt(0, 1)->port_id.octets[0], 0);
  EXPECT_EQ(EntryAt(0, 1)->principal_fabric_name[0], 0);
}

TEST_F(HostFile, MissingPortsAndMissingProtocolsAreNullPointers) {
  UseHost(
      "adapters:\n  - family: elm\n  - {family: elm, ports: []}\n  - {family: elm, ports: [{no-protocols: "
      "true}]}\n");
  EXPECT_EQ(AdapterAt(0)->ports, nullptr);
  ASSERT_NE(AdapterAt(1)->ports, nullptr);
  EXPECT_EQ(AdapterAt(1)->ports->first, nullptr);
  EXPECT_EQ(AdapterAt(2)->ports->first->protocols, nullptr);
  EXPECT_EQ(TORPI_GetAdapterList()->count, 3u);
}

TEST_F(HostFile, ReadyExamplesAreAccepted) {
  for (const char* name : {"small", "all-families", "failing", "odd", "diagnostics", "modules"}) {
    NextRun();
    setenv("TORPI_LAB_HOST", SourcePath(std::string("examples/") + name + ".yaml").c_str(), 1);
    testing::internal::CaptureStderr();
    EXPECT_NE(TORPI_GetAdapterList()->first, nullptr) << name;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << name;
  }
}

TEST_F(HostFile, DocumentedHostsAreAccepted) {
  const std::string text = ContentOf(SourcePath("docs/lab-host.md"));
  constexpr std::string_view kOpen = "```yaml\n";
  std::size_t hosts = 0;
  for (std::size_t at = text.find(kOpen); at != text.npos; at = text.find(kOpen, at)) {
    at += kOpen.size();
    NextRun();
    UseHost(text.substr(at, text.find("```", at) - at));
    testing::internal::CaptureStderr();
    TORPI_GetAdapterList();  // null once in one of them
    EXPECT_NE(TORPI_GetAdapterList()->first, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ++hosts;
  }
  EXPECT_GE(hosts, 6u);
}

}  // namespace
