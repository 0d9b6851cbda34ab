// The module in a port's cage: composed from named values or read from a file, read, saved and updated.
#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

#include "images/image_text.h"
#include "unit/simulator/lab_fixture.h"

namespace {

using Memory = std::array<std::uint8_t, 512>;

constexpr std::uint32_t kAsKnown = 0, kRefreshed = 1, kStraight = 3;

// A host with one port of the Dahlia family, whose module the text describes.
std::string HostWith(const std::string& module) {
  return "adapters:\n  - family: dahlia\n    ports:\n      - wwpn: 21:00:00:0e:1e:11:22:33\n" +
         (module.empty() ? "" : "        sfp: " + module + "\n");
}

class Sfp : public LabTest {
 protected:
  static Memory MemoryOf(const DeviceHandle* handle, std::uint32_t mode = kAsKnown) {
    Memory memory;
    memory.fill(0xEE);
    EXPECT_EQ(TORPI_GetSFPDataEx(handle, memory.data(), mode, 0), 0u);
    return memory;
  }

  Memory Composed(const std::string& module, std::uint32_t mode = kAsKnown) const {
    UseHost(HostWith(module));
    NextRun();
    return MemoryOf(HandleAt(0), mode);
  }

  std::string RealModule(const std::string& name) const {
    return ZFC_SOURCE_DIR "/examples/modules/" + name + ".hex";
  }

