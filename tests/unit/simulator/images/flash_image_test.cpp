#include "images/flash_image.h"
#include "images/image_text.h"

#include <cstdio>
#include <string>

#include "base/text.h"
#include "unit/simulator/lab_fixture.h"
#include "unit/simulator/source_path.h"

namespace {

constexpr char kHost[] =
    "adapters:\n"
    "  - {family: elm, serial: E1, ports: [{}]}\n"
    "  - {family: hazel, serial: H1, ports: [{}]}\n"
    "  - {family: dahlia, serial: D1, ports: [{}]}\n"
    "  - {family: birch, serial: B1, ports: [{}]}\n"
    "  - {family: elm, serial: L1, firmware-lockdown: true, ports: [{}]}\n"
    "  - {family: elm, serial: M1, ports: [{maintenance: true}]}\n";
enum : unsigned { kElm, kHazel, kDahlia, kBirch, kLocked, kMaintained };

class FlashImage : public LabTest {
 protected:
  FlashImage() { UseHost(kHost); }

  // An image file with these lines after the first one, and a right checksum.
  std::string Image(const std::string& lines) const {
    return Sealed("ZNFC flash image\nsignature: Sorvex\n" + lines);
  }
  std::string Sealed(const std::string& body) const {
    char checksum[32];
    std::snprintf(checksum, sizeof checksum, "checksum: %08X\n", lab::Crc32(body));
    return Write("image", body + checksum);
  }
  static LibraryStatus Mbi(unsigned adapter, const std::string& file) {
    return TORPI_doOptionROMUpdate(HandleAt(adapter), file.c_str(), 0);
  }
};

TEST(Checksum, IsTheCommonCrc32) {
  EXPECT_EQ(lab::Crc32("123456789"), 0xCBF43926u);
}

struct Refusal {
  const char* name;
  unsigned adapter;
  const char* lines;
  unsigned result;
};

std::ostream& operator<<(std::ostream& out, const Refusal& refusal) {
  return out << refusal.name;
}

constexpr Refusal kRefusals[] = {
    {"KindMissing", kElm, "version: 1.2.3\n", 105},
    {"KindUnknown", kElm, "kind: Mbi\nversion: 1.2.3\n", 105},
    {"KindOfAnotherCall", kElm, "kind: BrdCfg\nversion: 1.2.3\n", 103},
    {"VersionMissing", kElm, "kind: MBI\nfirmware: 9.1.1\n", 105},
    {"LineWithoutKey", kElm, "kind: MBI\nversion: 1.2.3\nhello\n", 105},
    {"UnknownKey", kElm, "kind: MBI\nversion: 1.2.3\ncolour: red\n", 105},
    {"RebootWord", kElm, "kind: MBI\nversion: 1.2.3\nreboot: soon\n", 105},
    {"BuildDate", kElm, "kind: MBI\nversion: 1.2.3\nbuild-date: 20260302\n", 105},
    {"StatedSize", kElm, "kind: MBI\nversion: 1.2.3\nsize: 12\n", 106},
    {"WrongFamily", kElm, "kind: MBI\nversion: 1.2.3\nfamilies: hazel, iris\n", 104},
    {"WrongSerial", kElm, "kind: MBI\nversion: 1.2.3\nserials: E2, E10\n", 110},
    {"VersionText", kElm, "kind: MBI\nversion: new\n", 522},
    {"ComponentVersion", kElm, "kind: MBI\nversion: 1.2.3\nfc-board-config: 1.2.300\n", 522},
    {"ComponentOfAnotherFamily", kElm, "kind: MBI\nversion: 1.2.3\nmpi-firmware: 1.2.3\n", 522},
    {"VersionAheadOfAnUnknownKey", kElm, "kind: MBI\nversion: 1.2.3\nfirmware: new\ncolour: red\n", 522},
    {"UnknownKeyAheadOfAVersion", kElm, "kind: MBI\nversion: 1.2.3\ncolour: red\nfirmware: new\n", 105},
    {"Lockdown", kLocked, "kind: MBI\nversion: 1.2.3\n", 133},
    {"Maintenance", kMaintained, "kind: MBI\nversion: 1.2.3\n", 150},
};

class RefusedImage : public FlashImage, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedImage, LeavesTheFlashAsItIs) {
  const std::string before(AdapterAt(GetParam().adapter)->multiboot_version.View());
  EXPECT_EQ(Mbi(GetParam().adapter, Image(GetParam().lines)), GetParam().result);
  EXPECT_EQ(AdapterAt(GetParam().adapter)->multiboot_version.View(), before);
  std::uint8_t required = 0xEE;
  EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
  EXPECT_EQ(required, 0);
}

INSTANTIATE_TEST_SUITE_P(FlashImage, RefusedImage, testing::ValuesIn(kRefusals),
                         [](const auto& test) { return test.param.name; });

TEST_F(FlashImage, FileThatIsNotThere) {
  EXPECT_EQ(Mbi(kElm, Path("none")), 3u);
}

