#include "port/sfp/dmi_report.h"

#include <gtest/gtest.h>

#include <string>

#include "sfp_test_image.h"

namespace {

std::string Report(SfpImage image) {
  return Displayed([&](ReportText& text) { AppendDmiReport(text, image); });
}

TEST(AppendDmiReport, HasSummaryThenTableThenFields) {
  TestImage image = TestImage::Sfp();
  image.Set(92, {0x40}).Set(352, {0x2a, 0x40});  // 42.25 degrees
  const std::string report = Report(image);
  const std::size_t installed = report.find("                         Media: Installed\n");
  const std::size_t value = report.find("\n        Value      42.25 ");
  const std::size_t fields = report.find("\nOptical Transceiver Digital Diagnostic Data:\n");
  const std::size_t temperature = report.find("               Temperature MSB: 0x2a \n");
  ASSERT_NE(temperature, std::string::npos);
  EXPECT_EQ(report.find("Media Information:\n"), 0U);
  EXPECT_LT(installed, value);
  EXPECT_LT(value, fields);
  EXPECT_LT(fields, temperature);
}

TEST(AppendDmiReport, ShowsNoTableForAQsfpModule) {
  TestImage image = TestImage::Qsfp();
  image.Set(92, {0x40}).Set(220, {0x40});
  const std::string report = Report(image);
  EXPECT_EQ(report.find("Temperature"), std::string::npos);
  EXPECT_NE(report.find("                    Identifier: Unknown or unspecified\n"), std::string::npos)
      << "the byte at 128";
}

}  // namespace
