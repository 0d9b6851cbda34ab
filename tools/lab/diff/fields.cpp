#include "tools/lab/diff/fields.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "framework/device_library/config_records.h"
#include "framework/device_library/octet_text.h"
#include "framework/device_library/speeds.h"
#include "tools/lab/view/text.h"

namespace diff {
namespace {

std::uint64_t NumberAt(const Field& field, const std::byte* record) {
  std::uint64_t number = 0;
  std::memcpy(&number, record + field.offset, std::min(field.size, sizeof number));
  return number;
}

std::span<const std::uint8_t> OctetsAt(const Field& field, const std::byte* record) {
  return {reinterpret_cast<const std::uint8_t*>(record + field.offset), field.size};
}

std::string NameText(std::span<const std::uint8_t> octets) {
  const bool none = std::all_of(octets.begin(), octets.end(), [](std::uint8_t octet) { return octet == 0; });
  return none ? "" : OctetText(octets);
}

std::string TwoDigits(std::uint8_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string VersionText(std::span<const std::uint8_t> octets, std::size_t parts) {
  const auto version = octets.first(parts);
  if (NameText(version).empty()) return "";
  if (std::all_of(version.begin(), version.end(), [](std::uint8_t octet) { return octet == 0xff; })) {
    return "erased";
  }
  std::string text = std::to_string(version[0]);
  for (const std::uint8_t part : version.subspan(1)) text += "." + TwoDigits(part);
  return text;
}

std::string SpeedMaskText(std::uint64_t mask) {
  std::string text;
  for (auto speed = std::rbegin(kLinkSpeeds); speed != std::rend(kLinkSpeeds); ++speed) {
    if ((mask & speed->supported_bit) == 0) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(speed->gbps);
  }
  return text.empty() ? "" : text + " Gbps";
}

std::string DataRateText(std::uint64_t rate) {
  if (rate == kDataRateAuto) return "auto";
  for (const LinkSpeed& speed : kSettableSpeeds) {
    if (speed.data_rate == rate) return std::to_string(speed.gbps) + " Gbps";
  }
  return "code " + std::to_string(rate);
}

std::string PciLinkText(std::uint64_t word) {
  constexpr view::CodeWord kSpeeds[] = {{1, "2.5"}, {2, "5"}, {3, "8"}, {4, "16"}, {5, "32"}, {8, "32"}};
  const auto speed = static_cast<std::uint32_t>(word & 0x0f);
  const std::string width = "x" + std::to_string(word >> 4 & 0x3f);
  for (const view::CodeWord& row : kSpeeds) {
    if (row.code == speed) return width + " at " + row.word + " GT/s";
  }
  return width + " at speed code " + std::to_string(speed);
}

std::string TargetState(const Field& field, const std::byte* record) {
  TargetEntry target{};
  std::memcpy(target.state_flags, record + field.offset, sizeof target.state_flags);
  return std::string(IsNvmeTarget(target) ? "NVMe, " : "") + view::TargetStateText(target);
}

std::string BootDriveText(const Field& field, const std::byte* record) {
  BootDrive drive;
  std::memcpy(&drive, record + field.offset, sizeof drive);
  return drive.port_name.IsZero() ? "" : drive.port_name.Text() + " LUN " + std::to_string(drive.lun);
}

std::int64_t SignExtended(std::uint64_t number, std::size_t size) {
  const unsigned shift = 64 - 8 * static_cast<unsigned>(size);
  return static_cast<std::int64_t>(number << shift) >> shift;
}

std::string TextAt(const Field& field, const std::byte* record) {
  const char* const text = reinterpret_cast<const char*>(record + field.offset);
  return view::CleanText({text, strnlen(text, field.size)});
}

bool Same(const Field& field, std::span<const std::byte> before, std::span<const std::byte> after) {
  return std::memcmp(before.data() + field.offset, after.data() + field.offset, field.size) == 0;
}

// False when the two values look the same.
bool Say(Report& report, const Field& field, const std::byte* before, const std::byte* after,
         std::string_view prefix) {
  const std::string what = std::string(prefix) + field.what;
  if (field.form == Form::kCounter) {
    report.AddCounter(what, NumberAt(field, before), NumberAt(field, after));
    return true;
  }
  const std::string was = ValueText(field, before);
  const std::string is = ValueText(field, after);
  if (was == is) return false;
  if (field.form == Form::kLink && (is == "up" || is == "down")) {
    report.Add(what, was, is, is == "up" ? "The link came up." : "The link went down.");
  } else if (field.form == Form::kBus) {
    report.Add(what, was, is, "The adapter moved from PCI bus " + was + " to PCI bus " + is + ".");
  } else {
    report.AddValue(what, was, is);
  }
  return true;
}

}  // namespace

std::string ValueText(const Field& field, const std::byte* record) {
  const std::uint64_t number = NumberAt(field, record);
  const auto code = static_cast<std::uint32_t>(number);
  switch (field.form) {
    case Form::kText:
      return TextAt(field, record);
    case Form::kName:
    case Form::kOctets:
      return NameText(OctetsAt(field, record));
    case Form::kVersion:
      return VersionText(OctetsAt(field, record), 3);
    case Form::kShortVersion:
      return VersionText(OctetsAt(field, record), 2);
    case Form::kSigned:
      return std::to_string(SignExtended(number, field.size));
    case Form::kHex:
    case Form::kBus:
      return view::HexNumber(number, static_cast<int>(2 * field.size));
    case Form::kMegabytes:
      return view::Grouped(number) + " MB";
    case Form::kCode:
    case Form::kLink:
      return view::WordOf(field.words, code);
    case Form::kFlag:
      return number != 0 ? "on" : "off";
    case Form::kInverseFlag:
      return number != 0 ? "off" : "on";
    case Form::kSpeed:
      return view::SpeedText(code);
    case Form::kSpeedMask:
      return SpeedMaskText(number);
    case Form::kDataRate:
      return DataRateText(number);
    case Form::kPciLink:
      return PciLinkText(number);
    case Form::kTargetState:
      return TargetState(field, record);
    case Form::kBootDrive:
      return BootDriveText(field, record);
    case Form::kNumber:
    case Form::kCounter:
    case Form::kSkipped:
      break;
  }
  return std::to_string(number);
}

void CompareRecords(Report& report, std::string_view record, std::span<const Field> fields,
                    std::span<const std::byte> before, std::span<const std::byte> after,
                    std::string_view prefix) {
  if (std::equal(before.begin(), before.end(), after.begin(), after.end())) return;
  // The bytes that no field accounts for.
  std::vector<std::byte> rest_before(before.begin(), before.end());
  std::vector<std::byte> rest_after(after.begin(), after.end());
  for (const Field& field : fields) {
    const bool silent = field.form == Form::kSkipped;
    const bool said =
        !silent && !Same(field, before, after) && Say(report, field, before.data(), after.data(), prefix);
    if (!silent && !said) continue;
    std::fill_n(rest_before.begin() + static_cast<std::ptrdiff_t>(field.offset), field.size, std::byte{});
    std::fill_n(rest_after.begin() + static_cast<std::ptrdiff_t>(field.offset), field.size, std::byte{});
  }
  if (rest_before != rest_after) report.AddOtherBytes(record);
}

}  // namespace diff