  // A firmware file of these lines, with the checksum that belongs to them.
  std::string Firmware(const std::string& lines, const std::string& first = "ZNFC SFP firmware") const {
    const std::string body = first + "\n" + lines;
    char checksum[32];
    std::snprintf(checksum, sizeof checksum, "checksum: %08X\n", lab::Crc32(body));
    return Write("module.fw", body + checksum);
  }
};

std::vector<int> Bytes(const Memory& memory, std::size_t offset, std::size_t count) {
  return {memory.begin() + static_cast<std::ptrdiff_t>(offset),
          memory.begin() + static_cast<std::ptrdiff_t>(offset + count)};
}

std::string Text(const Memory& memory, std::size_t offset, std::size_t count) {
  return {memory.begin() + static_cast<std::ptrdiff_t>(offset),
          memory.begin() + static_cast<std::ptrdiff_t>(offset + count)};
}

std::uint8_t Sum(const Memory& memory, std::size_t first, std::size_t place) {
  return static_cast<std::uint8_t>(std::accumulate(memory.begin() + static_cast<std::ptrdiff_t>(first),
                                                   memory.begin() + static_cast<std::ptrdiff_t>(place), 0u));
}

using Octets = std::vector<int>;

TEST_F(Sfp, PortsHaveAModuleOfTheirFamily) {
  const struct {
    const char* family;
    int ethernet;
    Octets fc;  // bytes 7 to 10
    int fc_2;
    const char* part;
  } rows[] = {
      {"aster", 0, {0x20, 0x40, 0x04, 0x15}, 0, "SX-F4-SW        "},
      {"elm", 0, {0x20, 0x40, 0x04, 0x70}, 0, "SX-F16-SW       "},
      {"hazel", 0, {0x20, 0x40, 0x04, 0x68}, 0, "SX-F32-SW       "},
      {"dahlia", 0, {0x20, 0x40, 0x04, 0x2a}, 1, "SX-F64-SW       "},
      {"cedar", 0x10, {0, 0, 0, 0}, 0, "SX-E10-SW       "},
  };
  for (const auto& row : rows) {
    UseHost(std::string("adapters:\n  - {family: ") + row.family + ", ports: [{}, {}]}\n");
    NextRun();
    const Memory memory = MemoryOf(HandleAt(0, 1));
    EXPECT_EQ(memory[0], 0x03) << row.family;
    EXPECT_EQ(memory[3], row.ethernet) << row.family;
    EXPECT_EQ(Bytes(memory, 7, 4), row.fc) << row.family;
    EXPECT_EQ(memory[62], row.fc_2) << row.family;
    EXPECT_EQ(Text(memory, 40, 16), row.part) << row.family;
    EXPECT_EQ(Text(memory, 68, 16), "SX001001        ") << row.family;
  }
}

TEST_F(Sfp, EmptyCageReadsAsZeros) {
  for (const std::uint32_t mode : {kAsKnown, kRefreshed, kStraight})
    EXPECT_EQ(Composed("none", mode), Memory{});
}

TEST_F(Sfp, NamedValuesAreWhereTheStandardPutsThem) {
  const Memory memory = Composed(
      "{vendor: LUMEN CO, oui: 00:11:22, part: LC-32-LW, revision: B2, serial: L0001, date: 2025-12-31,\n"
      "    speeds: [8, 16, 32], media: [single-mode], transmitter: [longwave], distance: [long], connector: "
      "sc,\n"
      "    wavelength: 1310, firmware: 3.11}");
  EXPECT_EQ(Bytes(memory, 0, 3), (Octets{0x03, 0x04, 0x01}));
  EXPECT_EQ(Bytes(memory, 7, 4), (Octets{0x10, 0x10, 0x01, 0x68}));
  EXPECT_EQ(Bytes(memory, 11, 9), (Octets{0x06, 0xff, 0x0c, 10, 100, 0, 0, 0, 0}));
  EXPECT_EQ(Text(memory, 20, 16), "LUMEN CO        ");
  EXPECT_EQ(Bytes(memory, 36, 4), (Octets{0x00, 0x00, 0x11, 0x22}));
  EXPECT_EQ(Text(memory, 40, 20), "LC-32-LW        B2  ");
  EXPECT_EQ(Bytes(memory, 60, 3), (Octets{0x05, 0x1e, 0x00}));  // 1310
  EXPECT_EQ(Text(memory, 68, 24), "L0001           251231  ");
  EXPECT_EQ(Bytes(memory, 92, 3), (Octets{0x68, 0xf0, 0x08}));
  EXPECT_EQ(Bytes(memory, 149, 2), (Octets{3, 11}));
}

// Temperature in 1/256 degree, voltage in 100 uV, bias in 2 uA, powers in 0.1 uW.
TEST_F(Sfp, MeasuredValuesAndThresholdsAreInTheUnitsOfTheStandard) {
  const Memory memory = Composed(
      "{measured: {temperature: -1.5, voltage: 3.25, bias: 6.5, tx-power: 0.55, rx-power: 0.0004},\n"
      "    thresholds: {temperature: {high-alarm: 75, low-alarm: -10, high-warning: 70, low-warning: -5},\n"
      "    rx-power: {low-alarm: 0.0005}}}");
  EXPECT_EQ(Bytes(memory, 256, 8), (Octets{0x4b, 0x00, 0xf6, 0x00, 0x46, 0x00, 0xfb, 0x00}));
  EXPECT_EQ(Bytes(memory, 264, 8),
            (Octets{0x8c, 0xa0, 0x75, 0x30, 0x88, 0xb8, 0x79, 0x18}));  // 3.6, 3.0, 3.5, 3.1 V
  EXPECT_EQ(Bytes(memory, 288, 4), (Octets{0x2e, 0xe0, 0x00, 0x05}));   // 1.2 mW, 0.5 uW
  EXPECT_EQ(Bytes(memory, 352, 10), (Octets{0xfe, 0x80, 0x7e, 0xf4, 0x0c, 0xb2, 0x15, 0x7c, 0x00, 0x04}));
  // Receive power below Low Alarm and Low Warning, and so no signal.
  EXPECT_EQ(Bytes(memory, 366, 2), (Octets{0x02, 0x00}));
  EXPECT_EQ(Bytes(memory, 368, 2), (Octets{0x00, 0x40}));
  EXPECT_EQ(Bytes(memory, 372, 2), (Octets{0x00, 0x40}));
}

TEST_F(Sfp, FlagsShowWhatIsOutOfItsLimits) {
  // All high: temperature, voltage, bias, transmit power in the first byte, receive power in the second.
  const Memory high =
      Composed("{measured: {temperature: 90, voltage: 4, bias: 13, tx-power: 2, rx-power: 2}}");
  EXPECT_EQ(Bytes(high, 368, 2), (Octets{0xaa, 0x80}));
  EXPECT_EQ(Bytes(high, 372, 2), (Octets{0xaa, 0x80}));
  // Between warning and alarm.
  const Memory warm =
      Composed("{measured: {temperature: 72, voltage: 3.05, bias: 2.5, tx-power: 0.22, rx-power: 1.1}}");
  EXPECT_EQ(Bytes(warm, 368, 2), (Octets{0x00, 0x00}));
  EXPECT_EQ(Bytes(warm, 372, 2), (Octets{0x95, 0x80}));
}

TEST_F(Sfp, CheckBytesAreTheSumsOfTheirRanges) {
  for (const char* module :
       {"", "{calibration: {rx-power: [0.5, 2, 0, 0, 0]}}", "{speeds: [8], serial: OTHER}"}) {
    const Memory memory = Composed(module);
    EXPECT_EQ(memory[63], Sum(memory, 0, 63)) << module;
    EXPECT_EQ(memory[95], Sum(memory, 64, 95)) << module;
    EXPECT_EQ(memory[351], Sum(memory, 256, 351)) << module;
  }
  const Memory qsfp = Composed("{form: qsfp}");
  EXPECT_EQ(qsfp[191], Sum(qsfp, 128, 191));
  EXPECT_EQ(qsfp[223], Sum(qsfp, 192, 223));
}

TEST_F(Sfp, CalibrationConstantsAreInTheirFields) {
  const Memory internal = Composed("{calibration: internal}");
  EXPECT_EQ(internal[92], 0x68);
  EXPECT_EQ(Bytes(internal, 312, 36), Octets(36, 0));
  const Memory external = Composed(
      "{calibration: {temperature: {slope: 1.5, offset: -2}, bias: {slope: 255.5, offset: 258},\n"
      "    tx-power: {offset: 32767}, rx-power: [0.5, 1, -2, 0, 0.0625]}}");
  EXPECT_EQ(external[92], 0x58);
  EXPECT_EQ(Bytes(external, 312, 20),
            (Octets{0x3d, 0x80, 0, 0, 0, 0, 0, 0, 0xc0, 0, 0, 0, 0x3f, 0x80, 0, 0, 0x3f, 0, 0, 0}));
  EXPECT_EQ(Bytes(external, 332, 4), (Octets{0xff, 0x80, 0x01, 0x02}));
  EXPECT_EQ(Bytes(external, 336, 4), (Octets{0x01, 0x00, 0x7f, 0xff}));
  EXPECT_EQ(Bytes(external, 340, 4), (Octets{0x01, 0x80, 0xff, 0xfe}));
  EXPECT_EQ(Bytes(external, 344, 4), (Octets{0x01, 0x00, 0x00, 0x00}));  // left out: 1.0 and 0
}

TEST_F(Sfp, ModuleWithoutDiagnosticsHasNoA2) {
  const Memory memory = Composed("{diagnostics: false}");
  EXPECT_EQ(Bytes(memory, 92, 3), (Octets{0, 0, 0}));
  EXPECT_EQ(Bytes(memory, 256, 256), Octets(256, 0));
}

TEST_F(Sfp, QsfpModuleHasItsIdentityInTheUpperPage) {
  const Memory memory = Composed(
      "{form: qsfp, vendor: LUMEN CO, part: LQ-32, revision: C, serial: Q1, speeds: [16, 32],\n"
      "    measured: {temperature: 40, voltage: 3.3, bias: 6, tx-power: 0.5, rx-power: 0.25}}");
  EXPECT_EQ(Bytes(memory, 0, 2), (Octets{0x11, 0x08}));
  EXPECT_EQ(Bytes(memory, 22, 6), (Octets{40, 0, 0, 0, 0x80, 0xe8}));
  EXPECT_EQ(Bytes(memory, 34, 8), (Octets{0x09, 0xc4, 0x09, 0xc4, 0x09, 0xc4, 0x09, 0xc4}));
  EXPECT_EQ(Bytes(memory, 42, 2), (Octets{0x0b, 0xb8}));
  EXPECT_EQ(Bytes(memory, 56, 2), (Octets{0x13, 0x88}));
  EXPECT_EQ(Bytes(memory, 128, 4), (Octets{0x11, 0x8c, 0x0c, 0x00}));
  EXPECT_EQ(Bytes(memory, 135, 5), (Octets{0x20, 0x40, 0x04, 0x28, 0x05}));
  EXPECT_EQ(Text(memory, 148, 16), "LUMEN CO        ");
  EXPECT_EQ(Text(memory, 168, 18), "LQ-32           C ");
  EXPECT_EQ(Bytes(memory, 186, 2), (Octets{0x42, 0x68}));  // 850 * 20
  EXPECT_EQ(Text(memory, 196, 16), "Q1              ");
  EXPECT_EQ(memory[140], 0xff);
  EXPECT_EQ(memory[222], 0x70);  // 28 GBd in steps of 250 MBd
  EXPECT_EQ(Bytes(memory, 256, 256), Octets(256, 0));
}

TEST_F(Sfp, EthernetModulesShowTheirSpeeds) {
  EXPECT_EQ(Composed("{ethernet: [10], speeds: []}")[3], 0x10);
  const Memory qsfp = Composed("{form: qsfp, ethernet: [40, 100], speeds: []}");
  EXPECT_EQ(qsfp[131], 0x84);
  EXPECT_EQ(qsfp[192], 0x02);
}

TEST_F(Sfp, FileOfARealModuleIsServedAsItIs) {
  const Memory sfp = Composed("{image: " + RealModule("sfpp-10g-sr-finisar-a") + "}");
  EXPECT_EQ(Text(sfp, 20, 16), "FINISAR CORP.   ");
  EXPECT_EQ(sfp[63], Sum(sfp, 0, 63));
  EXPECT_EQ(sfp[95], Sum(sfp, 64, 95));
  EXPECT_EQ(sfp[351], Sum(sfp, 256, 351));
  EXPECT_EQ(Text(Composed("{image: " + RealModule("qsfp28-100g-finisar") + "}"), 168, 12), "FTLC9551REPM");
}

TEST_F(Sfp, PathOfAnImageBeginsAtTheHostFile) {
  const Memory memory = Composed("{serial: SAVED}");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("saved.bin").c_str()), 0u);
  EXPECT_EQ(Composed("{image: saved.bin}"), memory);
}

