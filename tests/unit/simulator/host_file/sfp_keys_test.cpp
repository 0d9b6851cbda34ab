// The key `sfp` of a port: files of real modules, and mistakes.
#include <string>
#include <utility>
#include <vector>

#include "unit/simulator/marked_text.h"
#include "unit/simulator/sfp_fixture.h"

namespace {

using SfpKeys = SfpTest;

TEST_F(SfpKeys, FileOfARealModuleIsServedAsItIs) {
  const Memory sfp = Composed("{image: " + RealModule("sfpp-10g-sr-finisar-a") + "}");
  EXPECT_EQ(Text(sfp, 20, 16), "FINISAR CORP.   ");
  EXPECT_EQ(sfp[63], Sum(sfp, 0, 63));
  EXPECT_EQ(sfp[95], Sum(sfp, 64, 95));
  EXPECT_EQ(sfp[351], Sum(sfp, 256, 351));
  EXPECT_EQ(Text(Composed("{image: " + RealModule("qsfp28-100g-finisar") + "}"), 168, 12), "FTLC9551REPM");
}

TEST_F(SfpKeys, PathOfAnImageBeginsAtTheHostFile) {
  const Memory memory = Composed("{serial: SAVED}");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("saved.bin").c_str()), 0u);
  EXPECT_EQ(Composed("{image: saved.bin}"), memory);
}

// Bytes and codes of SFF-8472 and SFF-8024, and the program's own for copper without passive or active parts.
TEST_F(SfpKeys, EachNameIsItsCode) {
  const struct {
    std::string key;
    std::size_t byte;
    std::vector<std::pair<const char*, int>> names;
  } rows[] = {
      {"connector",
       2,
       {{"sc", 0x01},
        {"lc", 0x07},
        {"mpo", 0x0c},
        {"copper-pigtail", 0x21},
        {"rj45", 0x22},
        {"none", 0x23},
        {"11", 11}}},
      {"distance",
       7,
       {{"[medium]", 0x08},
        {"[long]", 0x10},
        {"[intermediate]", 0x20},
        {"[short]", 0x40},
        {"[very-long]", 0x80}}},
      {"transmitter",
       8,
       {{"[copper-base-t]", 0x02},
        {"[copper-passive]", 0x04},
        {"[copper-active]", 0x08},
        {"[longwave]", 0x10},
        {"[shortwave-ofc]", 0x20},
        {"[shortwave]", 0x40}}},
      {"media",
       9,
       {{"[single-mode]", 0x01},
        {"[multi-mode-50]", 0x04},
        {"[multi-mode-62.5]", 0x08},
        {"[video-coax]", 0x10},
        {"[coax]", 0x20},
        {"[twisted-pair]", 0x40},
        {"[twin-axial]", 0x80}}},
      {"speeds",
       10,
       {{"[1]", 0x01},
        {"[2]", 0x04},
        {"[32]", 0x08},
        {"[4]", 0x10},
        {"[16]", 0x20},
        {"[8]", 0x40},
        {"[10]", 0x80},
        {"[64]", 0x02},
        {"[128]", 0x02}}},
      {"speeds", 62, {{"[10]", 0}, {"[64]", 0x01}, {"[128]", 0x02}}},
      {"ethernet", 3, {{"[10]", 0x10}}},
  };
  for (const auto& row : rows) {
    for (const auto& [name, code] : row.names) {
      EXPECT_EQ(Composed("{" + row.key + ": " + name + "}")[row.byte], code) << row.key << ": " << name;
    }
  }
}

struct BadModule {
  const char* name;
  const char* module;   // "^" ahead of the mistake
  const char* message;  // after its place
};

