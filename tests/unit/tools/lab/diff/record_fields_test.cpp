// The tables of named fields: what must hold in all of them, and the names in one of each kind.
#include "tools/lab/diff/record_fields.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using diff::Field;
using diff::Form;

const std::vector<std::pair<const char*, std::span<const Field>>>& Tables() {
  static const std::vector<std::pair<const char*, std::span<const Field>>> tables = {
      {"adapter list", diff::AdapterListFields()},
      {"adapter", diff::AdapterFields()},
      {"physical port", diff::PhyPortFields()},
      {"port", diff::PortFields()},
      {"target", diff::TargetFields()},
      {"LUN", diff::LunFields()},
      {"target statistics", diff::TargetStatisticsFields()},
      {"flash versions", diff::FlashVersionFields()},
      {"memo block", diff::MemoBlockFields()},
      {"lockdown", diff::LockdownFields()},
      {"parameters", diff::ParameterFields()},
      {"boot", diff::BootFields()},
      {"NVMe boot entry", diff::NvmeBootEntryFields()},
      {"credit recovery", diff::CreditRecoveryFields()},
      {"firmware statistics", diff::FirmwareStatisticsFields()},
      {"congestion statistics", diff::CongestionStatisticsFields()},
      {"congestion profile", diff::CongestionProfileFields()},
  };
  return tables;
}

TEST(RecordFields, HaveNamesOfTheirOwn) {
  for (const auto& [table, fields] : Tables()) {
    std::set<std::string> names;
    for (const Field& field : fields) {
      EXPECT_EQ(std::string(field.what).empty(), field.form == Form::kSkipped)
          << table << " " << field.offset;
      if (field.form == Form::kSkipped) continue;
      EXPECT_TRUE(names.insert(field.what).second) << table << ": " << field.what;
    }
  }
}

TEST(RecordFields, AreAsLongAsTheirForms) {
  const auto fits = [](const Field& field) {
    switch (field.form) {
      case Form::kName:
        return field.size == 8;
      case Form::kVersion:
        return field.size >= 3;  // as many as are shown, at least
      case Form::kShortVersion:
        return field.size >= 2;
      case Form::kNumber:
      case Form::kSigned:
      case Form::kHex:
      case Form::kCode:
      case Form::kFlag:
      case Form::kInverseFlag:
      case Form::kCounter:
        return field.size == 1 || field.size == 2 || field.size == 4 || field.size == 8;
      default:
        return field.size > 0;
    }
  };
  for (const auto& [table, fields] : Tables()) {
    for (const Field& field : fields) EXPECT_TRUE(fits(field)) << table << ": " << field.what;
  }
}

TEST(RecordFields, HaveAWordForEachCodeOnce) {
  for (const auto& [table, fields] : Tables()) {
    for (const Field& field : fields) {
      EXPECT_FALSE(field.form == Form::kCode && field.words.empty()) << table << ": " << field.what;
      std::set<std::uint32_t> codes;
      for (const view::CodeWord& word : field.words) {
        EXPECT_TRUE(codes.insert(word.code).second) << table << ": " << field.what << ", " << word.word;
      }
    }
  }
}

TEST(RecordFields, OfATargetsStatisticsAreItsCounters) {
  const std::vector<std::string> expected = {
      "Link failure count",
      "Loss of sync count",
      "Loss of signal count",
      "Primitive sequence error count",
      "Invalid transmission word count",
      "Invalid CRC count",
      "Delivery failure unknown count",
      "Delivery timeout count",
      "Delivery unable to route count",
      "Delivery failure device specific count",
      "Peer congestion clear count",
      "Peer congestion lost credit count",
      "Peer congestion credit stall count",
      "Peer congestion oversubscription count",
      "Peer congestion device specific count",
      "Link unknown event count",
      "Link device specific event count",
  };
  std::vector<std::string> counters;
  for (const Field& field : diff::TargetStatisticsFields()) {
    if (field.form == Form::kCounter) counters.emplace_back(field.what);
  }
  EXPECT_EQ(counters, expected);
}

}  // namespace
