#include "port/sfp/media_info.h"

#include <gtest/gtest.h>

#include <string>

#include "sfp_test_image.h"

namespace {

std::string Summary(SfpImage image, bool show_installed = true) {
  return Displayed([&](ReportText& text) { DisplayMediaInfo(text, image, show_installed); });
}

// The value of one line; the label must have one line.
std::string Value(SfpImage image, const std::string& label) {
  const std::string summary = Summary(image);
  const std::string line = '\n' + std::string(30 - label.size(), ' ') + label + ": ";
  const std::size_t begin = summary.find(line);
  if (begin == std::string::npos || summary.find(line, begin + 1) != std::string::npos) return "no such line";
  const std::size_t value = begin + line.size();
  return summary.substr(value, summary.find('\n', value) - value);
}

// An SFP module with these four bytes of its designation.
TestImage FcModule(std::uint8_t length, std::uint8_t tech, std::uint8_t media, std::uint8_t speed) {
  return TestImage::Sfp().Set(7, {length, tech, media, speed});
}

TEST(DisplayMediaInfo, ShowsAnSfpModule) {
  TestImage image = FcModule(0x20, 0x40, 0x04, 0x68);
  image.Set(20, "SORVEX OPTICS   ").Set(40, "  SX-32-SW     X").Set(56, "B2  ").Set(68, "SN0001          ");
  EXPECT_EQ(Summary(image),
            "Media Information:\n"
            "                         Media: Installed\n"
            "                        Vendor: SORVEX OPTICS\n"
            "                   Part Number:   SX-32-SW     X\n"
            "                      Revision: B2\n"
            "                 Serial Number: SN0001\n"
            "                    Media Type: 3200-M5-SN-I\n"
            "                         Speed: 800, 1600, 3200 MBytes/Sec\n");
}

TEST(DisplayMediaInfo, ShowsAQsfpModule) {
  TestImage image = TestImage::Qsfp();
  image.Set(148, "SORVEX OPTICS   ")
      .Set(168, "SX-QSFP         ")
      .Set(184, "C1ZZ")
      .Set(196, "SN0002          ");
  image.Set(135, {0x50, 0x10, 0x01, 0x0c});
  image.Set(20, "NOT HERE        ").Set(7, {0xff, 0xff, 0xff, 0xff});
  EXPECT_EQ(Summary(image),
            "Media Information:\n"
            "                         Media: Installed\n"
            "                        Vendor: SORVEX OPTICS\n"
            "                   Part Number: SX-QSFP\n"
            "                      Revision: C1\n"
            "                 Serial Number: SN0002\n"
            "                    Media Type: 3200-SM-LL-L/S\n"
            "                         Speed: 200, 3200 MBytes/Sec\n");
}

TEST(DisplayMediaInfo, LeavesTheInstalledLineOut) {
  EXPECT_EQ(
      Summary(TestImage::Sfp(), false).rfind("Media Information:\n                        Vendor: 0\n", 0),
      0U);
}

TEST(DisplayMediaInfo, TextsWithoutLetterOrDigitAreZero) {
  TestImage image = TestImage::Sfp();
  image.Set(20, "----------------").Set(68, "    ");
  for (const char* label : {"Vendor", "Part Number", "Revision", "Serial Number"})
    EXPECT_EQ(Value(image, label), "0");
}

TEST(DisplayMediaInfo, ImageWithoutBytesIsShown) {
  EXPECT_EQ(Summary({}),
            "Media Information:\n"
            "                         Media: Installed\n"
            "                        Vendor: \n"
            "                   Part Number: \n"
            "                      Revision: \n"
            "                 Serial Number: \n"
            "                    Media Type: NA\n"
            "                         Speed: NA\n");
}

struct Designation {
  std::uint8_t length, tech, media, speed;
  const char* text;
};

TEST(MediaType, JoinsItsFourParts) {
  const Designation rows[] = {
      {0x00, 0x00, 0x00, 0x00, "NA"},
      {0x40, 0x40, 0x04, 0x10, "400-M5-SN-S"},
      {0x10, 0x10, 0x01, 0x20, "1600-SM-LL-L"},
      {0x80, 0x20, 0x08, 0x01, "100-M6-SL-V"},
      {0x08, 0x08, 0x80, 0x80, "1200-TW-SR-M"},
      {0x04, 0x04, 0x40, 0x04, "200-TP-IR-SA"},
      // The greatest speed, whatever the order of the bits.
      {0x20, 0x40, 0x04, 0xfd, "3200-M5-SN-I"},
      {0x20, 0x40, 0x04, 0xf5, "1600-M5-SN-I"},
      {0x20, 0x40, 0x04, 0x84, "1200-M5-SN-I"},
      // A part with no text.
      {0x20, 0x40, 0x04, 0x00, "NA-M5-SN-I"},
      {0x20, 0x40, 0x00, 0x08, "3200-NA-SN-I"},
      {0x20, 0x00, 0x04, 0x08, "3200-M5-NA-I"},
      {0x00, 0x40, 0x04, 0x08, "3200-M5-SN-NA"},
      {0x00, 0x00, 0x00, 0x08, "3200-NA-NA-NA"},
      {0x00, 0x00, 0x00, 0x02, "NA-NA-NA-NA"},
      // Bit 0 of the technology and bit 1 of the media have blank texts.
      {0x20, 0x01, 0x02, 0x08, "3200-NA-NA-I"},
      {0x20, 0x41, 0x06, 0x08, "3200-M5-SN-I"},
      // Several texts in one part; bits 0 and 1 of the length are transmitters.
      {0xfc, 0x40, 0x04, 0x08, "3200-M5-SN-SA/M/L/I/S/V"},
      {0x20, 0xfe, 0x04, 0x08, "3200-M5-LR/IR/SR/LL/SL/SN/EL-I"},
      {0x20, 0x40, 0xff, 0x08, "3200-SM/M5/M6/TV/MI/TP/TW-SN-I"},
      {0x21, 0x40, 0x04, 0x08, "3200-M5-SN/EL-I"},
      {0x22, 0x00, 0x04, 0x08, "3200-M5-LS-I"},
      {0x03, 0x00, 0x04, 0x08, "3200-M5-EL/LS-NA"},
      {0x03, 0x80, 0x04, 0x08, "3200-M5-EL/EL/LS-NA"},
  };
  for (const Designation& row : rows) {
    EXPECT_EQ(Value(FcModule(row.length, row.tech, row.media, row.speed), "Media Type"), row.text);
  }
}

TEST(Speed, ListsFibreChannelSpeedsInRisingOrder) {
  EXPECT_EQ(Value(FcModule(0, 0, 0, 0x40), "Speed"), "800 MBytes/Sec");
  EXPECT_EQ(Value(FcModule(0, 0, 0, 0xfd), "Speed"), "100, 200, 400, 800, 1200, 1600, 3200 MBytes/Sec");
}

TEST(Speed, TakesTheSecondSpeedByteWhenItIsValid) {
  TestImage image = FcModule(0x20, 0x40, 0x04, 0x2a);
  image.Set(62, {0x01});
  EXPECT_EQ(Value(image, "Media Type"), "6400-M5-SN-I");
  EXPECT_EQ(Value(image, "Speed"), "1600, 3200, 6400 MBytes/Sec");
  image.Set(62, {0xff});
  EXPECT_EQ(Value(image, "Media Type"), "12800-M5-SN-I");
  EXPECT_EQ(Value(image, "Speed"), "1600, 3200, 6400, 12800 MBytes/Sec");
  image.Set(10, {0x28});
  EXPECT_EQ(Value(image, "Media Type"), "3200-M5-SN-I");
  EXPECT_EQ(Value(image, "Speed"), "1600, 3200 MBytes/Sec");
  image.Set(10, {0x02}).Set(62, {0x02});
  EXPECT_EQ(Value(image, "Speed"), "12800 MBytes/Sec");
}

TEST(Speed, QsfpHasNoSecondSpeedByte) {
  TestImage image = TestImage::Qsfp();
  image.Set(138, {0x0a}).Set(62, {0x03}).Set(190, {0x03});
  EXPECT_EQ(Value(image, "Media Type"), "3200-NA-NA-NA");
  EXPECT_EQ(Value(image, "Speed"), "3200 MBytes/Sec");
}

TEST(Speed, FallsBackToEthernet) {
  TestImage image = TestImage::Sfp();
  EXPECT_EQ(Value(image, "Speed"), "NA");
  image.Set(3, {0x0f});
  EXPECT_EQ(Value(image, "Speed"), "NA");
  image.Set(3, {0xf0});
  EXPECT_EQ(Value(image, "Speed"), "10 Gbits/Sec") << "each text once";
  image.Set(10, {0x02});
  EXPECT_EQ(Value(image, "Speed"), "10 Gbits/Sec");
  image.Set(10, {0x01});
  EXPECT_EQ(Value(image, "Speed"), "100 MBytes/Sec") << "Fibre Channel goes first";
}

TEST(Speed, QsfpReplacesExtendedByItsCode) {
  TestImage image = TestImage::Qsfp();
  image.Set(3, {0xff});
  EXPECT_EQ(Value(image, "Speed"), "NA");
  image.Set(131, {0x7f}).Set(192, {0x10});
  EXPECT_EQ(Value(image, "Speed"), "40 Gbits/Sec, 10 Gbits/Sec");
  image.Set(131, {0x80});
  EXPECT_EQ(Value(image, "Speed"), "40 Gbit/Sec");
  image.Set(131, {0x90});
  EXPECT_EQ(Value(image, "Speed"), "10 Gbits/Sec, 40 Gbit/Sec");
  image.Set(131, {0x80}).Set(192, {0x00});
  EXPECT_EQ(Value(image, "Speed"), "Unspecified");
  image.Set(192, {0x1b});
  EXPECT_EQ(Value(image, "Speed"), "Reserved");
}

TEST(Speed, ExtendedWithoutARowAddsNothing) {
  TestImage image = TestImage::Qsfp();
  image.Set(131, {0x84}).Set(192, {0x1c});
  EXPECT_EQ(Value(image, "Speed"), "40 Gbits/Sec");
  image.Set(131, {0x80});
  EXPECT_EQ(Value(image, "Speed"), "NA");
  EXPECT_EQ(Value(image.First(192), "Speed"), "Unspecified") << "the byte past the end is 0, and 0 has a row";
}

}  // namespace
