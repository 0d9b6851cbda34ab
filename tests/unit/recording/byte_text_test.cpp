#include "recording/byte_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using recording::Field;
using recording::Form;
using Bytes = std::vector<std::uint8_t>;

std::string TextOf(const Bytes& bytes, std::span<const Field> fields = {}) {
  std::string text;
  recording::AppendRecord(text, 2, bytes, fields);
  return text;
}

std::string ChangeOf(const Bytes& before, const Bytes& bytes) {
  std::string text;
  recording::AppendChange(text, bytes, before);
  return text;
}

// The bytes of a text; what is wrong with it, and its line.
struct ReadResult {
  Bytes bytes;
  std::string mistake;
  std::size_t line = 0;
};

ReadResult Read(std::string_view text, std::size_t size) {
  ReadResult result{Bytes(size), "", 0};
  const char* const mistake = recording::ReadBytes(text, result.bytes, result.line);
  if (mistake != nullptr) result.mistake = mistake;
  return result;
}

TEST(RecordText, ZerosAreNoText) {
  EXPECT_EQ(TextOf(Bytes(100)), "");
}

TEST(RecordText, ZerosAtTheEndsAndLongRunsOfThemAreLeftOut) {
  Bytes bytes(40);
  bytes[3] = 0x0a;
  bytes[12] = 0xff;  // eight zeros in between: one line
  bytes[22] = 0x01;  // nine: a line of its own
  EXPECT_EQ(TextOf(bytes), "  3: 0a 00*8 ff\n  22: 01\n");
}

TEST(RecordText, TextsAndRunsAmongBytes) {
  Bytes bytes = {0x82, 'a', 'b', 'c', 0x01, 'a', 'b', 'c', 'd', 0x01};
  bytes.insert(bytes.end(), 6, 0xa5);
  EXPECT_EQ(TextOf(bytes), "  0: 8261626301 \"abcd\" 01 a5*6\n");
}

TEST(RecordText, QuotesAreBytes) {
  EXPECT_EQ(TextOf({'a', 'b', 'c', 'd', '"', 'e', 'f', 'g', 'h'}), "  0: \"abcd\" 22 \"efgh\"\n");
}

TEST(RecordText, LinesHaveThirtyTwoBytes) {
  Bytes bytes;
  for (int i = 0; i < 34; ++i) bytes.push_back(i % 2 == 0 ? 0x01 : 0x80);
  std::string digits;
  for (int i = 0; i < 16; ++i) digits += "0180";
  EXPECT_EQ(TextOf(bytes), "  0: " + digits + "\n  32: 0180\n");
}

TEST(RecordText, LongRunIsOneToken) {
  EXPECT_EQ(TextOf(Bytes(500, 0xff)), "  0: ff*500\n");
}

constexpr Field kFields[] = {
    {"name", 2, 8, Form::kName},        {"model", 10, 6, Form::kText}, {"count", 16, 4, Form::kNumber},
    {"version", 20, 3, Form::kVersion}, {"flags", 23, 4, Form::kHex},
};

TEST(RecordText, FieldsHaveTheirNamesAndValues) {
  Bytes bytes(30);
  const Bytes name = {0x21, 0, 0, 0x0e, 0x1e, 0x11, 0x22, 0x30};
  std::copy(name.begin(), name.end(), bytes.begin() + 2);
  bytes[10] = 'Z';
  bytes[17] = 0x01;
  bytes[20] = 9;
  bytes[22] = 1;
  bytes[23] = bytes[24] = bytes[25] = bytes[26] = 'x';
  EXPECT_EQ(TextOf(bytes, kFields),
            "  2: 2100000e1e112230  # name 21:00:00:0e:1e:11:22:30\n"
            "  10: \"Z\"  # model\n"
            "  16: 0001  # count 256\n"
            "  20: 090001  # version 9.0.1\n"
            "  23: 78787878  # flags\n");
}

TEST(RecordText, GapsAreLinesBetweenFields) {
  Bytes bytes(30);
  bytes[0] = 0xee;
  bytes[29] = 0xdd;
  EXPECT_EQ(TextOf(bytes, kFields), "  0: ee\n  29: dd\n");
}

