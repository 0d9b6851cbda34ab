#include "framework/report_lines.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

namespace {

std::string Lines(const std::function<void(ReportText&)>& write) {
  ReportText text(4096);
  write(text);
  return text.Text();
}

constexpr WorldWideName kName = {0x21, 0x00, 0x00, 0x0E, 0x1E, 0xAB, 0xCD, 0xFF};

TEST(ReportLines, BeginAReportWithoutBlanks) {
  EXPECT_EQ(Lines([](ReportText& text) { FirstTextLine(text, "Manufacturer", "Sorvex"); }),
            "Manufacturer: Sorvex\n");
  EXPECT_EQ(Lines([](ReportText& text) { FirstNameLine(text, "Node Name", kName); }),
            "Node Name: 21:00:00:0e:1e:ab:cd:ff\n");
}

TEST(ReportLines, StartWithSixBlanks) {
  EXPECT_EQ(Lines([](ReportText& text) { TextLine(text, "Model", "ZX100"); }), "      Model: ZX100\n");
  EXPECT_EQ(Lines([](ReportText& text) { NameLine(text, "Port Name", kName); }),
            "      Port Name: 21:00:00:0e:1e:ab:cd:ff\n");
  EXPECT_EQ(Lines([](ReportText& text) { NumberLine(text, "Count", 0xFFFFFFFF); }),
            "      Count: 4294967295\n");
  EXPECT_EQ(Lines([](ReportText& text) { NumberLine(text, "Count", 0); }), "      Count: 0\n");
  EXPECT_EQ(Lines([](ReportText& text) { WideNumberLine(text, "Count", 0xFFFFFFFFFFFFFFFF); }),
            "      Count: 18446744073709551615\n");
  EXPECT_EQ(Lines([](ReportText& text) {
              PortIdLine(text, "Port ID", {0x01, 0xAB, 0xFF});
            }),
            "      Port ID: 01:ab:ff\n");
}

TEST(ReportLines, ShowAnEmptyTextAsItIsOrAsNA) {
  EXPECT_EQ(Lines([](ReportText& text) { FirstTextLine(text, "L", ""); }), "L: \n");
  EXPECT_EQ(Lines([](ReportText& text) { TextLine(text, "L", ""); }), "      L: \n");
  EXPECT_EQ(Lines([](ReportText& text) { TextOrNaLine(text, "L", ""); }), "      L: NA\n");
  EXPECT_EQ(Lines([](ReportText& text) { TextOrNaLine(text, "L", "x"); }), "      L: x\n");
}

TEST(ReportLines, ShowAFlag) {
  EXPECT_EQ(Lines([](ReportText& text) { FlagLine(text, "L", true); }), "      L: true\n");
  EXPECT_EQ(Lines([](ReportText& text) { FlagLine(text, "L", false); }), "      L: false\n");
}

TEST(ReportLines, ShowAHostIdWithoutSeparators) {
  EXPECT_EQ(Lines([](ReportText& text) {
              HostIdLine(text, "Host ID",
                         {0x00, 0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0xFE, 0xDC, 0xBA, 0x98, 0x76,
                          0x54, 0xFF});
            }),
            "      Host ID: 000123456789abcdeffedcba987654ff\n");
}

TEST(ReportLines, ShowAHostIdOfZerosAsNA) {
  EXPECT_EQ(Lines([](ReportText& text) { HostIdLine(text, "Host ID", {}); }), "      Host ID: NA\n");
  EXPECT_EQ(Lines([](ReportText& text) {
              HostIdLine(text, "Host ID", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
            }),
            "      Host ID: 00000000000000000000000000000001\n");
}

TEST(ReportLines, TakeATextWithoutATerminator) {
  constexpr std::string_view kField("ZX100", 4);
  EXPECT_EQ(Lines([&](ReportText& text) {
              FirstTextLine(text, "L", kField);
              TextLine(text, "L", kField);
              TextOrNaLine(text, "L", kField);
            }),
            "L: ZX10\n      L: ZX10\n      L: ZX10\n");
}

TEST(ReportLines, TakeATextAsNoFormat) {
  EXPECT_EQ(Lines([](ReportText& text) { TextLine(text, "100%s", "%n%d"); }), "      100%s: %n%d\n");
}

TEST(ReportLines, ShowAVersion) {
  EXPECT_EQ(Lines([](ReportText& text) { VersionLine(text, "V", {9, 8, 7}); }), "      V: 9.08.07\n");
  EXPECT_EQ(Lines([](ReportText& text) { VersionLine(text, "V", {0, 0, 1}); }), "      V: 0.00.01\n");
  EXPECT_EQ(Lines([](ReportText& text) {
              VersionLine(text, "V", {100, 200, 255});
            }),
            "      V: 100.200.255\n");
}

TEST(ReportLines, ShowAVersionOfZerosAsNA) {
  EXPECT_EQ(Lines([](ReportText& text) { VersionLine(text, "V", {0, 0, 0}); }), "      V: NA\n");
  EXPECT_EQ(Lines([](ReportText& text) { VersionOrBlankLine(text, "V", {0, 0, 0}); }), "      V: NA\n");
}

TEST(ReportLines, ShowAVersionOfOnesAsNAInOneFormAlone) {
  EXPECT_EQ(Lines([](ReportText& text) {
              VersionLine(text, "V", {255, 255, 255});
            }),
            "      V: 255.255.255\n");
  EXPECT_EQ(Lines([](ReportText& text) { VersionOrBlankLine(text, "V", {255, 255, 255}); }), "      V: NA\n");
  EXPECT_EQ(Lines([](ReportText& text) {
              VersionOrBlankLine(text, "V", {255, 255, 254});
            }),
            "      V: 255.255.254\n");
}

}  // namespace
