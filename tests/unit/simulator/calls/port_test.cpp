#include <cstdlib>
#include <iterator>
#include <string>

#include "unit/simulator/lab_fixture.h"
#include "unit/simulator/source_path.h"

namespace {

constexpr std::uint32_t kRoom = 1024;

// What a call hands over in a buffer whose size the caller gives.
struct Answer {
  LibraryStatus result;
  std::string bytes;
};

class PortReports : public LabTest {
 protected:
  // One adapter of the family with one port of these keys.
  void UsePort(const std::string& keys, const std::string& family = "hazel",
               const std::string& adapter = "") const {
    UseHost("adapters:\n  - {family: " + family + ", serial: S1, " + adapter + "ports: [{" + keys + "}]}\n");
  }

  static Answer Vpd(std::uint32_t room = kRoom) { return VpdOf(HandleAt(0), room); }
  static Answer VpdOf(const DeviceHandle* handle, std::uint32_t room = kRoom) {
    std::string buffer(kRoom, '\0');
    std::uint32_t size = room;
    const LibraryStatus result =
        TORPI_GetVpd(handle, 0, reinterpret_cast<std::uint8_t*>(buffer.data()), &size);
    return {result, buffer.substr(0, result == 0 ? size : 0)};
  }

  static Answer Rdp() {
    std::string buffer(508, '\0');
    std::uint32_t size = 508;
    const LibraryStatus result =
        TORPI_DiagnosticsRDPTest(HandleAt(0), reinterpret_cast<std::uint8_t*>(buffer.data()), &size);
    return {result, buffer.substr(0, result == 0 ? size : 0)};
  }

  static Answer Dump() {
    void* buffer = nullptr;
    std::uint32_t size = 0;
    const LibraryStatus result = TORPI_SDGetFwDump2(HandleAt(0)->sd_handle, 0, &buffer, &size);
    Answer answer = {result, {}};
    if (buffer != nullptr) answer.bytes.assign(static_cast<const char*>(buffer), size);
    std::free(buffer);
    return answer;
  }

  // The mistake that the library reports for a port of these keys.
  std::string MistakeOf(const std::string& keys) const {
    NextRun();
    UsePort(keys);
    testing::internal::CaptureStderr();
    EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
    const std::string reported = testing::internal::GetCapturedStderr();
    const std::size_t line = reported.find(":2:");
    if (line == std::string::npos) return reported;
    const std::size_t text = reported.find(": ", line) + 2;
    return reported.substr(text, reported.size() - text - 1);
  }
};

std::uint32_t WordAt(const std::string& bytes, std::size_t offset) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i) word = word << 8 | static_cast<unsigned char>(bytes.at(offset + i));
  return word;
}

// The payload of the descriptor with this tag that follows `skipped` others with it.
std::string Payload(const std::string& response, std::uint32_t tag, std::size_t skipped = 0) {
  for (std::size_t at = 4; at + 8 <= response.size();) {
    const std::size_t length = WordAt(response, at + 4);
    if (WordAt(response, at) == tag && skipped-- == 0) return response.substr(at + 8, length);
    at += 8 + length;
  }
  return "none";
}

// The value of an item in a VPD image, found by its keyword.
std::string Item(const std::string& image, const std::string& keyword) {
  std::size_t at = 3 + static_cast<unsigned char>(image.at(1)) + 3;
  while (image.at(at) != '\x78') {
    if (image.at(at) == '\x91') {
      at += 3;
      continue;
    }
    const std::size_t length = static_cast<unsigned char>(image.at(at + 2));
    if (image.compare(at, 2, keyword) == 0) return image.substr(at + 3, length);
    at += 3 + length;
  }
  return "none";
}

TEST_F(PortReports, TemperatureIsThatOfTheHostFile) {
  UsePort("temperature: -40");
  BoardTemperature temperature{};
  EXPECT_EQ(TORPI_GetAdapterAsicBoardTemperature(HandleAt(0), &temperature), 0u);
  EXPECT_EQ(temperature.celsius, -40);
  EXPECT_NE(Read("trace").find(") -> 0 celsius=-40\n"), std::string::npos);
}