TEST_F(FlashImage, FileThatCannotBeOpened) {
  // A link to itself can't be opened by anyone, root included.
  std::filesystem::create_symlink(Path("loop"), Path("loop"));
  EXPECT_EQ(Mbi(kElm, Path("loop")), 101u);
}

TEST_F(FlashImage, FolderCannotBeRead) {
  EXPECT_EQ(Mbi(kElm, Path("")), 102u);
}

TEST_F(FlashImage, FileOfAnotherFormat) {
  EXPECT_EQ(Mbi(kElm, Write("image", "")), 103u);
  EXPECT_EQ(Mbi(kElm, Write("image",
                            "\x7f"
                            "ELF")),
            103u);
  EXPECT_EQ(Mbi(kElm, Write("image", "ZNFC flash images\n")), 103u);
}

TEST_F(FlashImage, FileCutShort) {
  EXPECT_EQ(Mbi(kElm, Write("image", "ZNFC flash image\n")), 105u);
  EXPECT_EQ(Mbi(kElm, Write("image", "ZNFC flash image\nkind: MBI\n")), 105u);
  EXPECT_EQ(Mbi(kElm, Write("image", "ZNFC flash image\nchecksum: XYZ\n")), 105u);
}

TEST_F(FlashImage, FileTooLarge) {
  const std::string blanks(17u << 20, '\n');
  EXPECT_EQ(Mbi(kElm, Write("image", "ZNFC flash image\n" + blanks)), 106u);
}

TEST_F(FlashImage, WrongChecksum) {
  EXPECT_EQ(Mbi(kElm, Write("image", "ZNFC flash image\nkind: MBI\nchecksum: 00000000\n")), 107u);
}

TEST_F(FlashImage, MissingOrForeignSignature) {
  EXPECT_EQ(Mbi(kElm, Sealed("ZNFC flash image\nkind: MBI\nversion: 1.2.3\n")), 111u);
  EXPECT_EQ(Mbi(kElm, Sealed("ZNFC flash image\nsignature: Other\nkind: MBI\n")), 111u);
}

TEST_F(FlashImage, UpdateChangesTheRecordsTheComponentsAndTheMemoBlock) {
  setenv("TORPI_LAB_TIME", "2026-03-14 09:26:53", 1);
  TORPI_SetToolID(11);
  TORPI_SetToolVersion(1, 9, 0, 0);
  const AdapterEntry* adapter = AdapterAt(kHazel);
  const std::string running(EntryAt(kHazel)->running_firmware_version.View());
  const std::string file = Image(
      "kind: MBI\nfamilies: iris,hazel\nserials: X, H1\nversion: 2.16.01\nbuild-date: 2026-03-02\nfirmware: "
      "9.17.03\n"
      "bios: 3.68\nefi: 7.31\nfcode: 4.17\nfamily-firmware: 9.17.04\nmpi-firmware: 1.42.00\nreboot: none\n");
  EXPECT_EQ(Mbi(kHazel, file), 0u);

  EXPECT_EQ(adapter->multiboot_version.View(), "2.16.01");
  EXPECT_EQ(adapter->flash_firmware_version.View(), "9.17.03");
  EXPECT_EQ(adapter->flash_bios_version.View(), "3.68");
  EXPECT_EQ(adapter->flash_efi_version.View(), "7.31");
  EXPECT_EQ(adapter->flash_fcode_version.View(), "4.17");
  EXPECT_EQ(EntryAt(kHazel)->flash_bios_version.View(), "3.68");
  EXPECT_EQ(lab::OctetText({EntryAt(kHazel)->flash_firmware_version, 3}), "09:11:03");
  EXPECT_EQ(EntryAt(kHazel)->running_firmware_version.View(), running);
  FlashComponentVersions versions{};
  ASSERT_EQ(TORPI_GetFlashComponentVersion(HandleAt(kHazel), &versions), 0u);
  EXPECT_EQ(lab::VersionText(versions.mpi_firmware), "1.42.00");
  EXPECT_EQ(lab::VersionText(versions.pep_firmware), "1.04.12");
  FlashMemoBlock memo{};
  ASSERT_EQ(TORPI_GetAdapterFlashMemoBlock(HandleAt(kHazel), &memo), 0u);
  EXPECT_EQ(lab::VersionText(memo.mbi_version), "2.16.01");
  EXPECT_EQ(lab::VersionText(memo.family_firmware), "9.17.04");
  EXPECT_EQ(std::string(memo.mbi_build_date, 8), "20260302");
  EXPECT_EQ(std::string(memo.tool_id, 4), "ECLI");
  EXPECT_EQ(lab::OctetText({memo.tool_version, 4}), "01:09:00:00");
  EXPECT_EQ(lab::TimeText(memo), "2026-03-14 09:26:53");
  std::uint8_t required = 0xEE;
  EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
  EXPECT_EQ(required, 0);
}

TEST_F(FlashImage, RebootWordDecidesTheResultAndTheFlag) {
  std::uint8_t required = 0xEE;
  EXPECT_EQ(Mbi(kElm, Image("kind: MBI\nversion: 1.2.3\n")), 0u);
  EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
  EXPECT_EQ(required, 0);
  EXPECT_EQ(Mbi(kElm, Image("kind: MBI\nversion: 1.2.3\nreboot: warm\n")), 201u);
  EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
  EXPECT_EQ(required, 1);
  EXPECT_EQ(Mbi(kElm, Image("kind: MBI\nversion: 1.2.3\nreboot: cold\n")), 205u);
}