TEST_F(Sfp, SavedFilesServeAsImages) {
  const Memory memory = Composed("{serial: SAVED}");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("saved.bin").c_str()), 0u);
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("saved.hex").c_str()), 0u);
  EXPECT_EQ(Read("saved.bin"), std::string(memory.begin(), memory.end()));
  EXPECT_EQ(Composed("{image: saved.bin}"), memory);
  EXPECT_EQ(Composed("{image: saved.hex}"), memory);
}

TEST_F(Sfp, TextIsTheFormOfTheRealModules) {
  Composed("{image: " + RealModule("sfpp-10g-sr-finisar-a") + "}");
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("saved.hex").c_str()), 0u);
  std::ifstream original(RealModule("sfpp-10g-sr-finisar-a"));
  EXPECT_EQ(Read("saved.hex"), std::string(std::istreambuf_iterator<char>(original), {}));
}

TEST_F(Sfp, FilesThatCannotBeWrittenAreRefused) {
  Composed("");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("none/saved").c_str()), 3u);
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("").c_str()), 101u);
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), "/dev/full"), 101u);
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), nullptr), 903u);
}

TEST_F(Sfp, EmptyCageIsNeitherSavedNorUpdated) {
  Composed("none");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("saved").c_str()), 114u);
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("saved").c_str()), 114u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Firmware("vendor: WTD\nversion: 2.8\n").c_str(), 2),
            114u);
  EXPECT_FALSE(std::filesystem::exists(Path("saved")));
}

