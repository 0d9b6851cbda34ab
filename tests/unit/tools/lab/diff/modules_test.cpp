#include "tools/lab/diff/modules.h"

#include <gtest/gtest.h>

#include <string>

#include "unit/tools/lab/recorded_host.h"

namespace {

using recording::SfpImage;

std::string TextOf(const SfpImage& before, const SfpImage& after) {
  diff::Report report;
  diff::CompareModules(report, before, after);
  return report.Text();
}

struct ModuleCase {
  const char* name;
  void (*change)(SfpImage& image);
  const char* text;
};

const ModuleCase kCases[] = {
    {"the same", [](SfpImage&) {}, ""},
    {"half a degree", [](SfpImage& image) { PutWord(image, kA2 + 96, 37 * 256); }, ""},
    {"flags and status", [](SfpImage& image) { image.bytes[kA2 + 110] = 0x02; }, ""},
    {"10 degrees", [](SfpImage& image) { PutWord(image, kA2 + 96, 46 * 256 + 128); },
     "Module temperature changed from 36.5 C to 46.5 C.\n"},
    {"past a limit", [](SfpImage& image) { PutWord(image, kA2 + 96, 72 * 256); },
     "Module temperature is 72.0 C, above its warning limit of 70.0 C; it was 36.5 C.\n"},
    {"no light", [](SfpImage& image) { PutWord(image, kA2 + 104, 0); },
     "Module rx power is 0.0000 mW, below its alarm limit of 0.0500 mW; it was 0.5000 mW.\n"},
    {"taken out", [](SfpImage& image) { image = {}; },
     "The module LUMEN CO LC-32-SW, serial LC0001 was taken out.\n"},
    {"another serial number", [](SfpImage& image) { PutText(image, 68, 16, "LC0002"); },
     "The module was swapped: it was LUMEN CO LC-32-SW, serial LC0001, "
     "it is LUMEN CO LC-32-SW, serial LC0002.\n"},
    {"swapped for a hot one",
     [](SfpImage& image) {
       PutText(image, 40, 16, "LC-32-LW");
       PutWord(image, kA2 + 96, 80 * 256);
     },
     "The module was swapped: it was LUMEN CO LC-32-SW, serial LC0001, "
     "it is LUMEN CO LC-32-LW, serial LC0001.\n"
     "Module temperature is 80.0 C, above its alarm limit of 75.0 C.\n"},
    {"another revision",
     [](SfpImage& image) {
       PutText(image, 56, 4, "A2");
       image.bytes[63] = 1;
     },
     "Module revision changed from A1 to A2.\n"},
    {"another date",
     [](SfpImage& image) {
       PutText(image, 84, 8, "260401");
       image.bytes[95] = 1;
     },
     "Module date changed from 260114 to 260401.\n"},
    {"another threshold", [](SfpImage& image) { PutWord(image, kA2, 76 * 256); },
     "Other bytes of the module's memory differ.\n"},
    {"a vendor's own byte", [](SfpImage& image) { image.bytes[100] = 1; },
     "Other bytes of the module's memory differ.\n"},
};

TEST(Modules, SayWhatChanged) {
  for (const ModuleCase& row : kCases) {
    SfpImage after = GoodModule();
    row.change(after);
    EXPECT_EQ(TextOf(GoodModule(), after), row.text) << row.name;
  }
}

TEST(Modules, SayThatOneWasPutIn) {
  SfpImage hot = GoodModule();
  PutWord(hot, kA2 + 96, 72 * 256);
  EXPECT_EQ(TextOf(SfpImage{}, hot),
            "The module LUMEN CO LC-32-SW, serial LC0001 was put in.\n"
            "Module temperature is 72.0 C, above its warning limit of 70.0 C.\n");
}

TEST(Modules, SayThatAValueIsGoodAgain) {
  SfpImage hot = GoodModule();
  PutWord(hot, kA2 + 96, 72 * 256);
  EXPECT_EQ(TextOf(hot, GoodModule()),
            "Module temperature is within its limits again: it was 72.0 C, it is 36.5 C.\n");
}

// Only what is measured from moment to moment may differ unsaid: A2 bytes 96 to 119.
TEST(Modules, HideNoOtherByte) {
  for (std::size_t i = 0; i < sizeof(SfpImage::bytes); ++i) {
    SfpImage after = GoodModule();
    after.bytes[i] ^= 0x01;
    const bool live = i >= kA2 + 96 && i < kA2 + 120;
    if (live) continue;
    EXPECT_NE(TextOf(GoodModule(), after), "") << i;
  }
}

}  // namespace