TEST_F(PortReports, OlderFamiliesHaveNoSensorAndNoLockdown) {
  for (const char* family : {"aster", "birch", "cedar", "ginkgo"}) {
    UsePort("", family);
    BoardTemperature temperature{};
    LockdownStatus lockdown{};
    EXPECT_EQ(TORPI_GetAdapterAsicBoardTemperature(HandleAt(0), &temperature), 121u) << family;
    EXPECT_EQ(TORPI_GetLockdownStatus(HandleAt(0), &lockdown), 121u) << family;
    NextRun();
  }
  for (const char* family : {"elm", "fern"}) {
    UsePort("", family);
    BoardTemperature temperature{};
    LockdownStatus lockdown{};
    EXPECT_EQ(TORPI_GetAdapterAsicBoardTemperature(HandleAt(0), &temperature), 0u) << family;
    EXPECT_EQ(TORPI_GetLockdownStatus(HandleAt(0), &lockdown), 121u) << family;
    NextRun();
  }
}

TEST_F(PortReports, LockdownHasAFlagOrAStatusWord) {
  UsePort("lockdown: {config: on, firmware-update: unsupported-driver, mpi: 7}");
  LockdownStatus lockdown{};
  EXPECT_EQ(TORPI_GetLockdownStatus(HandleAt(0), &lockdown), 0u);
  EXPECT_EQ(lockdown.config_flag, 1);
  EXPECT_EQ(lockdown.config_status, LockdownReadStatus::kRead);
  EXPECT_EQ(lockdown.firmware_update_flag, 0);
  EXPECT_EQ(lockdown.firmware_update_status, LockdownReadStatus::kUnsupportedDriver);
  EXPECT_EQ(lockdown.mpi_status, static_cast<LockdownReadStatus>(7));
}

TEST_F(PortReports, LockdownOfTheFlashShowsToo) {
  UsePort("", "iris", "firmware-lockdown: true, ");
  LockdownStatus lockdown{};
  EXPECT_EQ(TORPI_GetLockdownStatus(HandleAt(0), &lockdown), 0u);
  EXPECT_EQ(lockdown.firmware_update_flag, 1);
  EXPECT_EQ(lockdown.config_flag, 0);
}

TEST_F(PortReports, ResetClearsTheCountersOfTheFirmwareAlone) {
  UseState();
  UsePort("driver-counters: [1, 2, 3, 4, 5, 6], firmware-counters: [7, 8, 9, 10, 11, 12]");
  EXPECT_EQ(EntryAt(0)->firmware_counters[5], 12u);
  EXPECT_EQ(TORPI_ResetDeviceStats(HandleAt(0)), 0u);
  for (int run = 0; run < 2; ++run) {
    for (const std::uint32_t counter : EntryAt(0)->firmware_counters) EXPECT_EQ(counter, 0u);
    EXPECT_EQ(EntryAt(0)->driver_counters[5], 6u);
    NextRun();
  }
}

TEST_F(PortReports, VpdIsMadeFromTheAdapter) {
  UsePort("", "hazel", "model: M1, versions: {firmware: 1.2.3, bios: 4.5}, ");
  const Answer vpd = Vpd();
  EXPECT_EQ(vpd.result, 0u);
  EXPECT_EQ(vpd.bytes.substr(0, 3), std::string("\x82\x1f\0", 3));
  EXPECT_EQ(vpd.bytes.substr(3, 31), "Sorvex M1 Fibre Channel Adapter");
  EXPECT_EQ(vpd.bytes.back(), '\x78');
  EXPECT_EQ(Item(vpd.bytes, "SN"), "S1");
  EXPECT_EQ(Item(vpd.bytes, "V3"), "1.2.3");
  EXPECT_EQ(Item(vpd.bytes, "V4"), "4.5");
  EXPECT_NE(Read("trace").find("0, 1024) -> 0 size=" + std::to_string(vpd.bytes.size()) + "\n"),
            std::string::npos);
}

TEST_F(PortReports, VpdAddsUpToZeroWithItsChecksum) {
  UsePort("");
  const std::string image = Vpd().bytes;
  const std::size_t after_checksum = image.find("RV\x01") + 4;
  unsigned sum = 0;
  for (std::size_t i = 0; i < after_checksum; ++i) sum += static_cast<unsigned char>(image[i]);
  EXPECT_EQ(sum & 0xff, 0u);
  EXPECT_EQ(image[after_checksum], '\x91');
}

