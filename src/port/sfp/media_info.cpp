#include "port/sfp/media_info.h"

#include <span>
#include <string>
#include <string_view>

#include "port/sfp/fc_codes.h"
#include "port/sfp/field_text.h"
#include "port/sfp/qsfp_field_table.h"
#include "port/sfp/sff8024_codes.h"
#include "port/sfp/sff8472_codes.h"
#include "port/sfp/sff8636_codes.h"
#include "port/sfp/sfp_field_table.h"

namespace {

constexpr const char* kNone = "NA";

using SfpByte = SfpNumber<std::uint8_t>;

// Where a memory map has what the summary shows.
struct SummaryFields {
  SfpRange vendor_name;
  SfpRange vendor_pn;
  SfpRange vendor_rev;
  SfpRange vendor_sn;
  SfpByte ethernet_speed;
  SfpByte fc_length;
  SfpByte fc_tech;
  SfpByte fc_media;
  SfpByte fc_speed;
};

consteval SummaryFields SummaryFieldsOf(std::span<const SfpField> table) {
  return {.vendor_name = RangeNamed(table, "Vendor name"),
          .vendor_pn = RangeNamed(table, "Vendor PN"),
          .vendor_rev = RangeNamed(table, "Vendor rev"),
          .vendor_sn = RangeNamed(table, "Vendor SN"),
          .ethernet_speed = NumberNamed<std::uint8_t>(table, "Ethernet Speed"),
          .fc_length = NumberNamed<std::uint8_t>(table, "FC Link Length"),
          .fc_tech = NumberNamed<std::uint8_t>(table, "FC Transmitter Tech"),
          .fc_media = NumberNamed<std::uint8_t>(table, "FC Transmission Media"),
          .fc_speed = NumberNamed<std::uint8_t>(table, "FC Speed")};
}

constexpr SummaryFields kSfpFields = SummaryFieldsOf(SfpFieldTable);
constexpr SummaryFields kQsfpFields = SummaryFieldsOf(QsfpFieldTable);

const SummaryFields& FieldsOf(SfpImage image) {
  return IsQsfp(image) ? kQsfpFields : kSfpFields;
}

// What only one of the maps has.
constexpr SfpByte kSfpFcSpeed2 = NumberNamed<std::uint8_t>(SfpFieldTable, "FC Speed 2");
constexpr SfpByte kQsfpExtendedSpeed = NumberNamed<std::uint8_t>(QsfpFieldTable, "Extended Ethernet Speed");

// What a module says about its links.
struct Links {
  std::uint8_t length;
  std::uint8_t tech;
  std::uint8_t media;
  std::uint16_t speeds;  // bits of FcSpeedShortBits, and kFcSpeed2Valid
};

Links LinksOf(SfpImage image) {
  const SummaryFields& fields = FieldsOf(image);
  Links links = {image.Read(fields.fc_length), image.Read(fields.fc_tech), image.Read(fields.fc_media),
                 image.Read(fields.fc_speed)};
  if (!IsQsfp(image) && (links.speeds & kFcSpeed2Valid) != 0) {
    links.speeds = static_cast<std::uint16_t>(image.Read(kSfpFcSpeed2) << 8 | links.speeds);
  }
  return links;
}

std::string OrNone(const std::string& text) {
  return text.empty() ? kNone : text;
}

std::string GreatestSpeed(std::uint16_t speeds) {
  const char* greatest = kNone;
  for (const SfpCode& row : FcSpeedShortBits) {
    if ((speeds & row.value) != 0) greatest = row.text;
  }
  return greatest;
}

std::string PartText(std::span<const SfpCode> table, std::uint8_t bits) {
  JoinedTexts texts("/");
  texts.AddBits(table, bits);
  return OrNone(texts.Text());
}

std::string TransmitterText(const Links& links) {
  JoinedTexts texts("/");
  texts.AddBits(FcTechShortBits, links.tech);
  texts.AddBits(FcLengthShortBits, links.length & kFcLengthTransmitterBits);
  return OrNone(texts.Text());
}

std::string MediaTypeText(const Links& links) {
  if (links.length == 0 && links.tech == 0 && links.media == 0 && links.speeds == 0) return kNone;
  return GreatestSpeed(links.speeds) + '-' + PartText(FcMediaShortBits, links.media) + '-' +
         TransmitterText(links) + '-' + PartText(FcLengthShortBits, links.length & kFcLengthDistanceBits);
}

std::string EthernetSpeeds(SfpImage image) {
  JoinedTexts speeds(", ");
  const bool qsfp = IsQsfp(image);
  const std::uint8_t bits = image.Read(FieldsOf(image).ethernet_speed);
  speeds.AddBits(qsfp ? std::span<const SfpCode>(EthernetSpeedsQsfp) : EthernetSpeedsSfp, bits);
  if (qsfp && (bits & kExtendedEthernetSpeedUsed) != 0) {
    speeds.Add(TextOfValue(ExtendedEthernetSpeedCodes, image.Read(kQsfpExtendedSpeed)));
  }
  return speeds.Text();
}

// The Fibre Channel speeds; a module that has none shows its Ethernet speeds.
std::string SpeedText(SfpImage image, const Links& links) {
  JoinedTexts speeds(", ");
  speeds.AddBits(FcSpeedShortBits, links.speeds);
  if (speeds.Text().empty()) return OrNone(EthernetSpeeds(image));
  return speeds.Text() + " MBytes/Sec";
}

void Line(ReportText& text, const char* label, const std::string& value) {
  text.Line("%30s: %s\n", label, value.c_str());
}

}  // namespace

void DisplayMediaInfo(ReportText& text, SfpImage image, bool show_installed) {
  const SummaryFields& fields = FieldsOf(image);
  const auto ascii_line = [&](const char* label, SfpRange range) {
    Line(text, label, GetFieldText(image, range, FIELD_ASCII));
  };
  text.Line("Media Information:\n");
  if (show_installed) Line(text, "Media", "Installed");
  ascii_line("Vendor", fields.vendor_name);
  ascii_line("Part Number", fields.vendor_pn);
  ascii_line("Revision", fields.vendor_rev);
  ascii_line("Serial Number", fields.vendor_sn);
  const Links links = LinksOf(image);
  Line(text, "Media Type", MediaTypeText(links));
  Line(text, "Speed", SpeedText(image, links));
}
