#include "config/staged/staged_parameter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "unit/config/staged_fixture.h"

namespace {

// Parameters of a record.
struct Sample {
  std::uint32_t word = 0x80000001;
  std::uint16_t half = 0xFFFE;
  std::uint8_t byte = 200;
  std::uint8_t flag = 1;
  std::uint32_t inverse = 1;
  std::uint8_t name[8] = {0x21, 0, 0, 0x11, 0x22, 0x33, 0x44, 0x5F};
  char text[8] = {'n', 'q', 'n', 0, 'o', 'l', 'd', 'x'};
};

constexpr std::uint32_t kAllowed[] = {0, 5, 6};
constexpr StagedParameter kParameters[] = {
    {.key = "Signed", .offset = offsetof(Sample, word), .width = 4, .sign = NumberSign::kSigned},
    {.key = "Word", .offset = offsetof(Sample, word), .width = 4, .rule = {.only = kAllowed}},
    {.key = "Half", .offset = offsetof(Sample, half), .width = 2},
    {.key = "Byte", .offset = offsetof(Sample, byte), .width = 1, .rule = {.limit = 200}},
    {.key = "Flag", .offset = offsetof(Sample, flag), .width = 1, .form = ParameterForm::kFlag},
    {.key = "Inverse", .offset = offsetof(Sample, inverse), .width = 4, .form = ParameterForm::kInverseFlag},
    {.key = "Name", .offset = offsetof(Sample, name), .width = 8, .form = ParameterForm::kName},
    {.key = "Text", .offset = offsetof(Sample, text), .width = 8, .form = ParameterForm::kText},
};

const StagedParameter& ParameterOf(const std::string& key) {
  return *std::find_if(std::begin(kParameters), std::end(kParameters),
                       [&](const StagedParameter& parameter) { return parameter.key == key; });
}

class StagedParameterTest : public StagedFixture {
 protected:
  StagedParameterTest() : StagedFixture("Family") {}

  StatusCode ReadInto(Sample& sample, const std::string& content) const {
    Stage(content);
    TestRun test;
    return ReadValues(test.run, kParameters, File(), &sample);
  }
};

TEST_F(StagedParameterTest, ValuesOfARecord) {
  const Sample sample;
  StagedValues values;
  AddValues(kParameters, &sample, values);
  const StagedValues expected = {{"Signed", "-2147483647"},
                                 {"Word", "2147483649"},
                                 {"Half", "65534"},
                                 {"Byte", "200"},
                                 {"Flag", "1"},
                                 {"Inverse", "1"},
                                 {"Name", "21:00:00:11:22:33:44:5f"},
                                 {"Text", "nqn"}};
  EXPECT_EQ(values, expected);
}

TEST_F(StagedParameterTest, ATextThatAFileCannotHoldIsLeftOut) {
  for (const char bad : {' ', '#', '\t', '\n', '\x7f', '\x80', '\x01'}) {
    Sample sample;
    sample.text[1] = bad;
    StagedValues values;
    AddValues(kParameters, &sample, values);
    EXPECT_EQ(values.count("Text"), 0u) << static_cast<int>(bad);
  }
}

TEST_F(StagedParameterTest, ATextWithoutTerminatorLosesItsLastCharacter) {
  Sample sample;
  std::memcpy(sample.text, "12345678", 8);
  StagedValues values;
  AddValues(kParameters, &sample, values);
  EXPECT_EQ(values["Text"], "1234567");
  // Reading that back leaves the record's text whole.
  EXPECT_EQ(ReadInto(sample, "Text=1234567\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), "12345678");
}

TEST_F(StagedParameterTest, AbsentKeysLeaveTheRecord) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Nothing=1\n"), kSuccess);
  EXPECT_EQ(std::memcmp(&sample, &static_cast<const Sample&>(Sample{}), sizeof sample), 0);
}

TEST_F(StagedParameterTest, NumbersAreCheckedAndCut) {
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

TEST_F(StagedParameterTest, FieldsBeforeABadOneStaySet) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Half=3\nByte=201\nWord=6\nText=new\n"), kInvalidParameter);
  EXPECT_EQ(sample.word, 6u);
  EXPECT_EQ(sample.half, 3u);
  EXPECT_EQ(sample.byte, 200u);
  EXPECT_EQ(std::string(sample.text), "nqn");
}

TEST_F(StagedParameterTest, AnIncompleteNameLeavesTheField) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Name=50:06:01\n"), kSuccess);
  EXPECT_EQ(sample.name[0], 0x21);
  EXPECT_EQ(ReadInto(sample, "Name=50:06:01:60:3b:20:41:0a:ff\n"), kSuccess);
  EXPECT_EQ(sample.name[0], 0x50);
  EXPECT_EQ(sample.name[7], 0x0A);
}

TEST_F(StagedParameterTest, ANewTextLeavesNothingOfTheOldOne) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Text=n\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string("n\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(ReadInto(sample, "Text=12345678\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string("1234567\0", 8));
  EXPECT_EQ(ReadInto(sample, "Text=\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string(8, '\0'));
}

TEST_F(StagedParameterTest, TheSameTextLeavesTheBytesAfterIt) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Text=nqn\n"), kSuccess);
  EXPECT_EQ(std::string(sample.text, 8), std::string("nqn\0oldx", 8));
}

TEST_F(StagedParameterTest, FlagsAreAtMostOne) {
  Sample sample;
  EXPECT_EQ(ReadInto(sample, "Flag=0\nInverse=0\n"), kSuccess);
  EXPECT_EQ(sample.flag, 0u);
  EXPECT_EQ(sample.inverse, 0u);
  for (const char* const content : {"Flag=2\n", "Flag=256\n", "Inverse=2\n", "Inverse=-1\n"}) {
    EXPECT_EQ(ReadInto(sample, content), kInvalidParameter) << content;
  }
}

TEST_F(StagedParameterTest, AFlagInTheWordsOfItsOption) {
  Sample sample;
  EXPECT_TRUE(FlagIn(ParameterOf("Flag"), &sample));
  EXPECT_FALSE(FlagIn(ParameterOf("Inverse"), &sample));
  sample.flag = 0;
  sample.inverse = 0;
  EXPECT_FALSE(FlagIn(ParameterOf("Flag"), &sample));
  EXPECT_TRUE(FlagIn(ParameterOf("Inverse"), &sample));
}

TEST_F(StagedParameterTest, ValuesOfOptions) {
  const auto taken = [](const char* key, const char* value) {
    StagedValues changes;
    const StatusCode status = TakeValue(ParameterOf(key), value, changes).status;
    return Outcome(status, changes);
  };
  EXPECT_EQ(taken("Flag", "TRUE"), "Flag=1");
  EXPECT_EQ(taken("Flag", "false"), "Flag=0");
  EXPECT_EQ(taken("Inverse", "true"), "Inverse=0");
  EXPECT_EQ(taken("Inverse", "False"), "Inverse=1");
  EXPECT_EQ(taken("Flag", "1"), "6");
  EXPECT_EQ(taken("Byte", "200"), "Byte=200");
  EXPECT_EQ(taken("Byte", "201"), "6");
  EXPECT_EQ(taken("Word", "5"), "Word=5");
  EXPECT_EQ(taken("Word", "4"), "6");
}

}  // namespace
