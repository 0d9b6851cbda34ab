#include "flash_image.h"

#include <array>
#include <cerrno>

#include "host_file.h"
#include "results.h"
#include "text.h"

namespace lab {
namespace {

constexpr std::string_view kFirstLine = "ZNFC flash image";
constexpr std::string_view kSignature = "Sorvex";
constexpr std::string_view kChecksumKey = "checksum: ";

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

// The component that an image of these kinds carries, and whose version is the image's own.
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

struct Line {
  std::string_view key;
  std::string_view value;
};

// A file taken apart, before anything in it is judged.
struct Content {
  std::string text;
  std::string_view body;  // what the checksum covers
  std::string_view checksum;
  std::vector<Line> lines;

  std::string_view Find(std::string_view key) const {
    for (const Line& line : lines) {
      if (line.key == key) return line.value;
    }
    return {};
  }
};

std::uint32_t Load(const char* file, Content& out) {
  switch (ReadFile(file, out.text)) {
    case FileResult::kRead:
      return kSuccess;
    case FileResult::kNotOpened:
      return errno == ENOENT ? kFileNotFound : kFileOpenError;
    case FileResult::kNotRead:
      return kFileReadError;
  }
  return kFileReadError;
}

// First line, "key: value" lines, checksum line. A line without a key makes the image corrupted, which only
// counts once the checksum has been found right, so `well_formed` tells it.
std::uint32_t TakeApart(Content& content, bool& well_formed) {
  std::string_view text = content.text;
  if (!text.starts_with(kFirstLine) || text.substr(kFirstLine.size(), 1) != "\n") return kNotAFlashImage;
  if (text.size() > kLargestFile) return kImageSizeError;

  const std::size_t last = text.rfind('\n', text.size() - (text.ends_with('\n') ? 2 : 1)) + 1;
  std::string_view end = text.substr(last);
  if (!end.starts_with(kChecksumKey)) return kImageCorrupted;
  content.checksum = Trimmed(end.substr(kChecksumKey.size(), end.find('\n') - kChecksumKey.size()));
  content.body = text.substr(0, last);

  std::string_view rest = content.body.substr(kFirstLine.size() + 1);
  well_formed = true;
  while (!rest.empty()) {
    const std::size_t stop = rest.find('\n');
    const std::string_view line = Trimmed(rest.substr(0, stop));
    rest.remove_prefix(stop == rest.npos ? rest.size() : stop + 1);
    if (line.empty() || line[0] == '#') continue;
    const std::size_t colon = line.find(':');
    if (colon == line.npos || colon == 0) {
      well_formed = false;
    } else {
      content.lines.push_back({line.substr(0, colon), Trimmed(line.substr(colon + 1))});
    }
  }
  return kSuccess;
}

bool Lists(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t comma = list.find(',');
    if (Trimmed(list.substr(0, comma)) == word) return true;
    list.remove_prefix(comma == list.npos ? list.size() : comma + 1);
  }
  return false;
}

template <typename Row, std::size_t N>
const Row* FindRow(const Row (&rows)[N], const char* const Row::*name, std::string_view word) {
  for (const Row& row : rows) {
    if (word == row.*name) return &row;
  }
  return nullptr;
}

std::uint32_t CheckIntegrity(const Content& content, bool well_formed) {
  std::uint64_t size = 0;
  const std::string_view stated = content.Find("size");
  if (!stated.empty() && (!ReadNumber(stated, kLargestFile, size) || size != content.body.size())) {
    return kImageSizeError;
  }
  std::uint64_t checksum = 0;
  if (!ReadNumber("0x" + std::string(content.checksum), UINT32_MAX, checksum)) return kImageCorrupted;
  if (checksum != Crc32(content.body)) return kImageChecksumError;
  if (content.Find("signature") != kSignature) return kSignatureError;
  return well_formed ? kSuccess : kImageCorrupted;
}

std::uint32_t CheckFit(const Content& content, ImageKind kind, const Adapter& adapter) {
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

// Puts one line into the image. Only a multi-boot image carries versions beside its own.
std::uint32_t TakeLine(const Line& line, ImageKind kind, const Adapter& adapter, FlashImage& out) {
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
    return ReadVersion(line.value, out.family_firmware) ? kSuccess : kComponentInvalid;
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

std::uint32_t Crc32(std::string_view bytes) {
  static constexpr auto kTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
      std::uint32_t word = i;
      for (int bit = 0; bit < 8; ++bit) word = (word >> 1) ^ (word & 1 ? 0xEDB88320u : 0u);
      table[i] = word;
    }
    return table;
  }();
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) crc = (crc >> 8) ^ kTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
  return ~crc;
}

std::uint32_t ReadFlashImage(const char* file, ImageKind kind, const Adapter& adapter, FlashImage& out) {
  if (adapter.firmware_lockdown) return kFirmwareLockdown;
  Content content;
  bool well_formed = false;
  if (const std::uint32_t refusal = Load(file, content)) return refusal;
  if (const std::uint32_t refusal = TakeApart(content, well_formed)) return refusal;
  if (const std::uint32_t refusal = CheckIntegrity(content, well_formed)) return refusal;
  if (const std::uint32_t refusal = CheckFit(content, kind, adapter)) return refusal;
  for (const Line& line : content.lines) {
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
    std::memcpy(memo.signature, "FMBS", sizeof memo.signature);
    ReadVersion(image.version, memo.mbi_version);
    if (!image.family_firmware.AllZero()) memo.family_firmware = image.family_firmware;
    if (!image.build_date.empty()) {
      std::memcpy(memo.mbi_build_date, image.build_date.data(), sizeof memo.mbi_build_date);
    }
  }
  RefreshPortVersions(adapter);
}

}  // namespace lab