TEST_F(FlashImage, UpdateLastsFromRunToRun) {
  UseState();
  setenv("TORPI_LAB_TIME", "2026-03-14 09:26:53", 1);
  EXPECT_EQ(Mbi(kDahlia, Image("kind: MBI\nversion: 3.3.1\npcie-serdes: 2.9.9\n")), 0u);
  NextRun();
  EXPECT_EQ(AdapterAt(kDahlia)->multiboot_version.View(), "3.3.1");
  FlashComponentVersions versions{};
  EXPECT_EQ(TORPI_GetFlashComponentVersion(HandleAt(kDahlia), &versions), 0u);
  EXPECT_EQ(lab::VersionText(versions.pcie_serdes), "2.09.09");
  FlashMemoBlock memo{};
  EXPECT_EQ(TORPI_GetAdapterFlashMemoBlock(HandleAt(kDahlia), &memo), 0u);
  EXPECT_EQ(lab::VersionText(memo.mbi_version), "3.03.01");
  EXPECT_EQ(std::string(memo.tool_id, 4), "ZNFL");
  EXPECT_EQ(lab::TimeText(memo), "2026-03-14 09:26:53");
}

struct KindRow {
  const char* kind;
  LibraryStatus (*update)(const DeviceHandle*, const char*);
  ComponentVersion FlashComponentVersions::*component;
  unsigned results[4];  // elm, hazel, dahlia, birch
};

TEST_F(FlashImage, OtherKindsWriteTheirOwnComponentWhereTheFamilyHasIt) {
  const KindRow kRows[] = {
      {"BrdCfg",
       TORPI_UpdateSpecificFlashRegionFromFile,
       &FlashComponentVersions::fc_board_config,
       {0, 0, 121, 121}},
      {"FWPreload",
       TORPI_UpdateAdapterFirmwareTableFromFile,
       &FlashComponentVersions::preload_firmware_area,
       {0, 0, 121, 0}},
      {"PEPCfg",
       TORPI_UpdateAdapterPEPCfgFromFile,
       &FlashComponentVersions::pep_board_config,
       {121, 0, 121, 121}},
  };
  for (const KindRow& row : kRows) {
    const std::string file = Image("kind: " + std::string(row.kind) + "\nversion: 7.8.9\n");
    for (const unsigned adapter : {kElm, kHazel, kDahlia, kBirch}) {
      const std::string multiboot(AdapterAt(adapter)->multiboot_version.View());
      EXPECT_EQ(row.update(HandleAt(adapter), file.c_str()), row.results[adapter]) << row.kind << adapter;
      FlashComponentVersions versions{};
      EXPECT_EQ(TORPI_GetFlashComponentVersion(HandleAt(adapter), &versions), 0u);
      EXPECT_EQ(lab::VersionText(versions.*row.component) == "7.08.09", row.results[adapter] == 0);
      EXPECT_EQ(AdapterAt(adapter)->multiboot_version.View(), multiboot);
    }
  }
}

TEST_F(FlashImage, OtherKindsCarryNoOtherVersions) {
  for (const char* const line :
       {"firmware: 1.2.3\n", "family-firmware: 1.2.3\n", "fc-board-config: 1.2.3\n"}) {
    const std::string file = Image(std::string("kind: BrdCfg\nversion: 7.8.9\n") + line);
    EXPECT_EQ(TORPI_UpdateSpecificFlashRegionFromFile(HandleAt(kElm), file.c_str()), 522u) << line;
  }
}

TEST_F(FlashImage, ReadyImagesAreAcceptedOnTheBuiltinHost) {
  unsetenv("TORPI_LAB_HOST");
  NextRun();
  const std::string folder = SourcePath("examples/flash/");
  EXPECT_EQ(Mbi(0, folder + "elm-mbi.img"), 201u);
  EXPECT_EQ(Mbi(1, folder + "hazel-mbi.img"), 0u);
  EXPECT_EQ(Mbi(3, folder + "dahlia-mbi.img"), 205u);
  EXPECT_EQ(Mbi(0, folder + "damaged.img"), 107u);
  EXPECT_EQ(TORPI_UpdateSpecificFlashRegionFromFile(HandleAt(0), (folder + "board-config.img").c_str()), 0u);
  EXPECT_EQ(TORPI_UpdateAdapterFirmwareTableFromFile(HandleAt(0), (folder + "firmware-preload.img").c_str()),
            201u);
  EXPECT_EQ(TORPI_UpdateAdapterPEPCfgFromFile(HandleAt(1), (folder + "pep-config.img").c_str()), 0u);
}

TEST_F(FlashImage, NullFileNameIsRefused) {
  EXPECT_EQ(TORPI_doOptionROMUpdate(HandleAt(kElm), nullptr, 0), 903u);
}

}  // namespace