TEST_F(Sfp, VirtualPortsShareTheModuleAndOnlyReadIt) {
  UseHost(HostWith("{serial: SHARED}\n        npiv: [{}]"));
  const DeviceHandle* const own = HandleAt(0);
  const DeviceHandle* const other = &EntryAt(0, 0, 1)->handle;
  EXPECT_EQ(MemoryOf(other), MemoryOf(own));
  EXPECT_EQ(TORPI_SaveSFPDataToFile(other, Path("saved").c_str()), 100u);
  const std::string firmware = Firmware("vendor: WTD\nversion: 2.8\n");
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(other, firmware.c_str(), 2), 113u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(own, firmware.c_str(), 2), 0u);
  EXPECT_EQ(Bytes(MemoryOf(other), 149, 2), (Octets{2, 8}));
}

TEST_F(Sfp, ReadModesShowWhatIsKnownOrRefreshed) {
  const Memory before = Composed("{measured: {temperature: 30}, after-refresh: {temperature: 40, bias: 8}}");
  EXPECT_EQ(Bytes(before, 352, 2), (Octets{30, 0}));
  const Memory straight = MemoryOf(HandleAt(0), kStraight);
  EXPECT_EQ(Bytes(straight, 352, 2), (Octets{40, 0}));
  EXPECT_EQ(Bytes(straight, 354, 2), Bytes(before, 354, 2)) << "what a refresh does not name stays";
  EXPECT_EQ(MemoryOf(HandleAt(0), kAsKnown), before) << "a straight read leaves what the port knows";
  EXPECT_EQ(MemoryOf(HandleAt(0), kRefreshed), straight);
  EXPECT_EQ(MemoryOf(HandleAt(0), kAsKnown), straight);
}

