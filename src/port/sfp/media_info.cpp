#include "port/sfp/media_info.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "port/sfp/fc_codes.h"
#include "port/sfp/field_text.h"
#include "port/sfp/sff8024_codes.h"
#include "port/sfp/sff8472_codes.h"
#include "port/sfp/sff8636_codes.h"

namespace {

constexpr const char* kNone = "NA";

// Bytes behind the page base, which both memory maps share.
constexpr std::size_t kEthernetSpeed = 3;
constexpr std::size_t kFcLength = 7;
constexpr std::size_t kFcTech = 8;
constexpr std::size_t kFcMedia = 9;
constexpr std::size_t kFcSpeed = 10;
constexpr std::uint16_t kVendorName = 20;
constexpr std::uint16_t kVendorPn = 40;
constexpr std::uint16_t kVendorRev = 56;
constexpr std::uint16_t kVendorSn = 68;

constexpr std::size_t kFcSpeed2 = 62;  // of SFP images
constexpr std::uint8_t kFcSpeed2IsValid = 0x02;
constexpr std::size_t kExtendedEthernetSpeed = 192;  // of QSFP images
constexpr std::string_view kExtended = "Extended";

// The two lowest bits of the link length name transmitters, the others distances.
constexpr std::uint8_t kLengthBitsOfTransmitter = 0x03;

void Line(ReportText& text, const char* label, const std::string& value) {
  text.Line("%30s: %s\n", label, value.c_str());
}

void AsciiLine(ReportText& text, const char* label, SfpImage image, std::uint16_t offset,
               std::uint16_t size) {
  const auto place = static_cast<std::uint16_t>(PageBase(image) + offset);
  Line(text, label, GetFieldText(image, place, size, FIELD_ASCII));
}

std::uint8_t CommonByte(SfpImage image, std::size_t offset) {
  return ByteAt(image, PageBase(image) + offset);
}

void AddNumbers(std::vector<unsigned long>& numbers, std::span<const SfpCode> table, std::uint8_t byte) {
  for (const SfpCode& row : table) {
    if ((byte & row.value) != 0) numbers.push_back(std::strtoul(row.text, nullptr, 10));
  }
}

// The Fibre Channel speeds in MBytes/Sec, in rising order.
std::vector<unsigned long> FcSpeeds(SfpImage image) {
  std::vector<unsigned long> speeds;
  const std::uint8_t bits = CommonByte(image, kFcSpeed);
  AddNumbers(speeds, FcSpeedShortBits, bits);
  if (!IsQsfp(image) && (bits & kFcSpeed2IsValid) != 0) {
    AddNumbers(speeds, FcSpeed2ShortBits, ByteAt(image, kFcSpeed2));
  }
  std::sort(speeds.begin(), speeds.end());
  return speeds;
}

void AddOnce(std::string& list, std::vector<std::string_view>& listed, std::string_view text) {
  if (text.empty() || std::find(listed.begin(), listed.end(), text) != listed.end()) return;
  if (!listed.empty()) list += ", ";
  list += text;
  listed.push_back(text);
}

// Each speed once, however many interfaces have it.
std::string EthernetSpeeds(SfpImage image) {
  const std::span<const SfpCode> table =
      IsQsfp(image) ? std::span<const SfpCode>(EthernetSpeedBitsQsfp) : EthernetSpeedBitsSfp;
  const std::uint8_t bits = CommonByte(image, kEthernetSpeed);
  std::string list;
  std::vector<std::string_view> listed;
  for (const SfpCode& row : table) {
    if ((bits & row.value) == 0) continue;
    const bool extended = row.text == kExtended;
    AddOnce(
        list, listed,
        extended ? TextOfValue(ExtendedEthernetSpeedCodes, ByteAt(image, kExtendedEthernetSpeed)) : row.text);
  }
  return list;
}

std::string SpeedText(SfpImage image) {
  std::string text;
  for (const unsigned long speed : FcSpeeds(image)) {
    if (!text.empty()) text += ", ";
    text += std::to_string(speed);
  }
  if (!text.empty()) return text + " MBytes/Sec";
  text = EthernetSpeeds(image);
  return text.empty() ? kNone : text;
}

std::string PartText(const std::string& texts) {
  return texts.empty() ? kNone : texts;
}

std::string TransmitterText(std::uint8_t tech, std::uint8_t length) {
  std::string text = BitTexts(FcTechShortBits, tech, "/");
  const std::string more = BitTexts(FcLengthShortBits, length & kLengthBitsOfTransmitter, "/");
  if (!text.empty() && !more.empty()) text += '/';
  return text + more;
}

std::string MediaTypeText(SfpImage image) {
  const std::uint8_t length = CommonByte(image, kFcLength);
  const std::uint8_t tech = CommonByte(image, kFcTech);
  const std::uint8_t media = CommonByte(image, kFcMedia);
  if (length == 0 && tech == 0 && media == 0 && CommonByte(image, kFcSpeed) == 0) return kNone;
  const std::vector<unsigned long> speeds = FcSpeeds(image);
  const std::uint8_t distance = length & static_cast<std::uint8_t>(~kLengthBitsOfTransmitter);
  return (speeds.empty() ? kNone : std::to_string(speeds.back())) + '-' +
         PartText(BitTexts(FcMediaShortBits, media, "/")) + '-' + PartText(TransmitterText(tech, length)) +
         '-' + PartText(BitTexts(FcLengthShortBits, distance, "/"));
}

}  // namespace

void DisplayMediaInfo(ReportText& text, SfpImage image, bool show_installed) {
  text.Line("Media Information:\n");
  if (show_installed) Line(text, "Media", "Installed");
  AsciiLine(text, "Vendor", image, kVendorName, 16);
  AsciiLine(text, "Part Number", image, kVendorPn, 16);
  AsciiLine(text, "Revision", image, kVendorRev, IsQsfp(image) ? 2 : 4);
  AsciiLine(text, "Serial Number", image, kVendorSn, 16);
  Line(text, "Media Type", MediaTypeText(image));
  Line(text, "Speed", SpeedText(image));
}
