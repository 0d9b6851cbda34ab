#include "tools/lab/diff/link_parameters.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using recording::SizedBytes;

void PutWord(SizedBytes& answer, std::uint32_t word) {
  for (const int shift : {24, 16, 8, 0}) answer.bytes.push_back(static_cast<std::uint8_t>(word >> shift));
  answer.size = static_cast<std::uint32_t>(answer.bytes.size());
}

// The module at `degrees`, a port speed, and link errors.
SizedBytes Answer(std::uint32_t degrees, std::uint32_t speeds, std::uint32_t failures,
                  std::uint32_t crc_errors) {
  SizedBytes answer;
  for (const std::uint32_t word : {0x18000000u, 0x3cu}) PutWord(answer, word);
  for (const std::uint32_t word :
       {0x00010000u, 12u, degrees << 24 | 33000u, 3500u << 16 | 6000u, 5000u << 16 | 0x51u}) {
    PutWord(answer, word);
  }
  for (const std::uint32_t word : {0x00010001u, 4u, speeds}) PutWord(answer, word);
  for (const std::uint32_t word : {0x00010002u, 28u, failures, 0u, 0u, 0u, 0u, crc_errors, 0x40000000u}) {
    PutWord(answer, word);
  }
  return answer;
}

std::string TextOf(const SizedBytes& before, const SizedBytes& after) {
  diff::Report report;
  diff::CompareLinkParameters(report, before, after);
  return report.Text();
}

TEST(LinkParameters, SayWhatChanged) {
  const SizedBytes before = Answer(36, 0x04000400, 1, 0);
  EXPECT_EQ(TextOf(before, before), "");
  EXPECT_EQ(TextOf(before, Answer(38, 0x04000400, 1, 0)), "");
  EXPECT_EQ(TextOf(before, Answer(50, 0x04000400, 1, 0)),
            "Switch: module temperature changed from 36.0 C to 50.0 C.\n");
  EXPECT_EQ(TextOf(before, Answer(36, 0x04000400, 3, 7)),
            "Switch: link failure count rose by 2 to 3.\nSwitch: invalid CRC count rose by 7 to 7.\n");
  EXPECT_EQ(TextOf(before, Answer(36, 0x04000800, 1, 0)),
            "Other bytes of the switch's answer to Read Diagnostic Parameters differ.\n");
}

TEST(LinkParameters, ThatEndEarlyOrDifferInSizeAreComparedAllTheSame) {
  const SizedBytes whole = Answer(36, 0x04000400, 1, 0);
  for (std::size_t size = 0; size < whole.bytes.size(); ++size) {
    SizedBytes part = whole;
    part.bytes.resize(size);
    EXPECT_EQ(TextOf(part, part), "") << size;
    part.size = static_cast<std::uint32_t>(size);
    EXPECT_NE(TextOf(whole, part), "") << size;
  }
  SizedBytes lying = whole;
  lying.bytes[12] = 0xff;  // a descriptor of four billion bytes
  EXPECT_EQ(TextOf(lying, lying), "");
  EXPECT_NE(TextOf(whole, lying), "");
}

}  // namespace