TEST_F(Sfp, RefreshLastsWithAStateFile) {
  UseState();
  const Memory before = Composed("{after-refresh: {temperature: 40}}");
  NextRun();
  EXPECT_EQ(MemoryOf(HandleAt(0)), before);
  const Memory refreshed = MemoryOf(HandleAt(0), kRefreshed);
  NextRun();
  EXPECT_EQ(MemoryOf(HandleAt(0)), refreshed);
  EXPECT_NE(refreshed, before);
}

TEST_F(Sfp, BadArgumentsAreRefused) {
  Composed("");
  Memory memory{};
  EXPECT_EQ(TORPI_GetSFPDataEx(HandleAt(0), nullptr, 0, 0), 903u);
  EXPECT_EQ(TORPI_GetSFPDataEx(HandleAt(0), memory.data(), 2, 0), 903u);
  EXPECT_EQ(TORPI_GetSFPDataEx(HandleAt(0), memory.data(), 4, 0), 903u);
  EXPECT_EQ(memory, Memory{});
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), nullptr, 2), 903u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), "file", 1), 903u);
}

TEST_F(Sfp, UpdateStoresTheVersionAndKeepsIt) {
  UseState();
  const Memory before = Composed("");
  EXPECT_EQ(Bytes(before, 149, 2), (Octets{2, 7}));
  const std::string firmware = Firmware("vendor: WTD\nparts: SX-F32-SW, SX-F64-SW\nversion: 2.12\n");
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), firmware.c_str(), 2), 0u);
  Memory expected = before;
  expected[150] = 12;
  EXPECT_EQ(MemoryOf(HandleAt(0)), expected);
  EXPECT_EQ(MemoryOf(HandleAt(0), kStraight), expected);
  NextRun();
  EXPECT_EQ(MemoryOf(HandleAt(0)), expected);
}

struct Refusal {
  const char* name;
  const char* host;  // the family, and the keys after its port's name
  const char* lines;
  const char* first;
  std::uint32_t result;
};

// Each file is refused for one reason and would be for none of those above it.
constexpr Refusal kRefusals[] = {
    {"Family", "hazel", "vendor: WTD\nversion: 2.8\n", "ZNFC SFP firmware", 113},
    {"Driver", "dahlia\n        driver-flags: 1", "vendor: WTD\nversion: 2.8\n", "ZNFC SFP firmware", 118},
    {"Cage", "dahlia\n        sfp: none", "vendor: WTD\nversion: 2.8\n", "ZNFC SFP firmware", 114},
    {"Vendor", "dahlia\n        sfp: {vendor: LUMEN CO}", "vendor: WTD\nversion: 2.8\n", "ZNFC SFP firmware",
     145},
    {"VendorPrefix", "dahlia\n        sfp: {vendor: WTD X}", "vendor: WTD\nversion: 2.8\n",
     "ZNFC SFP firmware", 145},
    {"FirstLine", "dahlia", "vendor: WTD\nversion: 2.8\n", "ZNFC flash image", 146},
    {"OtherVendorInFile", "dahlia", "vendor: LUMEN CO\nversion: 2.8\n", "ZNFC SFP firmware", 146},
    {"NoVendorInFile", "dahlia", "version: 2.8\n", "ZNFC SFP firmware", 146},
    {"Part", "dahlia", "vendor: WTD\nparts: SX-F32-SW\nversion: 2.8\n", "ZNFC SFP firmware", 146},
    {"NoVersion", "dahlia", "vendor: WTD\n", "ZNFC SFP firmware", 146},
    {"ThreeNumbers", "dahlia", "vendor: WTD\nversion: 2.8.1\n", "ZNFC SFP firmware", 146},
    {"LineWithoutKey", "dahlia", "vendor: WTD\nversion: 2.8\nwhat\n", "ZNFC SFP firmware", 146},
    {"Size", "dahlia", "vendor: WTD\nversion: 2.8\nsize: 9\n", "ZNFC SFP firmware", 146},
    {"Qsfp", "dahlia\n        sfp: {form: qsfp}", "vendor: WTD\nversion: 2.8\n", "ZNFC SFP firmware", 146},
    {"Failure", "dahlia\n        sfp: {update-fails: true}", "vendor: WTD\nversion: 2.8\n",
     "ZNFC SFP firmware", 144},
    {"Maintenance", "dahlia\n        maintenance: true", "vendor: WTD\nversion: 2.8\n", "ZNFC SFP firmware",
     150},
};

