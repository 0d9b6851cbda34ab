#include "images/nvram_image.h"

#include "base/results.h"
#include "base/text.h"
#include "images/image_text.h"

namespace lab {
namespace {

constexpr std::string_view kVirtualLane = "virtual-lane";
constexpr std::string_view kDrive = "drive-";

std::string KeyOf(const char* group, const ConfigField& row) {
  return std::string(group) + '.' + row.key;
}

constexpr const char* kParameterGroup = "parameters";
constexpr const char* kBootGroup = "boot";

std::uint32_t Shown(const ConfigField& row, std::uint32_t number) {
  if (row.kind == ConfigField::kNumber) return number;
  return (number != 0) == (row.kind == ConfigField::kFlag) ? 1 : 0;
}

void AddFields(const char* group, std::span<const ConfigField> rows, const HBAParamsInfo& nvram,
               std::string& text) {
  for (const ConfigField& row : rows) {
    text += KeyOf(group, row) + ": " + std::to_string(Shown(row, nvram.*row.field)) + '\n';
  }
}

// "21:00:00:11:22:33:44:55 3"
bool ReadDrive(std::string_view text, BootDrive& out) {
  constexpr std::size_t kNameLength = 23;
  std::uint64_t lun = 0;
  if (text.size() < kNameLength + 2 || text[kNameLength] != ' ' ||
      !ReadOctets(text.substr(0, kNameLength), out.port_name.octets) ||
      !ReadNumber(text.substr(kNameLength + 1), UINT16_MAX, lun)) {
    return false;
  }
  out.lun = static_cast<std::uint16_t>(lun);
  return true;
}

bool TakeNumber(const char* group, std::span<const ConfigField> rows, const ImageText::Line& line,
                HBAParamsInfo& nvram) {
  for (const ConfigField& row : rows) {
    if (line.key != KeyOf(group, row)) continue;
    std::uint64_t number = 0;
    if (!ReadNumber(line.value, row.kind == ConfigField::kNumber ? UINT32_MAX : 1, number)) return false;
    if (row.kind == ConfigField::kInverseFlag) number = 1 - number;
    nvram.*row.field = static_cast<std::uint32_t>(number);
    return true;
  }
  return false;
}

bool TakeLine(const ImageText::Line& line, HBAParamsInfo& nvram) {
  std::uint64_t number = 0;
  if (line.key == "families" || line.key == "serials" || line.key == "size") return true;
  if (line.key == kVirtualLane) {
    if (!ReadNumber(line.value, UINT8_MAX, number)) return false;
    nvram.enable_virtual_lane = static_cast<std::uint8_t>(number);
    return true;
  }
  if (line.key.starts_with(kDrive)) {
    return ReadNumber(line.key.substr(kDrive.size()), std::size(kBootDrives) - 1, number) &&
           ReadDrive(line.value, nvram.*kBootDrives[number]);
  }
  return TakeNumber(kParameterGroup, ParameterFields(), line, nvram) ||
         TakeNumber(kBootGroup, BootFields(), line, nvram);
}

}  // namespace

std::string NvramImage(const Family& family, const HBAParamsInfo& nvram) {
  std::string text(kNvramFirstLine);
  text.append("\nfamilies: ").append(family.name).append("\n");
  AddFields(kParameterGroup, ParameterFields(), nvram, text);
  text.append(kVirtualLane).append(": ").append(std::to_string(nvram.enable_virtual_lane)).append("\n");
  AddFields(kBootGroup, BootFields(), nvram, text);
  for (std::size_t i = 0; i < std::size(kBootDrives); ++i) {
    const BootDrive& drive = nvram.*kBootDrives[i];
    text.append(kDrive).append(std::to_string(i)).append(": ");
    text.append(OctetText(drive.port_name.octets)).append(" ");
    text.append(std::to_string(drive.lun)).append("\n");
  }
  return Sealed(text);
}

std::uint32_t ReadNvramImage(const char* file, const Adapter& adapter, HBAParamsInfo& nvram) {
  ImageText image;
  if (const std::uint32_t refusal = image.Load(file, kNvramFirstLine)) return refusal;
  if (const std::uint32_t refusal = image.CheckChecksum()) return refusal;
  if (!image.WellFormed()) return kImageCorrupted;
  const std::string_view families = image.Find("families");
  if (!families.empty() && !Lists(families, adapter.family->name)) return kWrongAdapterFamily;
  const std::string_view serials = image.Find("serials");
  if (!serials.empty() && !Lists(serials, adapter.record.serial_number.View())) return kWrongSerialNumber;
  HBAParamsInfo read = nvram;
  for (const ImageText::Line& line : image.Lines()) {
    if (!TakeLine(line, read)) return kImageCorrupted;
  }
  nvram = read;
  return kSuccess;
}

}  // namespace lab
