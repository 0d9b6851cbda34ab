#include "framework/report_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

TEST(ReportText, IsEmptyAtFirst) {
  const ReportText text(16);
  ASSERT_TRUE(text.Allocated());
  EXPECT_STREQ(text.Text(), "");
}

TEST(ReportText, JoinsLines) {
  ReportText text(256);
  text.Line("%s: %s\n", "Manufacturer", "Sorvex");
  text.Line("      %s: 0x%x\n", "Vendor ID", 0x1C9Eu);
  text.Line("      %s: %u\n", "Port", 4294967295u);
  EXPECT_STREQ(text.Text(), "Manufacturer: Sorvex\n      Vendor ID: 0x1c9e\n      Port: 4294967295\n");
}

TEST(ReportText, TakesALineThatFillsTheBufferUpToItsTerminator) {
  ReportText text(6);
  text.Line("%s", "12345");
  EXPECT_STREQ(text.Text(), "12345");
}

TEST(ReportText, DropsALineWholeThatLacksRoomForTheTerminator) {
  ReportText text(6);
  text.Line("%s", "123456");
  EXPECT_STREQ(text.Text(), "");
}

TEST(ReportText, DropsALineThatDoesNotFitAfterTheOthers) {
  ReportText text(10);
  text.Line("12345\n");
  text.Line("6789");
  EXPECT_STREQ(text.Text(), "12345\n");
}

TEST(ReportText, TakesAShorterLineAfterADroppedOne) {
  ReportText text(10);
  text.Line("12345\n");
  text.Line("too long\n");
  text.Line("67\n");
  EXPECT_STREQ(text.Text(), "12345\n67\n");
  text.Line("8");
  EXPECT_STREQ(text.Text(), "12345\n67\n");
}

TEST(ReportText, TakesAnEmptyLineIntoAFullBuffer) {
  ReportText text(4);
  text.Line("abc");
  text.Line("%s", "");
  EXPECT_STREQ(text.Text(), "abc");
}

TEST(ReportText, CutsALineAt1024Characters) {
  ReportText text(4096);
  const std::string long_value(1020, 'v');
  text.Line("%s: %s\n", "ab", long_value.c_str());  // 1025 characters: the line end is cut
  text.Line("next");
  EXPECT_EQ(text.Text(), "ab: " + long_value + "next");
}

TEST(ReportText, TakesALineOf1024CharactersWhole) {
  ReportText text(4096);
  const std::string value(1023, 'v');
  text.Line("%s\n", value.c_str());
  EXPECT_EQ(text.Text(), value + "\n");
}

TEST(ReportText, CutsALineBeforeItLooksForRoom) {
  ReportText text(1025);
  const std::string value(5000, 'v');
  text.Line("%s", value.c_str());
  EXPECT_EQ(text.Text(), std::string(1024, 'v'));
}

TEST(ReportText, KeepsPercentSignsOfValues) {
  ReportText text(64);
  text.Line("%s: %s\n", "Model", "100%s %n");
  EXPECT_STREQ(text.Text(), "Model: 100%s %n\n");
}

TEST(ReportText, AppendsPiecesAsTheyStand) {
  ReportText text(64);
  text.Append("      LUNs: ");
  text.Append("%s,");
  text.Append("");
  text.Append("1");
  text.Line("\n");
  EXPECT_STREQ(text.Text(), "      LUNs: %s,1\n");
}

TEST(ReportText, AppendsAPieceOfAnyLength) {
  ReportText text(8192);
  const std::string piece(5000, 'p');
  text.Append(piece.c_str());
  EXPECT_EQ(text.Text(), piece);
}

TEST(ReportText, DropsAPieceWholeThatDoesNotFitAndTakesALaterOne) {
  ReportText text(8);
  text.Append("1234");
  text.Append("5678");
  EXPECT_STREQ(text.Text(), "1234");
  text.Append("567");
  EXPECT_STREQ(text.Text(), "1234567");
  text.Append("8");
  EXPECT_STREQ(text.Text(), "1234567");
}

TEST(ReportText, WithoutMemoryTakesNothing) {
  ReportText text(SIZE_MAX / 2);
  text.Line("%s", "line");
  text.Append("piece");
  EXPECT_FALSE(text.Allocated());
}

TEST(ReportText, SaysThatItsBufferCannotBeHad) {
  EXPECT_FALSE(ReportText(SIZE_MAX / 2).Allocated());
}

}  // namespace
