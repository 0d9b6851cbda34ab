#include "config/staged_file.h"

#include <cstring>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "config/record_fields.h"
#include "config/staged_options.h"
#include "staged_fixture.h"

namespace {

class StagedFileTest : public StagedFixture {
 protected:
  StagedFileTest() : StagedFixture("Family") {}

  const StagedFile file_{StagedPath("Family", kPort), kValueSize};
};

TEST_F(StagedFileTest, IsNamedAfterItsFamilyAndThePort) {
  EXPECT_FALSE(file_.IsPresent());
  Stage("A=1\n");
  EXPECT_TRUE(file_.IsPresent());
  EXPECT_TRUE(std::filesystem::exists("/opt/ZunaFcEsxcliPlugin/tmp/Family_FC_21:00:00:11:22:33:44:55"));
}

TEST_F(StagedFileTest, WritesInByteOrderOfTheKeys) {
  EXPECT_EQ(file_.Write({{"b1", "1"}, {"B2", "2"}, {"A_c", "3"}, {"A_D", "4"}, {"A1", "5"}}), kSuccess);
  EXPECT_EQ(ContentOf(path_), "A1=5\nA_D=4\nA_c=3\nB2=2\nb1=1\n");
}

TEST_F(StagedFileTest, WritingNothingMakesNoFile) {
  EXPECT_EQ(file_.Write({}), kSuccess);
  EXPECT_FALSE(file_.IsPresent());
}

TEST_F(StagedFileTest, AFailedWriteStopsAtOnce) {
  Stage("A=1\n");
  ASSERT_EQ(mkdir((path_ + "_tmp").c_str(), 0755), 0);
  EXPECT_EQ(file_.Write({{"A", "2"}, {"B", "3"}}), kFileNotFound);
  EXPECT_EQ(ContentOf(path_), "A=1\n");
  std::filesystem::remove(path_ + "_tmp");
}

TEST_F(StagedFileTest, FindLeavesTheValueWithoutTheKey) {
  std::string value = "before";
  std::uint32_t number = 77;
  EXPECT_FALSE(file_.Find("A", value));
  Stage("B=5\n");
  EXPECT_FALSE(file_.Find("A", value));
  EXPECT_FALSE(file_.FindNumber("A", number));
  EXPECT_EQ(value, "before");
  EXPECT_EQ(number, 77u);
  EXPECT_TRUE(file_.FindNumber("B", number));
  EXPECT_EQ(number, 5u);
}

TEST_F(StagedFileTest, ASmallerBufferSeesLess) {
  Stage("A=" + std::string(300, 'a') + "\n");
  std::string value;
  EXPECT_TRUE(file_.Find("A", value));
  EXPECT_EQ(value.size(), 300u);
  EXPECT_TRUE(StagedFile(StagedPath("Family", kPort), 256).Find("A", value));
  EXPECT_EQ(value.size(), 255u);
}

TEST_F(StagedFileTest, RemoveIsQuietWithoutAFile) {
  file_.Remove();
  Stage("A=1\n");
  file_.Remove();
  EXPECT_FALSE(file_.IsPresent());
}

TEST(NumberOfTest, TakesWhatItCan) {
  EXPECT_EQ(NumberOf("12"), 12u);
  EXPECT_EQ(NumberOf("12abc"), 12u);
  EXPECT_EQ(NumberOf(" +12"), 12u);
  EXPECT_EQ(NumberOf("007"), 7u);
  EXPECT_EQ(NumberOf("0x10"), 0u);
  EXPECT_EQ(NumberOf("abc"), 0u);
  EXPECT_EQ(NumberOf(""), 0u);
}

TEST(NumberOfTest, KeepsTheLow32Bits) {
  EXPECT_EQ(NumberOf("4294967295"), 0xFFFFFFFFu);
  EXPECT_EQ(NumberOf("4294967296"), 0u);
  EXPECT_EQ(NumberOf("4294967301"), 5u);
  EXPECT_EQ(NumberOf("-1"), 0xFFFFFFFFu);
  EXPECT_EQ(NumberOf("99999999999999999999999"), 0xFFFFFFFFu);
}

TEST(OptionValueTest, TrueAndFalseInAnyCase) {
  bool flag = false;
  EXPECT_TRUE(ReadTrueFalse("TRUE", flag));
  EXPECT_TRUE(flag);
  EXPECT_TRUE(ReadTrueFalse("False", flag));
  EXPECT_FALSE(flag);
  for (const char* const word : {"", "1", "0", "yes", "true ", "truee", "tru"}) {
    EXPECT_FALSE(ReadTrueFalse(word, flag)) << word;
  }
}

TEST(OptionValueTest, EachOptionIsSearchedForInAllWords) {
  const Words words = {"port", "-a", "1", "--long", "2", "-A", "3", "-b"};
  std::string value;
  EXPECT_TRUE(FindOption(words, "--other", "-a", value));
  EXPECT_EQ(value, "1");
  EXPECT_TRUE(FindOption(words, "--LONG", "-x", value));
  EXPECT_EQ(value, "2");
  EXPECT_FALSE(FindOption(words, "--none", "-b", value));
  EXPECT_EQ(value, "2");
}

// Fields of a record.
struct Sample {
  std::uint32_t word = 0x80000001;
  std::uint16_t half = 0xFFFE;
  std::uint8_t byte = 200;
  std::uint8_t name[8] = {0x21, 0, 0, 0x11, 0x22, 0x33, 0x44, 0x5F};
  char text[8] = {'n', 'q', 'n', 0, 'o', 'l', 'd', 'x'};
};

constexpr std::uint32_t kAllowed[] = {0, 5, 6};
constexpr RecordField kFields[] = {
    {"Signed", offsetof(Sample, word), 4, FieldKind::kSigned},
    {"Word", offsetof(Sample, word), 4, FieldKind::kUnsigned, {.only = kAllowed}},
    {"Half", offsetof(Sample, half), 2},
    {"Byte", offsetof(Sample, byte), 1, FieldKind::kUnsigned, {.limit = 200}},
    {"Name", offsetof(Sample, name), 8, FieldKind::kName},
    {"Text", offsetof(Sample, text), 8, FieldKind::kText},
};

class RecordFieldsTest : public StagedFileTest {
 protected:
  StatusCode ReadInto(Sample& sample, const std::string& content) const {
    Stage(content);
    return ReadFieldValues(kFields, file_, &sample);
  }
};

TEST_F(RecordFieldsTest, ValuesOfARecord) {
  const Sample sample;
  StagedValues values;
  AddFieldValues(kFields, &sample, values);
  const StagedValues expected = {
      {"Signed", "-2147483647"},           {"Word", "2147483649"}, {"Half", "65534"}, {"Byte", "200"},
      {"Name", "21:00:00:11:22:33:44:5f"}, {"Text", "nqn"}};
  EXPECT_EQ(values, expected);
}

TEST_F(RecordFieldsTest, ATextThatAFileCannotHoldIsLeftOut) {
  for (const char bad : {' ', '#', '\t', '\n', '\x7f', '\x80', '\x01'}) {
    Sample sample;
    sample.text[1] = bad;
    StagedValues values;
    AddFieldValues(kFields, &sample, values);
    EXPECT_EQ(values.count("Text"), 0u) << static_cast<int>(bad);
  }
}

TEST_F(RecordFieldsTest, ATextWithoutTerminatorLosesItsLastCharacter) {
  Sample sample;
  std::memcpy(sample.text, "12345678", 8);
  StagedValues values;
  AddFieldValues(kFields, &sample, values);
  EXPECT_EQ(values["Text"], "1234567");
  // Reading that back leaves the record's text whole.
  EXPECT_EQ(ReadInto(sample, "Text=1234567\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), "12345678");
}

TEST_F(RecordFieldsTest, AbsentKeysLeaveTheRecord) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Nothing=1\n"), kSuccess);
  EXPECT_EQ(std::memcmp(&sample, &static_cast<const Sample&>(Sample{}), sizeof sample), 0);
}

TEST_F(RecordFieldsTest, NumbersAreCheckedAndCut) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Word=5\nHalf=65537\nByte=200\n"), kSuccess);
  EXPECT_EQ(sample.word, 5u);
  EXPECT_EQ(sample.half, 1u);
  EXPECT_EQ(sample.byte, 200u);
  EXPECT_EQ(ReadInto(sample, "Word=1\n"), kInvalidParameter);
  EXPECT_EQ(ReadInto(sample, "Byte=201\n"), kInvalidParameter);
  EXPECT_EQ(ReadInto(sample, "Byte=-1\n"), kInvalidParameter);
  EXPECT_EQ(ReadInto(sample, "Byte=456\n"), kInvalidParameter);  // 200 in 8 bits
}

TEST_F(RecordFieldsTest, FieldsAheadOfABadOneStaySet) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Half=3\nByte=201\nWord=6\nText=new\n"), kInvalidParameter);
  EXPECT_EQ(sample.word, 6u);
  EXPECT_EQ(sample.half, 3u);
  EXPECT_EQ(sample.byte, 200u);
  EXPECT_EQ(std::string(sample.text), "nqn");
}

TEST_F(RecordFieldsTest, AnIncompleteNameLeavesTheField) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Name=50:06:01\n"), kSuccess);
  EXPECT_EQ(sample.name[0], 0x21);
  EXPECT_EQ(ReadInto(sample, "Name=50:06:01:60:3b:20:41:0a:ff\n"), kSuccess);
  EXPECT_EQ(sample.name[0], 0x50);
  EXPECT_EQ(sample.name[7], 0x0A);
}

TEST_F(RecordFieldsTest, ANewTextLeavesNothingOfTheOldOne) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Text=n\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string("n\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(ReadInto(sample, "Text=12345678\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string("1234567\0", 8));
  EXPECT_EQ(ReadInto(sample, "Text=\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string(8, '\0'));
}

TEST_F(RecordFieldsTest, TheSameTextLeavesTheBytesBehindIt) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Text=nqn\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string("nqn\0oldx", 8));
}

}  // namespace
