#include "tools/lab/diff/vpd.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Octets(std::string_view text) {
  return {text.begin(), text.end()};
}

// A name, then the items of a read-only resource.
Bytes Image(std::string_view name, const std::vector<std::pair<std::string, std::string>>& items) {
  Bytes content;
  for (const auto& [keyword, value] : items) {
    for (const std::uint8_t octet : Octets(keyword)) content.push_back(octet);
    content.push_back(static_cast<std::uint8_t>(value.size()));
    for (const std::uint8_t octet : Octets(value)) content.push_back(octet);
  }
  Bytes image = {0x82, static_cast<std::uint8_t>(name.size()), 0};
  for (const std::uint8_t octet : Octets(name)) image.push_back(octet);
  image.insert(image.end(), {0x90, static_cast<std::uint8_t>(content.size()), 0});
  image.insert(image.end(), content.begin(), content.end());
  image.push_back(0x78);
  return image;
}

TEST(Vpd, IsTakenApart) {
  const diff::Vpd vpd = diff::ReadVpd(Image("A card", {{"PN", "HD8310405-18"}, {"RV", "x"}}));
  EXPECT_TRUE(vpd.whole);
  EXPECT_EQ(vpd.name, "A card");
  EXPECT_EQ(vpd.items, (std::map<std::string, std::string>{{"PN", "HD8310405-18"}}));
}

TEST(Vpd, ThatEndsEarlyIsNotWhole) {
  Bytes image = Image("A card", {{"PN", "HD8310405-18"}});
  image.resize(image.size() - 4);
  EXPECT_FALSE(diff::ReadVpd(image).whole);
  EXPECT_FALSE(diff::ReadVpd(Bytes{0x90}).whole);
  EXPECT_TRUE(diff::ReadVpd(Bytes{}).whole);
}

TEST(Vpd, SaysWhichItemsChanged) {
  diff::Report report;
  const diff::Vpd before = diff::ReadVpd(Image("A card", {{"PN", "1"}, {"V7", "LAB"}}));
  const diff::Vpd after = diff::ReadVpd(Image("A card", {{"PN", "2"}, {"SN", "\x1b"}}));
  EXPECT_TRUE(diff::CompareVpd(report, before, after));
  EXPECT_EQ(report.Text(),
            "VPD item PN changed from 1 to 2.\n"
            "VPD item SN changed from none to \xEF\xBF\xBD.\n"
            "VPD item V7 changed from LAB to none.\n");
}

TEST(Vpd, ThatDiffersPastItsEndSaysThatToo) {
  diff::Report report;
  const diff::Vpd before = diff::ReadVpd(Image("A card", {{"PN", "1"}}));
  Bytes image = Image("A card", {{"PN", "2"}});
  image.push_back(0xEE);
  EXPECT_FALSE(diff::CompareVpd(report, before, diff::ReadVpd(image)));
  EXPECT_EQ(report.Text(), "VPD item PN changed from 1 to 2.\n");
}

TEST(Vpd, WithoutAChangedItemDiffersElsewhere) {
  diff::Report report;
  const diff::Vpd vpd = diff::ReadVpd(Image("A card", {{"PN", "1"}}));
  EXPECT_FALSE(diff::CompareVpd(report, vpd, vpd));
  EXPECT_EQ(report.Text(), "");
}

}  // namespace
