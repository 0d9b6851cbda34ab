#include "runtime/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstring>
#include <string>

namespace {

// FormatString

TEST(FormatString, ReplacesTheTarget) {
  std::string target = "before";
  FormatString(target, "%s: 0x%x\n", "Device ID", 0x3640U);
  EXPECT_EQ(target, "Device ID: 0x3640\n");
}

TEST(FormatString, KeepsAResultOf1024Characters) {
  std::string target;
  FormatString(target, "%s", std::string(1024, 'a').c_str());
  EXPECT_EQ(target, std::string(1024, 'a'));
}

TEST(FormatString, CutsALongerResultAt1024Characters) {
  std::string target;
  FormatString(target, "%s", (std::string(1024, 'a') + "b").c_str());
  EXPECT_EQ(target, std::string(1024, 'a'));
}

TEST(FormatString, TakesNoMemoryForWhatItCuts) {
  std::string target;
  FormatString(target, "<%s>", std::string(1 << 20, 'a').c_str());
  EXPECT_EQ(target, "<" + std::string(1023, 'a'));
  EXPECT_LE(target.capacity(), 2048U);
}

TEST(FormatString, TakesArgumentsFromItsTarget) {
  std::string target = "ab";
  FormatString(target, "%s%s", target.c_str(), target.c_str());
  EXPECT_EQ(target, "abab");
}

TEST(FormatString, LeavesTheTargetEmptyForANullFormat) {
  std::string target = "before";
  const char* format = nullptr;
  FormatString(target, format, 0);
  EXPECT_EQ(target, "");
}

TEST(FormatString, LeavesTheTargetEmptyForAFailedConversion) {
  ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  std::string target = "before";
  FormatString(target, "part %ls", L"\x20ac");  // no such character in this locale
  EXPECT_EQ(target, "");
}

// BoundedAppend

TEST(BoundedAppend, AppendsWithTheTerminator) {
  char buffer[8] = "abc";
  buffer[7] = 'x';
  EXPECT_EQ(BoundedAppend(buffer, sizeof buffer, "de"), 0);
  EXPECT_STREQ(buffer, "abcde");
  EXPECT_EQ(buffer[7], 'x');
}

TEST(BoundedAppend, FillsTheBufferToTheLastByte) {
  char buffer[6] = "abc";
  EXPECT_EQ(BoundedAppend(buffer, sizeof buffer, "de"), 0);
  EXPECT_STREQ(buffer, "abcde");
}

TEST(BoundedAppend, IntoAFullBufferReturns34AndLeavesItAlone) {
  char buffer[6] = "abcde";
  EXPECT_EQ(BoundedAppend(buffer, sizeof buffer, "f"), 34);
  EXPECT_STREQ(buffer, "abcde");
}

TEST(BoundedAppend, DropsWholeATextThatFitsInPart) {
  char buffer[8] = "abc";
  std::memset(buffer + 4, 'x', 4);
  EXPECT_EQ(BoundedAppend(buffer, sizeof buffer, "defgh"), kRangeError);
  EXPECT_EQ(std::string(buffer, 8), std::string("abc\0xxxx", 8));
}

TEST(BoundedAppend, AnEmptyTextFitsIntoAFullBuffer) {
  char buffer[4] = "abc";
  EXPECT_EQ(BoundedAppend(buffer, sizeof buffer, ""), kTextDone);
  EXPECT_STREQ(buffer, "abc");
}

TEST(BoundedAppend, Returns22ForNullArguments) {
  char buffer[4] = "abc";
  EXPECT_EQ(BoundedAppend(nullptr, 4, "d"), 22);
  EXPECT_EQ(BoundedAppend(buffer, sizeof buffer, nullptr), 22);
  EXPECT_STREQ(buffer, "abc");
}

TEST(BoundedAppend, Returns22ForSizeZero) {
  char buffer[4] = "abc";
  EXPECT_EQ(BoundedAppend(buffer, 0, "d"), kInvalidArgument);
  EXPECT_STREQ(buffer, "abc");
}

TEST(BoundedAppend, Returns22ForABufferWithoutTerminatorWithinItsSize) {
  char buffer[5] = "abcd";
  EXPECT_EQ(BoundedAppend(buffer, 4, ""), kInvalidArgument);
  EXPECT_STREQ(buffer, "abcd");
}

TEST(BoundedAppend, AppendsABufferToItself) {
  char buffer[8] = "abc";
  EXPECT_EQ(BoundedAppend(buffer, sizeof buffer, buffer), kTextDone);
  EXPECT_STREQ(buffer, "abcabc");
}

// BoundedCopy

TEST(BoundedCopy, CopiesAtMostCountCharacters) {
  char target[8] = "xxxxxxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, "abcdef", 3), 0);
  EXPECT_EQ(std::string(target, 8), std::string("abc\0xxx\0", 8));
}

TEST(BoundedCopy, CopiesAShorterTextWhole) {
  char target[8] = "xxxxxxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, "ab", 7), kTextDone);
  EXPECT_STREQ(target, "ab");
}

TEST(BoundedCopy, CopiesAllForTheGreatestCount) {
  char target[4] = "xxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, "abc", kWholeText), 0);
  EXPECT_STREQ(target, "abc");
}

TEST(BoundedCopy, EmptiesTheTargetWhenTheWholeTextDoesNotFit) {
  char target[4] = "xxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, "abcd", kWholeText), 22);
  EXPECT_STREQ(target, "");
}

TEST(BoundedCopy, EmptiesTheTargetWhenTheCountDoesNotFitHoweverShortTheText) {
  char target[4] = "xxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, "a", 4), kInvalidArgument);
  EXPECT_STREQ(target, "");
}

TEST(BoundedCopy, TakesTheGreatestCountThatFits) {
  char target[4] = "xxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, "abcdef", 3), kTextDone);
  EXPECT_STREQ(target, "abc");
}

TEST(BoundedCopy, ReadsNoFurtherThanCount) {
  const char text[] = {'a', 'b', 'c'};  // no terminator
  char target[4] = "xxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, text, 3), kTextDone);
  EXPECT_STREQ(target, "abc");
}

TEST(BoundedCopy, CopiesAnEmptyText) {
  char target[4] = "xxx";
  EXPECT_EQ(BoundedCopy(target, sizeof target, "", kWholeText), kTextDone);
  EXPECT_STREQ(target, "");
}

TEST(BoundedCopy, Returns22ForNullAndZeroArguments) {
  char target[4] = "xxx";
  EXPECT_EQ(BoundedCopy(nullptr, 4, "a", 1), 22);
  EXPECT_EQ(BoundedCopy(target, 0, "a", 1), 22);
  EXPECT_EQ(BoundedCopy(target, sizeof target, nullptr, 1), 22);
  EXPECT_EQ(BoundedCopy(target, sizeof target, "a", 0), 22);
  EXPECT_STREQ(target, "xxx");
}

// DropConversions

TEST(DropConversions, LeavesTextWithoutPercentSignsAlone) {
  EXPECT_EQ(DropConversions(""), "");
  EXPECT_EQ(DropConversions("Model: ZN-64\n"), "Model: ZN-64\n");
}

TEST(DropConversions, TwoPercentSignsBecomeOne) {
  EXPECT_EQ(DropConversions("100%%"), "100%");
  EXPECT_EQ(DropConversions("%%%%"), "%%");
  EXPECT_EQ(DropConversions("%%d"), "%d");
}

TEST(DropConversions, EveryConversionLetterDisappears) {
  for (const char letter : std::string("diouxXeEfFgGaAcspnmCS")) {
    EXPECT_EQ(DropConversions(std::string("a%") + letter + "b"), "ab") << letter;
  }
}

TEST(DropConversions, EveryOtherLetterKeepsItsPercentSign) {
  for (const char letter : std::string("bBDHIJkKMNOPqQrRTUvVwWyYZ")) {
    const std::string text = std::string("a%") + letter + "!";
    EXPECT_EQ(DropConversions(text), text) << letter;
  }
}

TEST(DropConversions, EveryLengthModifierBelongsToTheConversion) {
  for (const char* modifier : {"hh", "h", "l", "ll", "j", "z", "t", "L"}) {
    EXPECT_EQ(DropConversions(std::string("a%") + modifier + "xb"), "ab") << modifier;
  }
}

TEST(DropConversions, OneLengthModifierAtMost) {
  EXPECT_EQ(DropConversions("%hhhd"), "%hhhd");
  EXPECT_EQ(DropConversions("%llld"), "%llld");
  EXPECT_EQ(DropConversions("%lLd"), "%lLd");
}

TEST(DropConversions, EveryFlagBelongsToTheConversion) {
  EXPECT_EQ(DropConversions("a%-+ #0'--db"), "ab");
  EXPECT_EQ(DropConversions("5% of all"), "5f all");  // a blank is a flag, "o" a conversion
}

TEST(DropConversions, WidthAndPrecisionBelongToTheConversion) {
  EXPECT_EQ(DropConversions("a%20sb"), "ab");
  EXPECT_EQ(DropConversions("a%*sb"), "ab");
  EXPECT_EQ(DropConversions("a%.5sb"), "ab");
  EXPECT_EQ(DropConversions("a%.sb"), "ab");
  EXPECT_EQ(DropConversions("a%.*sb"), "ab");
  EXPECT_EQ(DropConversions("a%-08.3llub"), "ab");
  EXPECT_EQ(DropConversions("a%*.*Lfb"), "ab");
}

TEST(DropConversions, AnIncompleteConversionStands) {
  EXPECT_EQ(DropConversions("a%"), "a%");
  EXPECT_EQ(DropConversions("%-"), "%-");
  EXPECT_EQ(DropConversions("%20"), "%20");
  EXPECT_EQ(DropConversions("%.5"), "%.5");
  EXPECT_EQ(DropConversions("%ll"), "%ll");
}

TEST(DropConversions, KeepsAnInvalidConversionAndGoesOnAfterItsPercentSign) {
  EXPECT_EQ(DropConversions("%**d"), "%**d");
  EXPECT_EQ(DropConversions("%..5d"), "%..5d");
  EXPECT_EQ(DropConversions("%5-d"), "%5-d");
  EXPECT_EQ(DropConversions("%1$s"), "%1$s");
  EXPECT_EQ(DropConversions("%l%d"), "%l");
  EXPECT_EQ(DropConversions("%5%%"), "%5%");
  EXPECT_EQ(DropConversions("%!%s%?"), "%!%?");
}

TEST(DropConversions, TheLastCharacterStands) {
  EXPECT_EQ(DropConversions("%d 100%"), " 100%");
}

TEST(DropConversions, KeepsBytesOfEveryValue) {
  const std::string bytes("\x00\x01\x80\xff%", 5);
  EXPECT_EQ(DropConversions(bytes), bytes);
}

}  // namespace
