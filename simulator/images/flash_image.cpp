#include "images/flash_image.h"

#include <cstring>

#include "base/results.h"
#include "base/text.h"
#include "images/image_text.h"

namespace lab {
namespace {

constexpr std::string_view kSignature = "Sorvex";

struct KindName {
  const char* name;
  ImageKind kind;
};
constexpr KindName kKinds[] = {{"MBI", ImageKind::kMbi},
                               {"BrdCfg", ImageKind::kBoardConfig},
                               {"FWPreload", ImageKind::kFirmwarePreload},
                               {"PEPCfg", ImageKind::kPepConfig}};

struct RebootWord {
  const char* word;
  std::uint32_t result;
};
constexpr RebootWord kRebootWords[] = {
    {"none", kSuccess}, {"warm", kSuccessWarmReboot}, {"cold", kSuccessColdReboot}};

// The only component of an image of these kinds; its version is the image's own.
struct KindComponent {
  ImageKind kind;
  const char* component;
};
constexpr KindComponent kKindComponents[] = {{ImageKind::kBoardConfig, "fc-board-config"},
                                             {ImageKind::kFirmwarePreload, "preload-firmware-area"},
                                             {ImageKind::kPepConfig, "pep-board-config"}};

// Version texts of an image that go into the adapter's record.
struct VersionKey {
  const char* name;
  std::string FlashImage::*field;
};
constexpr VersionKey kVersionKeys[] = {{"version", &FlashImage::version},
                                       {"firmware", &FlashImage::firmware},
                                       {"bios", &FlashImage::bios},
                                       {"efi", &FlashImage::efi},
                                       {"fcode", &FlashImage::fcode}};

template <typename Row, std::size_t N>
const Row* FindRow(const Row (&rows)[N], const char* const Row::*name, std::string_view word) {
  for (const Row& row : rows) {
    if (word == row.*name) return &row;
  }
  return nullptr;
}

std::uint32_t CheckIntegrity(const ImageText& content) {
  if (const std::uint32_t failure = content.CheckChecksum()) return failure;
  if (content.Find("signature") != kSignature) return kSignatureError;
  return content.WellFormed() ? kSuccess : kImageCorrupted;
}

std::uint32_t CheckFit(const ImageText& content, ImageKind kind, const Adapter& adapter) {
  const KindName* named = FindRow(kKinds, &KindName::name, content.Find("kind"));
  if (!named) return kImageCorrupted;
  if (named->kind != kind) return kNotAFlashImage;
  if (!(adapter.family->image_kinds & static_cast<std::uint8_t>(kind))) return kNotForThisAdapter;
  const std::string_view families = content.Find("families");
  if (!families.empty() && !Lists(families, adapter.family->name)) return kWrongAdapterFamily;
  const std::string_view serials = content.Find("serials");
  if (!serials.empty() && !Lists(serials, adapter.record.serial_number.View())) return kWrongSerialNumber;
  return kSuccess;
}

// Stores one line in the image. Only a multi-boot image carries versions besides its own.
std::uint32_t TakeLine(const ImageText::Line& line, ImageKind kind, const Adapter& adapter, FlashImage& out) {
  constexpr std::string_view kJudgedElsewhere[] = {"kind", "families", "serials", "signature", "size"};
  for (const std::string_view key : kJudgedElsewhere) {
    if (line.key == key) return kSuccess;
  }
  if (const VersionKey* key = FindRow(kVersionKeys, &VersionKey::name, line.key)) {
    ComponentVersion version{};
    if (!ReadVersion(line.value, version)) return kComponentInvalid;
    if (kind != ImageKind::kMbi && key->field != &FlashImage::version) return kComponentInvalid;
    out.*key->field = line.value;
    return kSuccess;
  }
  if (line.key == "family-firmware") {
    return kind == ImageKind::kMbi && ReadVersion(line.value, out.family_firmware) ? kSuccess
                                                                                   : kComponentInvalid;
  }
  if (line.key == "build-date") {
    char date[8];
    if (!ReadDate(line.value, date)) return kImageCorrupted;
    out.build_date.assign(date, sizeof date);
    return kSuccess;
  }
  if (line.key == "reboot") {
    const RebootWord* reboot = FindRow(kRebootWords, &RebootWord::word, line.value);
    if (!reboot) return kImageCorrupted;
    out.result = reboot->result;
    return kSuccess;
  }
  const FlashComponent* component = FindFlashComponent(line.key);
  if (!component) return kImageCorrupted;
  ComponentVersion version{};
  if (kind != ImageKind::kMbi || !(adapter.family->components & component->group) ||
      !ReadVersion(line.value, version)) {
    return kComponentInvalid;
  }
  out.components.push_back({component, version});
  return kSuccess;
}

// The version of an image that carries a single component is that component's.
void NameOwnComponent(ImageKind kind, FlashImage& out) {
  for (const KindComponent& row : kKindComponents) {
    if (row.kind != kind) continue;
    ComponentVersion version{};
    ReadVersion(out.version, version);
    out.components.push_back({FindFlashComponent(row.component), version});
    out.version.clear();
  }
}

}  // namespace

std::uint32_t ReadFlashImage(const char* file, ImageKind kind, const Adapter& adapter, FlashImage& out) {
  if (adapter.firmware_lockdown) return kFirmwareLockdown;
  ImageText content;
  if (const std::uint32_t refusal = content.Load(file, kFlashFirstLine)) return refusal;
  if (const std::uint32_t refusal = CheckIntegrity(content)) return refusal;
  if (const std::uint32_t refusal = CheckFit(content, kind, adapter)) return refusal;
  for (const ImageText::Line& line : content.Lines()) {
    if (const std::uint32_t refusal = TakeLine(line, kind, adapter, out)) return refusal;
  }
  if (out.version.empty()) return kImageCorrupted;
  NameOwnComponent(kind, out);
  return kSuccess;
}

void ApplyFlashImage(const FlashImage& image, Adapter& adapter) {
  AdapterEntry& record = adapter.record;
  FlashMemoBlock& memo = adapter.memo;
  const auto store = [](FixedText<32>& field, const std::string& version) {
    if (!version.empty()) StoreText(field, version);
  };
  store(record.multiboot_version, image.version);
  store(record.flash_firmware_version, image.firmware);
  store(record.flash_bios_version, image.bios);
  store(record.flash_efi_version, image.efi);
  store(record.flash_fcode_version, image.fcode);
  for (const FlashImage::Component& part : image.components) {
    adapter.flash.*part.component->field = part.version;
  }
  if (adapter.family->memo_block && !image.version.empty()) {
    std::memcpy(memo.signature, kMemoSignature, sizeof memo.signature);
    ReadVersion(image.version, memo.mbi_version);
    if (!image.family_firmware.AllZero()) memo.family_firmware = image.family_firmware;
    if (!image.build_date.empty()) {
      std::memcpy(memo.mbi_build_date, image.build_date.data(), sizeof memo.mbi_build_date);
    }
  }
  RefreshPortVersions(adapter);
}

}  // namespace lab