class SfpFirmware : public Sfp, public testing::WithParamInterface<Refusal> {};

TEST_P(SfpFirmware, IsRefusedAndChangesNothing) {
  std::string family = GetParam().host;
  std::string more;
  if (const std::size_t end = family.find('\n'); end != std::string::npos) {
    more = family.substr(end);
    family.resize(end);
  }
  UseHost("adapters:\n  - family: " + family + "\n    ports:\n      - wwpn: 21:00:00:0e:1e:11:22:33" + more +
          "\n");
  NextRun();
  const std::string file = Firmware(GetParam().lines, GetParam().first);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), file.c_str(), 2), GetParam().result);
  if (GetParam().result == 150) return;
  const Memory memory = MemoryOf(HandleAt(0));
  EXPECT_NE(Bytes(memory, 149, 2), (Octets{2, 8}));
}

INSTANTIATE_TEST_SUITE_P(Sfp, SfpFirmware, testing::ValuesIn(kRefusals),
                         [](const auto& test) { return test.param.name; });

TEST_F(Sfp, FirmwareFileThatCannotBeReadIsRefused) {
  Composed("");
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Path("none").c_str(), 2), 101u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Path("").c_str(), 2), 101u);
}

TEST_F(Sfp, FirmwareFileWithAnotherChecksumIsRefused) {
  Composed("");
  Firmware("vendor: WTD\nversion: 2.8\n");
  std::string content = Read("module.fw");
  content[content.find("2.8")] = '3';
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Write("module.fw", content).c_str(), 2), 107u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0),
                                          Write("cut.fw", "ZNFC SFP firmware\nvendor: WTD\n").c_str(), 2),
            146u);
}

struct BadModule {
  const char* name;
  const char* module;
  const char* message;  // after the name of the file
};

constexpr BadModule kBadModules[] = {
    {"Word", "some", ":5: sfp: expected a map, or none, got 'some'"},
    {"Key", "{colour: red}",
     ":5: colour: expected one of the keys form, vendor, oui, part, revision, serial, date, speeds, "
     "ethernet, media, "
     "transmitter, distance, connector, wavelength, measured, after-refresh, update-fails, diagnostics, "
     "thresholds, "
     "calibration, firmware"},
    {"SfpKeyOfAQsfp", "{form: qsfp, thresholds: {}}",
     ":5: thresholds: expected one of the keys form, vendor, oui, part, revision, serial, date, speeds, "
     "ethernet, "
     "media, transmitter, distance, connector, wavelength, measured, after-refresh, update-fails"},
    {"KeyBesideImage", "{vendor: X, image: x.hex}",
     ":5: vendor: expected one of the keys image, update-fails"},
    {"MissingImage", "{image: x.hex}",
     ":5: image: expected a file that can be read (No such file or directory), got 'x.hex'"},
    {"Form", "{form: xfp}", ":5: form: expected one of sfp, qsfp, got 'xfp'"},
    {"Vendor", "{vendor: A NAME OF SEVENTEEN}",
     ":5: vendor: expected a text of at most 16 bytes, got 'A NAME OF SEVENTEEN'"},
    {"QsfpRevision", "{form: qsfp, revision: A10}",
     ":5: revision: expected a text of at most 2 bytes, got 'A10'"},
    {"Date", "{date: 2025-02-29}", ":5: date: expected a date like 2026-01-14, got '2025-02-29'"},
    {"Speed", "{speeds: [5]}", ":5: speeds: expected one of 1, 2, 4, 8, 10, 16, 32, 64, 128, got '5'"},
    {"QsfpSpeed", "{form: qsfp, speeds: [64]}",
     ":5: speeds: expected one of 1, 2, 4, 8, 10, 16, 32, got '64'"},
    {"Ethernet", "{ethernet: [40]}", ":5: ethernet: expected one of 10, got '40'"},
    {"Temperature", "{measured: {temperature: 200}}",
     ":5: temperature: expected a number from -128 to 127.99, got '200'"},
    {"Power", "{measured: {rx-power: lots}}", ":5: rx-power: expected a number from 0 to 6.5535, got 'lots'"},
    {"Exponent", "{measured: {bias: 1e1}}", ":5: bias: expected a number from 0 to 131.07, got '1e1'"},
    {"Threshold", "{thresholds: {voltage: {high: 3}}}",
     ":5: high: expected one of the keys high-alarm, low-alarm, high-warning, low-warning"},
    {"Calibration", "{calibration: external}",
     ":5: calibration: expected internal, or a map of the constants of external calibration, got 'external'"},
    {"Offset", "{calibration: {bias: {offset: 0.5}}}",
     ":5: offset: expected a whole number from -32768 to 32767, got '0.5'"},
    {"FourCoefficients", "{calibration: {rx-power: [0, 1, 0, 0]}}",
     ":5: rx-power: expected five numbers, got a list"},
    {"SixCoefficients", "{calibration: {rx-power: [0, 1, 0, 0, 0, 0]}}",
     ":5: rx-power: expected five numbers and no more, got '0'"},
    {"Firmware", "{firmware: 2.7.1}", ":5: firmware: expected a version like 2.07, got '2.7.1'"},
};