TEST_F(PortReports, VpdItemsOfTheHostFileReplaceAndAdd) {
  UsePort("vpd: {name: Board, items: {PN: P2, V7: \"\", EC: none}}");
  const std::string image = Vpd().bytes;
  EXPECT_EQ(image.substr(3, 5), "Board");
  EXPECT_EQ(Item(image, "PN"), "P2");
  EXPECT_EQ(Item(image, "V7"), "");
  EXPECT_EQ(Item(image, "EC"), "none");  // left out
  EXPECT_EQ(Item(image, "SN"), "S1");
}

TEST_F(PortReports, VpdFollowsAFlashUpdate) {
  UsePort("", "elm");
  EXPECT_EQ(Item(Vpd().bytes, "V9"), "2.01.63");
  EXPECT_EQ(TORPI_doOptionROMUpdate(HandleAt(0), SourcePath("examples/flash/elm-mbi.img").c_str(), 0), 201u);
  EXPECT_NE(Item(Vpd().bytes, "V9"), "2.01.63");
}

TEST_F(PortReports, VpdCanBeGivenAsBytesOrAsFile) {
  UsePort("vpd: {bytes: 82:ff:ff:41}");
  EXPECT_EQ(Vpd().bytes,
            "\x82\xff\xff"
            "A");
  NextRun();
  UsePort("vpd: {bytes: \"\"}");
  EXPECT_EQ(Vpd().result, 0u);
  EXPECT_EQ(Vpd().bytes, "");
  NextRun();
  Write("board.vpd", "\x78\x01");
  UsePort("vpd: {image: board.vpd}");
  EXPECT_EQ(Vpd().bytes, "\x78\x01");
}

TEST_F(PortReports, VpdIsRefusedWithoutRoomAndWhenThereIsNone) {
  UsePort("vpd: {bytes: 78:00}");
  EXPECT_EQ(Vpd(1).result, 903u);
  EXPECT_EQ(Vpd(2).result, 0u);
  std::uint32_t size = kRoom;
  EXPECT_EQ(TORPI_GetVpd(HandleAt(0), 0, nullptr, &size), 903u);
  NextRun();
  UsePort("vpd: none");
  EXPECT_EQ(Vpd().result, 121u);
}

TEST_F(PortReports, RdpResponseHoldsEveryDescriptorOnce) {
  UsePort("speed: 16, supported-speeds: [8, 16, 32], error-correction: true, port-id: 01:2a:00");
  const Answer rdp = Rdp();
  EXPECT_EQ(rdp.result, 0u);
  EXPECT_EQ(WordAt(rdp.bytes, 0), rdp.bytes.size() - 4);
  EXPECT_EQ(WordAt(Payload(rdp.bytes, 0x00000001), 0), 0x18000000u);
  EXPECT_EQ(WordAt(Payload(rdp.bytes, 0x00010000), 8) & 0xffff, 0x8051u);  // error correction in use
  EXPECT_EQ(WordAt(Payload(rdp.bytes, 0x00010001), 0), 0x0e000400u);
  EXPECT_EQ(Payload(rdp.bytes, 0x00010002).size(), 28u);
  EXPECT_EQ(Payload(rdp.bytes, 0x00010003), std::string("\x10\x00\xc4\xf5\x7c\x10\x20\x02"
                                                        "\x20\x2a\xc4\xf5\x7c\x10\x20\x02",
                                                        16));
  EXPECT_EQ(WordAt(Payload(rdp.bytes, 0x00010005), 0), 12u);
  EXPECT_EQ(WordAt(Payload(rdp.bytes, 0x00010006), 8), 250u);
  EXPECT_EQ(WordAt(Payload(rdp.bytes, 0x00010007), 8), 0x10000000u);
  EXPECT_EQ(Payload(rdp.bytes, 0x00010008).size(), 60u);
}