TEST(ChangeText, NothingForEqualBytes) {
  EXPECT_EQ(ChangeOf({1, 2, 3}, {1, 2, 3}), "");
}

TEST(ChangeText, NamesEveryPlace) {
  Bytes before(20);
  Bytes after(20);
  after[0] = 1;
  after[10] = 2;
  after[13] = 3;  // two equal bytes in between: one part
  EXPECT_EQ(ChangeOf(before, after), "0: 01 10: 02000003");
}

TEST(ChangeText, NamesWhatBecomesZero) {
  EXPECT_EQ(ChangeOf({1, 1, 1}, {1, 0, 1}), "1: 00");
}

TEST(ReadBytes, ReadsWhatIsWritten) {
  Bytes bytes(700);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(i % 7 == 0 ? 0 : i % 3 == 0 ? 'A' + i % 26 : i * i);
  }
  std::fill_n(bytes.begin() + 100, 90, std::uint8_t{0});
  std::fill_n(bytes.begin() + 300, 90, std::uint8_t{'#'});
  for (const auto& fields : {std::span<const Field>(), std::span<const Field>(kFields)}) {
    const ReadResult read = Read(TextOf(bytes, fields), bytes.size());
    EXPECT_EQ(read.mistake, "");
    EXPECT_EQ(read.bytes, bytes);
  }
}

TEST(ReadBytes, TokensOfEveryKind) {
  const ReadResult read = Read("2: 0aFf \"a # b\" # rest 99\n  12: 07*3", 16);
  EXPECT_EQ(read.mistake, "");
  EXPECT_EQ(read.bytes, (Bytes{0, 0, 0x0a, 0xff, 'a', ' ', '#', ' ', 'b', 0, 0, 0, 7, 7, 7, 0}));
}

TEST(ReadBytes, LeavesWhatIsNotWritten) {
  Bytes bytes = {1, 2, 3};
  std::size_t line = 0;
  EXPECT_EQ(recording::ReadBytes("1: 09", bytes, line), nullptr);
  EXPECT_EQ(bytes, (Bytes{1, 9, 3}));
}

TEST(ReadBytes, EmptyTextIsGood) {
  EXPECT_EQ(Read("", 4).mistake, "");
  EXPECT_EQ(Read(" # nothing\n\n", 4).mistake, "");
}

struct Mistake {
  const char* text;
  const char* mistake;
  std::size_t line;
};

class Mistakes : public testing::TestWithParam<Mistake> {};

TEST_P(Mistakes, AreNamedWithTheirLine) {
  const ReadResult read = Read(GetParam().text, 4);
  EXPECT_EQ(read.mistake, GetParam().mistake);
  EXPECT_EQ(read.line, GetParam().line);
}

constexpr const char* kTooMany = "more bytes than the record has";
constexpr const char* kOffset = "an offset outside the record";
constexpr const char* kRun = "expected a byte in front of '*' and a number after it";

INSTANTIATE_TEST_SUITE_P(
    ByteText, Mistakes,
    testing::Values(Mistake{"0: 01\n4: 02", kOffset, 1}, Mistake{"99999999999999999999: 01", kOffset, 0},
                    Mistake{":", kOffset, 0}, Mistake{"-1: 00", kOffset, 0},
                    Mistake{"0102030405", kTooMany, 0}, Mistake{"3: \"ab\"", kTooMany, 0},
                    Mistake{"00*5", kTooMany, 0}, Mistake{"00*18446744073709551615", kTooMany, 0},
                    Mistake{"00*", kRun, 0}, Mistake{"*3", kRun, 0}, Mistake{"0001*2", kRun, 0},
                    Mistake{"00*2x", kRun, 0}, Mistake{"\n\n0: 0", "an odd number of hexadecimal digits", 2},
                    Mistake{"0x", "expected hexadecimal digits", 0},
                    Mistake{"0: 01\t02", "an odd number of hexadecimal digits", 0},
                    Mistake{"\"ab", "a text without its closing quote", 0},
                    Mistake{"\"ab\n\"", "a text without its closing quote", 0}));

}  // namespace
