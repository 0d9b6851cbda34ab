#include "tools/lab/diff/fields.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using diff::Field;
using diff::Form;

constexpr view::CodeWord kWords[] = {{1, "one"}};

struct FormCase {
  Form form;
  std::vector<unsigned char> bytes;
  const char* text;
};

const FormCase kForms[] = {
    {Form::kText, {'A', 'B', 0, 'C'}, "AB"},
    {Form::kText, {'A', 0x1b}, "A\xEF\xBF\xBD"},
    {Form::kName, {0x21, 0, 0, 0x0e, 0x1e, 1, 2, 3}, "21:00:00:0e:1e:01:02:03"},
    {Form::kName, {0, 0, 0, 0, 0, 0, 0, 0}, ""},
    {Form::kOctets, {1, 0x0a, 0}, "01:0a:00"},
    {Form::kVersion, {9, 12, 1, 0}, "9.12.01"},
    {Form::kVersion, {0, 0, 0}, ""},
    {Form::kVersion, {255, 255, 255}, "erased"},
    {Form::kShortVersion, {3, 66, 0, 0}, "3.66"},
    {Form::kNumber, {0x10, 0x27, 0, 0}, "10000"},
    {Form::kSigned, {0xff, 0xff}, "-1"},
    {Form::kSigned, {5, 0}, "5"},
    {Form::kHex, {0x34, 0x12}, "0x1234"},
    {Form::kMegabytes, {0, 0x90, 1, 0}, "102,400 MB"},
    {Form::kCode, {1}, "one"},
    {Form::kCode, {2}, "code 2"},
    {Form::kFlag, {2, 0, 0, 0}, "on"},
    {Form::kInverseFlag, {2, 0, 0, 0}, "off"},
    {Form::kInverseFlag, {0, 0, 0, 0}, "on"},
    {Form::kSpeed, {0x32, 0, 0, 0}, "32 Gbps"},
    {Form::kSpeedMask, {0x70}, "8, 16, 32 Gbps"},
    {Form::kDataRate, {2, 0, 0, 0}, "auto"},
    {Form::kDataRate, {5, 0, 0, 0}, "16 Gbps"},
    {Form::kDataRate, {99, 0, 0, 0}, "code 99"},
    {Form::kPciLink, {0x83, 0}, "x8 at 8 GT/s"},
    {Form::kPciLink, {0x8f, 0}, "x8 at speed code 15"},
    {Form::kTargetState, {0, 0, 2, 0, 1, 8}, "NVMe, online"},
    {Form::kTargetState, {0x40, 0, 0, 0, 0, 0}, "unconfigured"},
    {Form::kBootDrive, {0x50, 6, 0x0b, 0, 0, 0, 0, 1, 3, 0}, "50:06:0b:00:00:00:00:01 LUN 3"},
    {Form::kBootDrive, {0, 0, 0, 0, 0, 0, 0, 0, 3, 0}, ""},
};

TEST(Field, IsAWordForEveryForm) {
  for (const FormCase& row : kForms) {
    const Field field = {"", 0, row.bytes.size(), row.form, kWords};
    EXPECT_EQ(diff::ValueText(field, reinterpret_cast<const std::byte*>(row.bytes.data())), row.text)
        << static_cast<int>(row.form);
  }
}

struct Record {
  char text[4];
  std::uint32_t counter;
  std::uint32_t time;
  std::uint32_t gap;
};

constexpr Field kFields[] = {
    {"Name", offsetof(Record, text), sizeof(Record::text), Form::kText},
    {"Error count", offsetof(Record, counter), sizeof(Record::counter), Form::kCounter},
    diff::Skipped(offsetof(Record, time), sizeof(Record::time)),
};

std::string Changes(const Record& before, const Record& after) {
  diff::Report report;
  diff::CompareRecords(report, "the record", kFields, before, after);
  return report.Text();
}

TEST(Records, SayWhatDiffers) {
  const Record base = {{'A', 'B', 0, 0}, 5, 100, 0};
  Record other = base;
  EXPECT_EQ(Changes(base, other), "");
  other.time = 200;
  EXPECT_EQ(Changes(base, other), "");
  other.counter = 1005;
  EXPECT_EQ(Changes(base, other), "Error count rose by 1,000 to 1,005.\n");
  other.counter = 2;
  EXPECT_EQ(Changes(base, other), "Error count was reset: it was 5, it is 2.\n");
  other = base;
  other.text[0] = '\0';
  EXPECT_EQ(Changes(base, other), "Name changed from AB to none.\n");
}

TEST(Records, HideNothing) {
  const Record base = {{'A', 'B', 0, 0}, 5, 100, 0};
  Record other = base;
  other.gap = 1;
  EXPECT_EQ(Changes(base, other), "Other bytes of the record differ.\n");
  other = base;
  other.text[3] = 'x';  // past the terminator: the text is the same
  EXPECT_EQ(Changes(base, other), "Other bytes of the record differ.\n");
}

}  // namespace