// A switch port's limits: whole degrees Celsius, then units of 0.1 mV, 2 uA, 0.1 uW and 0.1 uW.
TEST_F(PortReports, RdpResponseHoldsTheLimitsOfEachQuantity) {
  struct Limits {
    std::uint32_t alarms, warnings;  // high in the upper half, low in the lower
  };
  constexpr Limits kLimits[] = {
      {75 << 16 | 0xfb, 70 << 16 | 0},               // 75, -5 and 70, 0 degrees
      {36300u << 16 | 29700, 34650u << 16 | 31350},  // 3.63, 2.97 and 3.465, 3.135 V
      {6250 << 16 | 1000, 5750 << 16 | 1500},        // 12.5, 2 and 11.5, 3 mA
      {16000 << 16 | 2000, 12600 << 16 | 2500},      // transmitted: 1.6, 0.2 and 1.26, 0.25 mW
      {18000 << 16 | 500, 14000 << 16 | 800},        // received: 1.8, 0.05 and 1.4, 0.08 mW
  };
  UsePort("speed: 16");
  const std::string rdp = Rdp().bytes;
  for (std::uint32_t place = 0; place < std::size(kLimits); ++place) {
    const std::string element = Payload(rdp, 0x00010007, place);
    ASSERT_EQ(element.size(), 12u);
    EXPECT_EQ(WordAt(element, 0), kLimits[place].alarms) << place;
    EXPECT_EQ(WordAt(element, 4), kLimits[place].warnings) << place;
    EXPECT_EQ(WordAt(element, 8), (place + 1) << 28);
  }
  EXPECT_EQ(Payload(rdp, 0x00010007, std::size(kLimits)), "none");
}

TEST_F(PortReports, RdpResponseTakesTheKeysOfTheHostFile) {
  UsePort(
      "speed: 16, rdp: {node-name: 01:02:03:04:05:06:07:08, port-name: 11:12:13:14:15:16:17:18, link-errors: "
      "[9, 8], corrected-blocks: 5, uncorrected-blocks: 6, credits: 1, attached-credits: 2, round-trip-ns: "
      "3, "
      "module: {vendor: V, part: P, serial: S, revision: R, date: D, temperature: 45, voltage: 3.3025, bias: "
      "7.204, tx-power: 0.6013, rx-power: 0.5587, flags: 0x1234}}");
  const std::string rdp = Rdp().bytes;
  EXPECT_EQ(Payload(rdp, 0x00010003), "\x01\x02\x03\x04\x05\x06\x07\x08\x11\x12\x13\x14\x15\x16\x17\x18");
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010002), 0), 9u);
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010002), 4), 8u);
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010002), 8), 0u);
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010005), 0), 5u);
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010005), 4), 6u);
  EXPECT_EQ(Payload(rdp, 0x00010006), std::string("\0\0\0\x01\0\0\0\x02\0\0\0\x03", 12));
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010000), 0), 0x2d008101u);
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010000), 4), 0x0e12177du);
  EXPECT_EQ(WordAt(Payload(rdp, 0x00010000), 8), 0x15d31234u);
  EXPECT_EQ(Payload(rdp, 0x00010008), "V               P               S               R   D       ");
}

TEST_F(PortReports, RdpNamesTheMakeOfThePortsOwnModule) {
  UsePort("sfp: {vendor: MAKER, part: PART, revision: B2}");
  const std::string product = Payload(Rdp().bytes, 0x00010008);
  EXPECT_EQ(product.substr(0, 32), "MAKER           PART            ");
  EXPECT_EQ(product.substr(48, 4), "B2  ");
  NextRun();
  UsePort("sfp: none");
  EXPECT_EQ(Payload(Rdp().bytes, 0x00010008).substr(0, 16), "LABSWITCH       ");
}

TEST_F(PortReports, RdpCanBeGivenAsBytes) {
  UsePort("rdp: {bytes: ff:ff:ff:ff:00:01}");
  EXPECT_EQ(Rdp().bytes, std::string("\xff\xff\xff\xff\0\x01", 6));
}

TEST_F(PortReports, RdpNeedsALinkAPhysicalPortAndAnAnswer) {
  UsePort("link: down");
  EXPECT_EQ(Rdp().result, 130u);
  NextRun();
  UsePort("type: npiv");
  EXPECT_EQ(Rdp().result, 29u);
  NextRun();
  UsePort("rdp: none");
  EXPECT_EQ(Rdp().result, 906u);
}

TEST_F(PortReports, DumpIsTheSameEveryTimeAndHasTheSizeOfTheHostFile) {
  UsePort("firmware-dump: {size: 4096}, wwpn: 21:00:00:11:22:33:44:55");
  const Answer dump = Dump();
  EXPECT_EQ(dump.result, 0u);
  EXPECT_EQ(dump.bytes.size(), 4096u);
  EXPECT_NE(dump.bytes.find("port: 21:00:00:11:22:33:44:55\n"), std::string::npos);
  EXPECT_EQ(Dump().bytes, dump.bytes);
}

