#include "port/sfp/field_text.h"

#include <gtest/gtest.h>

#include <string>

#include "sfp_test_image.h"

namespace {

constexpr SfpCode kBits[] = {{0x01, "one"}, {0x02, " "}, {0x04, "four"}, {0x80, "top"}};
constexpr SfpCode kCodes[] = {{0x00, "nothing"}, {0x07, "seven"}, {0x07, "seven again"}, {0xff, "all"}};

constexpr std::uint16_t kPlace = 40;

// What a field named "Label" at kPlace shows of these bytes.
std::string Shown(SfpFieldType type, std::string_view bytes, std::span<const SfpCode> table = {}) {
  TestImage image = TestImage::Sfp();
  image.Set(kPlace, bytes);
  const SfpField field = {kPlace, static_cast<std::uint16_t>(bytes.size()), type, "Label", table};
  return Displayed([&](ReportText& text) { DisplayField(text, image, field); });
}

std::string Byte(unsigned value) {
  return std::string(1, static_cast<char>(value));
}

// "%30s: "
const std::string kLabel = "                         Label: ";
// 31 and 32 blanks, below the end of a label.
const std::string kBelowFlags = "\n                               ";
const std::string kBelowDump = "\n                                ";

TEST(DisplayField, BitListShowsTheTextsOfTheSetBits) {
  EXPECT_EQ(Shown(FIELD_BIT_LIST, Byte(0x00), kBits), kLabel + "0x0\n");
  EXPECT_EQ(Shown(FIELD_BIT_LIST, Byte(0x01), kBits), kLabel + "one\n");
  EXPECT_EQ(Shown(FIELD_BIT_LIST, Byte(0x85), kBits), kLabel + "one, four, top\n");
  EXPECT_EQ(Shown(FIELD_BIT_LIST, Byte(0xff), kBits), kLabel + "one, four, top\n");
}

TEST(DisplayField, BitListWithoutAnyTextShowsTheByte) {
  EXPECT_EQ(Shown(FIELD_BIT_LIST, Byte(0x08), kBits), kLabel + "0x8\n");
  EXPECT_EQ(Shown(FIELD_BIT_LIST, Byte(0x02), kBits), kLabel + "0x2\n") << "a blank text is none";
  EXPECT_EQ(Shown(FIELD_BIT_LIST, Byte(0x7a), kBits), kLabel + "0x7a\n");
}

TEST(DisplayField, HeadingShowsItsNameAlone) {
  const SfpField heading = {kNoOffset, 0, FIELD_HEADING, "\nAddress A0"};
  EXPECT_EQ(Displayed([&](ReportText& text) { DisplayField(text, {}, heading); }), "\nAddress A0\n");
}

TEST(DisplayField, SkippedFieldShowsNothing) {
  EXPECT_EQ(Shown(FIELD_SKIP, "abc"), "");
}

TEST(DisplayField, BitFlagsShowEveryRow) {
  const std::string label = "                          Label";  // "%31s"
  EXPECT_EQ(Shown(FIELD_BIT_FLAGS, Byte(0x84), kBits), label + " -one: 0x0" + kBelowFlags + " - : 0x0" +
                                                           kBelowFlags + " -four: 0x1" + kBelowFlags +
                                                           " -top: 0x1\n");
  EXPECT_EQ(Shown(FIELD_BIT_FLAGS, Byte(0x02), std::span(kBits).first(1)), label + " -one: 0x0\n");
}

TEST(DisplayField, ByteCodeShowsTheFirstRowOfItsValue) {
  EXPECT_EQ(Shown(FIELD_BYTE_CODE, Byte(0x07), kCodes), kLabel + "seven\n");
  EXPECT_EQ(Shown(FIELD_BYTE_CODE, Byte(0x00), kCodes), kLabel + "nothing\n");
  EXPECT_EQ(Shown(FIELD_BYTE_CODE, Byte(0xff), kCodes), kLabel + "all\n");
  EXPECT_EQ(Shown(FIELD_BYTE_CODE, Byte(0x08), kCodes), kLabel + "\n");
}

TEST(DisplayField, ByteCodeWithoutATableShowsAnEmptyValue) {
  EXPECT_EQ(Shown(FIELD_BYTE_CODE, Byte(0x00)), kLabel + "\n");
}

TEST(DisplayField, NumbersShowTwoDigitsForEachByte) {
  EXPECT_EQ(Shown(FIELD_HEX2, Byte(0x01) + Byte(0xf4)), kLabel + "0x01f4\n");
  EXPECT_EQ(Shown(FIELD_HEX2, Byte(0x00) + Byte(0x0f)), kLabel + "0x000f\n");
  EXPECT_EQ(Shown(FIELD_HEX4, Byte(0x3f) + Byte(0x80) + Byte(0) + Byte(0x0a)), kLabel + "0x3f80000a\n");
}

TEST(DisplayField, HexDumpBreaksAfterEveryEighthByteButTheLast) {
  EXPECT_EQ(Shown(FIELD_HEX_DUMP, Byte(0x0f)), kLabel + "0x0f \n");
  EXPECT_EQ(Shown(FIELD_HEX_DUMP, Byte(0x10)), kLabel + "0x10 \n");
  const std::string eight = "0x61 0x62 0x63 0x64 0x65 0x66 0x67 0x68 ";
  EXPECT_EQ(Shown(FIELD_HEX_DUMP, "abcdefgh"), kLabel + eight + "\n");
  EXPECT_EQ(Shown(FIELD_HEX_DUMP, "abcdefgha"), kLabel + eight + kBelowDump + "0x61 \n");
  EXPECT_EQ(Shown(FIELD_HEX_DUMP, "abcdefghabcdefgh"), kLabel + eight + kBelowDump + eight + "\n");
}

TEST(DisplayField, AsciiEndsAtANullByteOrWithTheField) {
  EXPECT_EQ(Shown(FIELD_ASCII, "FINISAR CORP.   "), kLabel + "FINISAR CORP.    \n");
  EXPECT_EQ(Shown(FIELD_ASCII, std::string("AB\0CD", 5)), kLabel + "AB \n");
  EXPECT_EQ(Shown(FIELD_ASCII, "  x"), kLabel + "  x \n");
}

TEST(DisplayField, AsciiWithoutLetterOrDigitIsZero) {
  EXPECT_EQ(Shown(FIELD_ASCII, "    "), kLabel + "0 \n");
  EXPECT_EQ(Shown(FIELD_ASCII, "-.%/:@[`{"), kLabel + "0 \n");
  EXPECT_EQ(Shown(FIELD_ASCII, std::string(4, '\0')), kLabel + "0 \n");
  EXPECT_EQ(Shown(FIELD_ASCII, std::string("\0AB", 3)), kLabel + "0 \n") << "the text ends at the null byte";
  EXPECT_EQ(Shown(FIELD_ASCII, "\xe9\xc4\xff"), kLabel + "0 \n") << "letters are those of ASCII";
  for (const char* text : {"0", "9", "A", "Z", "a", "z"}) {
    EXPECT_EQ(Shown(FIELD_ASCII, std::string("--") + text), kLabel + "--" + text + " \n");
  }
}

TEST(DisplayField, AsciiShowsOtherBytesAsTheyAre) {
  EXPECT_EQ(Shown(FIELD_ASCII, "a\x01\n%s\xff"), kLabel + "a\x01\n%s\xff \n");
}

TEST(DisplayField, OtherTypesSayThatTheyAreIncorrect) {
  for (const unsigned type : {0U, 91U, 101U, 0xFFFFU}) {
    EXPECT_EQ(Shown(static_cast<SfpFieldType>(type), "a"), "Incorrect Data Type\n") << type;
  }
}

TEST(DisplayField, FieldThatReachesPastTheImageShowsNothing) {
  TestImage image = TestImage::Sfp();
  const SfpImage ten = image.First(10);
  for (const SfpFieldType type : {FIELD_BIT_LIST, FIELD_BIT_FLAGS, FIELD_BYTE_CODE, FIELD_HEX2, FIELD_HEX4,
                                  FIELD_HEX_DUMP, FIELD_ASCII, static_cast<SfpFieldType>(1)}) {
    const SfpField within = {8, 2, type, "Label", kBits};
    const SfpField past = {9, 2, type, "Label", kBits};
    const SfpField outside = {0xFFFF, 2, type, "Label", kBits};
    EXPECT_NE(Displayed([&](ReportText& text) { DisplayField(text, ten, within); }), "") << type;
    EXPECT_EQ(Displayed([&](ReportText& text) { DisplayField(text, ten, past); }), "") << type;
    EXPECT_EQ(Displayed([&](ReportText& text) { DisplayField(text, ten, outside); }), "") << type;
  }
}

TEST(DisplayField, LineThatDoesNotFitIsDroppedWhole) {
  TestImage image = TestImage::Sfp();
  image.Set(kPlace, "abcdefgh");
  const SfpField dump = {kPlace, 8, FIELD_HEX_DUMP, "Label"};
  const auto display = [&](ReportText& text) { DisplayField(text, image, dump); };
  // 32 characters of label, 40 of value, the line end and the terminator.
  EXPECT_EQ(Displayed(display, 73), "");
  EXPECT_EQ(Displayed(display, 74).size(), 73U);
}

TEST(DisplayFieldTable, NeverReadsPastTheLimit) {
  for (TestImage image : {TestImage::Sfp(), TestImage::Qsfp()}) {
    std::string before;
    for (std::size_t limit = 1; limit <= kSfpImageBytes; ++limit) {
      const SfpImage valid = image.First(limit);
      const std::string shown = Displayed([&](ReportText& text) { DisplayFieldTable(text, valid); });
      EXPECT_GE(shown.size(), before.size()) << limit;
      before = shown;
    }
  }
}

TEST(DisplayFieldTable, ImageWithoutBytesShowsTheHeadings) {
  EXPECT_EQ(Displayed([](ReportText& text) { DisplayFieldTable(text, {}); }),
            "\nOptical Transceiver Digital Diagnostic Data:\n\nAddress A0\n\nAddress A2\n");
}

// The longest texts of all fields together: the report's buffer holds them, so that no image loses a line.
TEST(DisplayFieldTable, LongestReportFitsTheBuffer) {
  for (TestImage image : {TestImage::Sfp(), TestImage::Qsfp()}) {
    for (std::size_t i = 1; i < kSfpImageBytes; ++i) image.Set(i, {0xff});
    for (const std::size_t text : {20U, 40U, 56U, 68U, 84U, 148U, 168U, 196U}) image.Set(text, "A");
    const std::string shown = Displayed([&](ReportText& text) { DisplayFieldTable(text, image); });
    EXPECT_GT(shown.size(), 3000U);
    EXPECT_LT(shown.size(), 12000U);
  }
}

TEST(GetFieldText, IsTheValueWithoutTrailingBlanks) {
  TestImage image = TestImage::Sfp();
  image.Set(kPlace, {0x01, 0xf4, 0x20, 0x20}).Set(20, " VENDOR  ").Set(30, "    ");
  EXPECT_EQ(GetFieldText(image, {kPlace, 2}, FIELD_HEX2), "0x01f4");
  EXPECT_EQ(GetFieldText(image, {kPlace, 4}, FIELD_HEX4), "0x01f42020");
  EXPECT_EQ(GetFieldText(image, {kPlace, 1}, FIELD_HEX_DUMP), "0x01");
  EXPECT_EQ(GetFieldText(image, {20, 9}, FIELD_ASCII), " VENDOR");
  EXPECT_EQ(GetFieldText(image, {30, 4}, FIELD_ASCII), "0");
  EXPECT_EQ(GetFieldText(image, {kPlace, 1}, FIELD_BYTE_CODE), "");
  EXPECT_EQ(GetFieldText(image, {kPlace, 1}, FIELD_BIT_LIST), "0x1");
  EXPECT_EQ(GetFieldText(image, {kPlace, 1}, FIELD_SKIP), "");
  EXPECT_EQ(GetFieldText(image, {511, 2}, FIELD_HEX2), "");
  EXPECT_EQ(GetFieldText(image, {0xFFFF, 0xFFFF}, FIELD_ASCII), "");
}

TEST(HexTextToInt, ReadsWhatGetFieldTextGives) {
  EXPECT_EQ(HexTextToInt("0x01f4"), 500U);
  EXPECT_EQ(HexTextToInt("0xffffffff"), 0xffffffffU);
  EXPECT_EQ(HexTextToInt("0x3F800000"), 0x3f800000U);
  EXPECT_EQ(HexTextToInt("0x0"), 0U);
}

TEST(HexTextToInt, TextThatIsNoSuchNumberGivesZero) {
  for (const char* text : {"", "0x", "12", "0xg", "0x1g", "0x1 ", " 0x1", "0x-1", "0x+1", "-0x1", "0x0x1",
                           "0x100000000", "x1"}) {
    EXPECT_EQ(HexTextToInt(text), 0U) << text;
  }
}

TEST(GetFieldValue, IsTheLastByteOfTheFirstFieldOfThatName) {
  TestImage image = TestImage::Sfp();
  image.Set(332, {0x12, 0x34}).Set(352, {0xff}).Set(362, {0x11, 0x22, 0x33, 0x44});
  EXPECT_EQ(GetFieldValue(image, "Tx_I(Slope)"), 0x34);
  EXPECT_EQ(GetFieldValue(image, "Temperature MSB"), 0xff);
  EXPECT_EQ(GetFieldValue(image, "Reserved MSB"), 0x11) << "the row at 362, not the one at 364";
  EXPECT_EQ(GetFieldValue(image, "temperature msb"), 0);
  EXPECT_EQ(GetFieldValue(image, "Temperature MSB "), 0);
  EXPECT_EQ(GetFieldValue(image, "Nothing"), 0);
  EXPECT_EQ(GetFieldValue(image, "\nAddress A0"), 0) << "a heading has no bytes";
  EXPECT_EQ(GetFieldValue(image.First(333), "Tx_I(Slope)"), 0) << "half of the field is none of it";
  EXPECT_EQ(GetFieldValue(image.First(334), "Tx_I(Slope)"), 0x34);
}

TEST(GetFieldValue, LooksIntoTheTableOfTheImage) {
  TestImage sfp = TestImage::Sfp();
  sfp.Set(12, {0x67}).Set(140, {0x68});
  TestImage qsfp = TestImage::Qsfp();
  qsfp.Set(12, {0x67}).Set(140, {0x68}).Set(222, {0x69}).Set(352, {0x70});
  EXPECT_EQ(GetFieldValue(sfp, "BR, Nominal"), 0x67);
  EXPECT_EQ(GetFieldValue(qsfp, "BR, Nominal"), 0x68) << "the row at 140, not the one at 222";
  EXPECT_EQ(GetFieldValue(qsfp, "Temperature MSB"), 0) << "a QSFP image has no such field";
}

TEST(GetSFPTableBitValue, IsTrueForAnyBitOfTheMask) {
  TestImage image = TestImage::Sfp();
  image.Set(92, {0x68});
  EXPECT_TRUE(GetSFPTableBitValue(image, "Diag Monitoring Type:", 0x40));
  EXPECT_TRUE(GetSFPTableBitValue(image, "Diag Monitoring Type:", 0xc0));
  EXPECT_FALSE(GetSFPTableBitValue(image, "Diag Monitoring Type:", 0x80));
  EXPECT_FALSE(GetSFPTableBitValue(image, "Diag Monitoring Type", 0xff));
  EXPECT_FALSE(GetSFPTableBitValue(image.First(92), "Diag Monitoring Type:", 0x40));
}

}  // namespace
