// Saved memories of modules, and files with their firmware.
#include <string>

#include "unit/simulator/sfp_fixture.h"

namespace {

using SfpFiles = SfpTest;

TEST_F(SfpFiles, SavedFilesServeAsImages) {
  const Memory memory = Composed("{serial: SAVED}");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("saved.bin").c_str()), 0u);
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("saved.hex").c_str()), 0u);
  EXPECT_EQ(Read("saved.bin"), std::string(memory.begin(), memory.end()));
  EXPECT_EQ(Composed("{image: saved.bin}"), memory);
  EXPECT_EQ(Composed("{image: saved.hex}"), memory);
}

TEST_F(SfpFiles, TextIsTheFormOfTheRealModules) {
  Composed("{image: " + RealModule("sfpp-10g-sr-finisar-a") + "}");
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("saved.hex").c_str()), 0u);
  EXPECT_EQ(Read("saved.hex"), ContentOf(RealModule("sfpp-10g-sr-finisar-a")));
}

TEST_F(SfpFiles, FilesThatCannotBeWrittenAreRefused) {
  Composed("");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("none/saved").c_str()), 3u);
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("").c_str()), 101u);
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), "/dev/full"), 101u);
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), nullptr), 903u);
}

TEST_F(SfpFiles, UpdateStoresTheVersionAndKeepsIt) {
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

class SfpFirmware : public SfpTest, public testing::WithParamInterface<Refusal> {};

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

TEST_F(SfpFiles, FirmwareFileThatCannotBeReadIsRefused) {
  Composed("");
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Path("none").c_str(), 2), 101u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Path("").c_str(), 2), 101u);
}

TEST_F(SfpFiles, FirmwareFileWithAnotherChecksumIsRefused) {
  Composed("");
  Firmware("vendor: WTD\nversion: 2.8\n");
  std::string content = Read("module.fw");
  content[content.find("2.8")] = '3';
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Write("module.fw", content).c_str(), 2), 107u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0),
                                          Write("cut.fw", "ZNFC SFP firmware\nvendor: WTD\n").c_str(), 2),
            146u);
}

}  // namespace