constexpr BadModule kBadModules[] = {
    {"Word", "^some", "sfp: expected a map, or none, got 'some'"},
    {"Key", "{^colour: red}",
     "colour: expected one of the keys form, vendor, oui, part, revision, serial, date, speeds, ethernet, "
     "media, transmitter, distance, connector, wavelength, measured, after-refresh, update-fails, "
     "diagnostics, thresholds, calibration, firmware"},
    {"SfpKeyOfAQsfp", "{form: qsfp, ^thresholds: {}}",
     "thresholds: expected one of the keys form, vendor, oui, part, revision, serial, date, speeds, "
     "ethernet, media, transmitter, distance, connector, wavelength, measured, after-refresh, update-fails"},
    {"MissingImage", "{image: ^x.hex}",
     "image: expected a file that can be read (No such file or directory), got 'x.hex'"},
    {"Form", "{form: ^xfp}", "form: expected one of sfp, qsfp, got 'xfp'; did you mean 'sfp'?"},
    {"Vendor", "{vendor: ^A NAME OF SEVENTEEN}",
     "vendor: expected a text of at most 16 bytes, got 'A NAME OF SEVENTEEN'"},
    {"QsfpRevision", "{form: qsfp, revision: ^A10}",
     "revision: expected a text of at most 2 bytes, got 'A10'"},
    {"Date", "{date: ^2025-02-29}", "date: expected a date like 2026-01-14, got '2025-02-29'"},
    {"Speed", "{speeds: [^5]}", "speeds: expected one of 1, 2, 4, 8, 10, 16, 32, 64, 128, got '5'"},
    {"QsfpSpeed", "{form: qsfp, speeds: [^64]}", "speeds: expected one of 1, 2, 4, 8, 10, 16, 32, got '64'"},
    {"Ethernet", "{ethernet: [^40]}", "ethernet: expected one of 10, got '40'"},
    {"Temperature", "{measured: {temperature: ^200}}",
     "temperature: expected a number from -128 to 127.99, got '200'"},
    {"Power", "{measured: {rx-power: ^lots}}", "rx-power: expected a number from 0 to 6.5535, got 'lots'"},
    {"Quantity", "{measured: {^power: 1}}",
     "power: expected one of the keys temperature, voltage, bias, tx-power, rx-power"},
    {"Exponent", "{measured: {bias: ^1e1}}", "bias: expected a number from 0 to 131.07, got '1e1'"},
    {"Threshold", "{thresholds: {voltage: {^high: 3}}}",
     "high: expected one of the keys high-alarm, low-alarm, high-warning, low-warning"},
    {"ThresholdsOf", "{thresholds: {^power: {}}}",
     "power: expected one of the keys temperature, voltage, bias, tx-power, rx-power"},
    {"ConstantsOf", "{calibration: {^power: {}}}",
     "power: expected one of the keys temperature, voltage, bias, tx-power, rx-power"},
    {"Constant", "{calibration: {bias: {^gain: 1}}}", "gain: expected one of the keys slope, offset"},
    {"Calibration", "{calibration: ^external}",
     "calibration: expected internal, or a map of the constants of external calibration, got 'external'"},
    {"Offset", "{calibration: {bias: {offset: ^0.5}}}",
     "offset: expected a whole number from -32768 to 32767, got '0.5'"},
    {"FourCoefficients", "{calibration: {rx-power: ^[0, 1, 0, 0]}}",
     "rx-power: expected five numbers, got a list"},
    {"SixCoefficients", "{calibration: {rx-power: [0, 1, 0, 0, 0, ^0]}}",
     "rx-power: expected at most 5 numbers, got 6"},
    {"Firmware", "{firmware: ^2.7.1}", "firmware: expected a version like 2.07, got '2.7.1'"},
};

class BadSfp : public SfpTest, public testing::WithParamInterface<BadModule> {};

TEST_P(BadSfp, IsReportedWithItsLine) {
  const MarkedText host = WithoutMark(HostWithModule(GetParam().module));
  UseHost(host.text);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("lab.yaml") + host.place + ": " + GetParam().message + "\n");
}

INSTANTIATE_TEST_SUITE_P(Sfp, BadSfp, testing::ValuesIn(kBadModules),
                         [](const auto& test) { return test.param.name; });

TEST_F(SfpKeys, KeyBesideAnImageIsReported) {
  const MarkedText host =
      WithoutMark(HostWithModule("{^vendor: X, image: " + RealModule("qsfp28-100g-finisar") + "}"));
  UseHost(host.text);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("lab.yaml") + host.place + ": vendor: expected one of the keys image, update-fails\n");
}

TEST_F(SfpKeys, FileThatIsNoMemoryIsReported) {
  const std::string expected =
      Path("lab.yaml") +
      ":5:22: image: expected a file of 512 bytes or of 32 lines like '0010: 08 03 00 ...', ";
  const std::string good = ContentOf(RealModule("sfpp-10g-sr-finisar-a"));
  const struct {
    std::string content;
    const char* reported;
  } rows[] = {
      {"", "of which there are 0, got 'bad.hex'\n"},
      {"# a remark\n\n0000: 03 04\n", "which line 3 is not, got 'bad.hex'\n"},
      {good.substr(0, good.size() - 54), "of which there are 31, got 'bad.hex'\n"},
      {good + "0200: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n",
       "which line 33 is not, got 'bad.hex'\n"},
      {"0010" + good.substr(4), "which line 1 is not, got 'bad.hex'\n"},
      {std::string(513, 'x'), "which line 1 is not, got 'bad.hex'\n"},
  };
  for (const auto& row : rows) {
    Write("bad.hex", row.content);
    UseHost(HostWithModule("{image: bad.hex}"));
    NextRun();
    testing::internal::CaptureStderr();
    EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), expected + row.reported);
  }
}

}  // namespace
