#include "tools/common/arguments.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

using tools::Arguments;
using tools::Words;

constexpr char kHelp[] = "Try 'tool --help'.\n";

Arguments Take(const Words& words) {
  return Arguments("tool", words, {{"--output", "-o", "FILE"}, {"--level", "", "N"}, {"--force", "-f"}});
}

struct Case {
  const char* name;
  Words words;
  Words outputs;
  bool force;
  Words operands;
};

std::ostream& operator<<(std::ostream& out, const Case& row) {
  return out << row.name;
}

const Case kGood[] = {
    {"Nothing", {}, {}, false, {}},
    {"Operands", {"a", "b"}, {}, false, {"a", "b"}},
    {"LongOption", {"--output", "x"}, {"x"}, false, {}},
    {"LongOptionWithEquals", {"--output=x"}, {"x"}, false, {}},
    {"ShortOption", {"-o", "x"}, {"x"}, false, {}},
    {"Switches", {"-f", "--force"}, {}, true, {}},
    {"OptionsAmongOperands", {"a", "-f", "b", "-o", "x", "c"}, {"x"}, true, {"a", "b", "c"}},
    {"EmptyValue", {"--output="}, {""}, false, {}},
    {"EmptyWordAsValue", {"--output", ""}, {""}, false, {}},
    {"ValueWithEquals", {"--output=a=b"}, {"a=b"}, false, {}},
    {"ValueThatLooksLikeAnOption", {"-o", "--force"}, {"--force"}, false, {}},
    {"ValueThatIsTheEnd", {"-o", "--", "a"}, {"--"}, false, {"a"}},
    {"SeveralTimes", {"-o", "x", "--output=y"}, {"x", "y"}, false, {}},
    {"AfterTheEnd", {"--", "-f", "--", "--output"}, {}, false, {"-f", "--", "--output"}},
    {"SingleDash", {"-"}, {}, false, {"-"}},
    {"EmptyWord", {""}, {}, false, {""}},
};

class GoodArguments : public testing::TestWithParam<Case> {};

TEST_P(GoodArguments, AreTakenApart) {
  const Arguments arguments = Take(GetParam().words);
  EXPECT_TRUE(arguments.Good());
  EXPECT_EQ(arguments.Values("--output"), GetParam().outputs);
  EXPECT_EQ(arguments.Has("--output"), !GetParam().outputs.empty());
  if (!GetParam().outputs.empty()) {
    ASSERT_NE(arguments.Value("--output"), nullptr);
    EXPECT_EQ(*arguments.Value("--output"), GetParam().outputs.back());
  }
  EXPECT_EQ(arguments.Has("--force"), GetParam().force);
  EXPECT_EQ(arguments.Operands(), GetParam().operands);
}

INSTANTIATE_TEST_SUITE_P(Tools, GoodArguments, testing::ValuesIn(kGood),
                         [](const auto& test) { return test.param.name; });

struct Refusal {
  const char* name;
  Words words;
  const char* message;
};

std::ostream& operator<<(std::ostream& out, const Refusal& row) {
  return out << row.name;
}

const Refusal kRefused[] = {
    {"Unknown", {"--colour"}, "unknown option '--colour'"},
    {"UnknownWithValue", {"--colour=red"}, "unknown option '--colour'"},
    {"UnknownShort", {"-x"}, "unknown option '-x'"},
    {"Bundle", {"-fo"}, "unknown option '-fo'"},
    {"Beginning", {"--out", "x"}, "unknown option '--out'"},
    {"NoValue", {"a", "--output"}, "--output needs a value: FILE"},
    {"NoValueOfShort", {"-o"}, "-o needs a value: FILE"},
    {"SwitchWithValue", {"--force=1"}, "--force takes no value"},
    {"ShortWithEquals", {"-o=x"}, "unknown option '-o=x'"},
    {"TheFirstOfTwo", {"-x", "-y"}, "unknown option '-x'"},
};

class RefusedArguments : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedArguments, SayWhatIsWrongAndWhereHelpIs) {
  testing::internal::CaptureStderr();
  const Arguments arguments = Take(GetParam().words);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tool: " + std::string(GetParam().message) + "\n" + kHelp);
  EXPECT_FALSE(arguments.Good());
}

INSTANTIATE_TEST_SUITE_P(Tools, RefusedArguments, testing::ValuesIn(kRefused),
                         [](const auto& test) { return test.param.name; });

struct NumberRow {
  const char* name;
  const char* value;  // null: the option is not given
  long number;
  bool good;
};

std::ostream& operator<<(std::ostream& out, const NumberRow& row) {
  return out << row.name;
}

// Expected from -3 to 12, and 7 where there is none.
constexpr NumberRow kNumbers[] = {
    {"Missing", nullptr, 7, true}, {"Lowest", "-3", -3, true},
    {"Highest", "12", 12, true},   {"LeadingZero", "010", 10, true},
    {"TooLow", "-4", 7, false},    {"TooHigh", "13", 7, false},
    {"Empty", "", 7, false},       {"Word", "two", 7, false},
    {"Rest", "2x", 7, false},      {"Hexadecimal", "0x2", 7, false},
    {"Fraction", "1.5", 7, false}, {"Overflow", "99999999999999999999", 7, false},
};

class NumberArgument : public testing::TestWithParam<NumberRow> {};

TEST_P(NumberArgument, IsWithinItsRange) {
  const NumberRow& row = GetParam();
  Arguments arguments = Take(row.value == nullptr ? Words() : Words{"--level", row.value});
  testing::internal::CaptureStderr();
  EXPECT_EQ(arguments.Number("--level", -3, 12, 7), row.number);
  const std::string message = testing::internal::GetCapturedStderr();
  EXPECT_EQ(arguments.Good(), row.good);
  const std::string wrong = "tool: --level: expected a number from -3 to 12, got '" +
                            std::string(row.value ? row.value : "") + "'\n" + kHelp;
  EXPECT_EQ(message, row.good ? "" : wrong);
}

INSTANTIATE_TEST_SUITE_P(Tools, NumberArgument, testing::ValuesIn(kNumbers),
                         [](const auto& test) { return test.param.name; });

TEST(Arguments, RefusalIsWrongUsage) {
  Arguments arguments = Take({});
  testing::internal::CaptureStderr();
  EXPECT_EQ(arguments.Refuse("100% wrong"), tools::kWrongUsage);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string("tool: 100% wrong\n") + kHelp);
  EXPECT_FALSE(arguments.Good());
}

}  // namespace
