#include "recording/fields.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using recording::Field;
using recording::FieldsOf;
using recording::Form;
using recording::Identity;

// A name that gives the host away is made up by an anonymised snapshot, octet by octet.
void NamesAreNames(const char* record, std::span<const Field> fields) {
  for (const Field& field : fields) {
    if (field.identity != Identity::kName) continue;
    EXPECT_EQ(field.form, Form::kName) << record << ": " << field.name;
    EXPECT_EQ(field.size, 8) << record << ": " << field.name;
  }
}

TEST(Fields, OfNamesAreEightOctets) {
  NamesAreNames("adapter", FieldsOf<AdapterEntry>());
  NamesAreNames("port", FieldsOf<FCProtocolEntry>());
  NamesAreNames("target", FieldsOf<TargetEntry>());
  NamesAreNames("LUN", FieldsOf<LunEntry>());
  NamesAreNames("parameters", FieldsOf<HBAParamsInfo>());
  NamesAreNames("NVMe boot", FieldsOf<NVMeBootRecord>());
  NamesAreNames("congestion", FieldsOf<SCMRStatisticsEntry>());
}

// Places of SFF-8472 and SFF-8636.
TEST(Fields, OfAModuleAreItsTexts) {
  struct Place {
    const char* name;
    int offset;
    int size;
  };
  constexpr Place kSfp[] = {{"vendor name", 20, 16},
                            {"part number", 40, 16},
                            {"revision", 56, 4},
                            {"serial number", 68, 16},
                            {"date", 84, 8}};
  constexpr Place kQsfp[] = {{"vendor name", 148, 16},
                             {"part number", 168, 16},
                             {"revision", 184, 2},
                             {"serial number", 196, 16},
                             {"date", 212, 8}};
  const struct {
    std::uint8_t identifier;
    std::span<const Place> places;
  } modules[] = {{0x03, kSfp}, {0x11, kQsfp}};
  for (const auto& module : modules) {
    recording::SfpImage image{};
    image.bytes[0] = module.identifier;
    const std::span<const Field> fields = recording::FieldsOfModule(image);
    ASSERT_EQ(fields.size(), module.places.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
      EXPECT_STREQ(fields[i].name, module.places[i].name);
      EXPECT_EQ(fields[i].offset, module.places[i].offset) << fields[i].name;
      EXPECT_EQ(fields[i].size, module.places[i].size) << fields[i].name;
      EXPECT_EQ(fields[i].form, Form::kText) << fields[i].name;
    }
  }
}

}  // namespace