TEST_F(PortReports, DumpCanBeEmptyAFileOrMissing) {
  UsePort("firmware-dump: {size: 0}");
  EXPECT_EQ(Dump().result, 0u);
  EXPECT_EQ(Dump().bytes, "");
  NextRun();
  Write("dump", std::string("a\0b", 3));
  UsePort("firmware-dump: {image: dump}");
  EXPECT_EQ(Dump().bytes, std::string("a\0b", 3));
  NextRun();
  UsePort("firmware-dump: none");
  EXPECT_EQ(Dump().result, 0x2000007Bu);
}

TEST_F(PortReports, VirtualPortTakesWhatItLeavesOutFromItsPort) {
  UsePort("vpd: {bytes: 78}, npiv: [{}, {vpd: {bytes: 79}}]");
  EXPECT_EQ(VpdOf(&EntryAt(0, 0, 1)->handle).bytes, "\x78");
  EXPECT_EQ(VpdOf(&EntryAt(0, 0, 2)->handle).bytes, "\x79");
}

TEST_F(PortReports, NvramImageIsTakenAndMakesARebootRequired) {
  UsePort("", "elm");
  Write("nvram", "ZNFC NVRAM image\nfamilies: elm, fern\nchecksum: d7f50939\n");
  std::uint8_t required = 0;
  EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
  EXPECT_EQ(required, 0);
  EXPECT_EQ(TORPI_UpdateAdapterNVRAMFromFile(HandleAt(0), Path("nvram").c_str()), 0u);
  EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
  EXPECT_EQ(required, 1);
}

TEST_F(PortReports, NvramImageIsRefused) {
  UsePort("", "elm");
  const auto update = [this](const std::string& image) {
    return TORPI_UpdateAdapterNVRAMFromFile(HandleAt(0), Write("nvram", image).c_str());
  };
  EXPECT_EQ(TORPI_UpdateAdapterNVRAMFromFile(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_UpdateAdapterNVRAMFromFile(HandleAt(0), Path("missing").c_str()), 3u);
  EXPECT_EQ(update("ZNFC flash image\nchecksum: 00000000\n"), 103u);
  EXPECT_EQ(update("ZNFC NVRAM image\nfamilies: elm\n"), 105u);
  EXPECT_EQ(update("ZNFC NVRAM image\nsize: 5\nchecksum: 00000000\n"), 106u);
  EXPECT_EQ(update("ZNFC NVRAM image\nchecksum: 00000000\n"), 107u);
  std::uint8_t required = 0;
  TORPI_IsRebootRequired(&required);
  EXPECT_EQ(required, 0);
}

TEST_F(PortReports, MistakesAreReported) {
  EXPECT_EQ(MistakeOf("temperature: 1.5"),
            "temperature: expected a whole number from -32768 to 32767, got '1.5'");
  EXPECT_EQ(MistakeOf("lockdown: {config: maybe}"),
            "config: expected one of off, on, unsupported-driver, unsupported-firmware, or a number up to "
            "4294967295, got 'maybe'");
  EXPECT_EQ(MistakeOf("vpd: some"), "vpd: expected a map, or none, got 'some'");
  EXPECT_EQ(MistakeOf("vpd: {bytes: 82:xx}"),
            "bytes: expected hexadecimal octets joined by ':', got '82:xx'");
  EXPECT_EQ(MistakeOf("vpd: {image: nowhere}"),
            "image: expected a file that can be read (No such file or directory), got 'nowhere'");
  EXPECT_EQ(MistakeOf("vpd: {items: {PART: x}}"), "PART: expected a keyword of two characters");
  EXPECT_EQ(MistakeOf("vpd: {items: {RV: x}}"), "RV: expected no item that is made by itself");
  EXPECT_EQ(MistakeOf("rdp: {link-errors: [1, 2, 3, 4, 5, 6, 7]}"),
            "link-errors: expected at most 6 numbers, got 7");
  EXPECT_EQ(MistakeOf("firmware-dump: {size: 16777217}"),
            "size: expected a number from 0 to 16777216, got '16777217'");
}

}  // namespace