class BadSfp : public Sfp, public testing::WithParamInterface<BadModule> {};

TEST_P(BadSfp, IsReportedWithItsLine) {
  UseHost(HostWith(GetParam().module));
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), Path("lab.yaml") + GetParam().message + "\n");
}

INSTANTIATE_TEST_SUITE_P(Sfp, BadSfp, testing::ValuesIn(kBadModules),
                         [](const auto& test) { return test.param.name; });

TEST_F(Sfp, FileThatIsNoMemoryIsReported) {
  const std::string expected =
      Path("lab.yaml") + ":5: image: expected a file of 512 bytes or of 32 lines like '0010: 08 03 00 ...', ";
  std::ifstream real(RealModule("sfpp-10g-sr-finisar-a"));
  const std::string good(std::istreambuf_iterator<char>(real), {});
  const struct {
    std::string content;
    const char* reported;
  } rows[] = {
      {"", "of which there are 0, got 'bad.hex'\n"},
      {"# a remark\n\n0000: 03 04\n", "which line 3 is not, got 'bad.hex'\n"},
      {good.substr(0, good.size() - 54), "of which there are 31, got 'bad.hex'\n"},
      {good + "0200: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n",
       "which line 33 is not, got 'bad.hex'\n"},
      {"0010" + good.substr(4), "which line 1 is not, got 'bad.hex'\n"},
      {std::string(513, 'x'), "which line 1 is not, got 'bad.hex'\n"},
  };
  for (const auto& row : rows) {
    Write("bad.hex", row.content);
    UseHost(HostWith("{image: bad.hex}"));
    NextRun();
    testing::internal::CaptureStderr();
    EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), expected + row.reported);
  }
}

TEST_F(Sfp, CallsAreTraced) {
  Composed("{part: \"X\\\"1\"}");
  TORPI_SaveSFPDataToFile(HandleAt(0), "none/x");
  TORPI_SfpModuleFirmwareUpdate(HandleAt(0), "none/y", 2);
  const std::string trace = Read("trace");
  EXPECT_NE(trace.find("TORPI_GetSFPDataEx(port=FC_21:00:00:0e:1e:11:22:33, 0, 0) -> 0 part=\"X\\\"1\"\n"),
            std::string::npos)
      << trace;
  EXPECT_NE(trace.find("TORPI_SaveSFPDataToFile(port=FC_21:00:00:0e:1e:11:22:33, \"none/x\") -> 3\n"),
            std::string::npos)
      << trace;
  EXPECT_NE(
      trace.find("TORPI_SfpModuleFirmwareUpdate(port=FC_21:00:00:0e:1e:11:22:33, \"none/y\", 2) -> 101\n"),
      std::string::npos)
      << trace;
}

}  // namespace
