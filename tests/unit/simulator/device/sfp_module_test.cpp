// What the memory of a module holds: that of the family, or one composed from named values.
#include <cstdint>
#include <string>

#include "unit/simulator/sfp_fixture.h"

namespace {

using SfpMemories = SfpTest;

TEST_F(SfpMemories, PortsHaveAModuleOfTheirFamily) {
  const struct {
    const char* family;
    int ethernet;
    Octets fc;  // bytes 7 to 10
    int fc_2;
    const char* part;
  } rows[] = {
      {"aster", 0, {0x20, 0x40, 0x04, 0x15}, 0, "SX-F4-SW        "},
      {"elm", 0, {0x20, 0x40, 0x04, 0x70}, 0, "SX-F16-SW       "},
      {"hazel", 0, {0x20, 0x40, 0x04, 0x68}, 0, "SX-F32-SW       "},
      {"dahlia", 0, {0x20, 0x40, 0x04, 0x2a}, 1, "SX-F64-SW       "},
      {"cedar", 0x10, {0, 0, 0, 0}, 0, "SX-E10-SW       "},
  };
  for (const auto& row : rows) {
    UseHost(std::string("adapters:\n  - {family: ") + row.family + ", ports: [{}, {}]}\n");
    NextRun();
    const Memory memory = MemoryOf(HandleAt(0, 1));
    EXPECT_EQ(memory[0], 0x03) << row.family;
    EXPECT_EQ(memory[3], row.ethernet) << row.family;
    EXPECT_EQ(Bytes(memory, 7, 4), row.fc) << row.family;
    EXPECT_EQ(memory[62], row.fc_2) << row.family;
    EXPECT_EQ(Text(memory, 40, 16), row.part) << row.family;
    EXPECT_EQ(Text(memory, 68, 16), "SX001001        ") << row.family;
  }
}

TEST_F(SfpMemories, NamedValuesAreWhereTheStandardPutsThem) {
  const Memory memory = Composed(
      "{vendor: LUMEN CO, oui: 00:11:22, part: LC-32-LW, revision: B2, serial: L0001, date: 2025-12-31,\n"
      "    speeds: [8, 16, 32], media: [single-mode], transmitter: [longwave], distance: [long], connector: "
      "sc,\n"
      "    wavelength: 1310, firmware: 3.11}");
  EXPECT_EQ(Bytes(memory, 0, 3), (Octets{0x03, 0x04, 0x01}));
  EXPECT_EQ(Bytes(memory, 7, 4), (Octets{0x10, 0x10, 0x01, 0x68}));
  EXPECT_EQ(Bytes(memory, 11, 9), (Octets{0x06, 0xff, 0x0c, 10, 100, 0, 0, 0, 0}));
  EXPECT_EQ(Text(memory, 20, 16), "LUMEN CO        ");
  EXPECT_EQ(Bytes(memory, 36, 4), (Octets{0x00, 0x00, 0x11, 0x22}));
  EXPECT_EQ(Text(memory, 40, 20), "LC-32-LW        B2  ");
  EXPECT_EQ(Bytes(memory, 60, 3), (Octets{0x05, 0x1e, 0x00}));  // 1310
  EXPECT_EQ(Text(memory, 68, 24), "L0001           251231  ");
  EXPECT_EQ(Bytes(memory, 92, 3), (Octets{0x68, 0xf0, 0x08}));
  EXPECT_EQ(Bytes(memory, 149, 2), (Octets{3, 11}));
}

// Temperature in 1/256 degree, voltage in 100 uV, bias in 2 uA, powers in 0.1 uW.
TEST_F(SfpMemories, MeasuredValuesAndThresholdsAreInTheUnitsOfTheStandard) {
  const Memory memory = Composed(
      "{measured: {temperature: -1.5, voltage: 3.25, bias: 6.5, tx-power: 0.55, rx-power: 0.0004},\n"
      "    thresholds: {temperature: {high-alarm: 75, low-alarm: -10, high-warning: 70, low-warning: -5},\n"
      "    rx-power: {low-alarm: 0.0005}}}");
  EXPECT_EQ(Bytes(memory, 256, 8), (Octets{0x4b, 0x00, 0xf6, 0x00, 0x46, 0x00, 0xfb, 0x00}));
  EXPECT_EQ(Bytes(memory, 264, 8),
            (Octets{0x8c, 0xa0, 0x75, 0x30, 0x88, 0xb8, 0x79, 0x18}));  // 3.6, 3.0, 3.5, 3.1 V
  EXPECT_EQ(Bytes(memory, 288, 4), (Octets{0x2e, 0xe0, 0x00, 0x05}));   // 1.2 mW, 0.5 uW
  EXPECT_EQ(Bytes(memory, 352, 10), (Octets{0xfe, 0x80, 0x7e, 0xf4, 0x0c, 0xb2, 0x15, 0x7c, 0x00, 0x04}));
  // Receive power below Low Alarm and Low Warning, and so no signal.
  EXPECT_EQ(Bytes(memory, 366, 2), (Octets{0x02, 0x00}));
  EXPECT_EQ(Bytes(memory, 368, 2), (Octets{0x00, 0x40}));
  EXPECT_EQ(Bytes(memory, 372, 2), (Octets{0x00, 0x40}));
}

TEST_F(SfpMemories, FlagsShowWhatIsOutOfItsLimits) {
  // All high: temperature, voltage, bias, transmit power in the first byte, receive power in the second.
  const Memory high =
      Composed("{measured: {temperature: 90, voltage: 4, bias: 13, tx-power: 2, rx-power: 2}}");
  EXPECT_EQ(Bytes(high, 368, 2), (Octets{0xaa, 0x80}));
  EXPECT_EQ(Bytes(high, 372, 2), (Octets{0xaa, 0x80}));
  // Between warning and alarm.
  const Memory warm =
      Composed("{measured: {temperature: 72, voltage: 3.05, bias: 2.5, tx-power: 0.22, rx-power: 1.1}}");
  EXPECT_EQ(Bytes(warm, 368, 2), (Octets{0x00, 0x00}));
  EXPECT_EQ(Bytes(warm, 372, 2), (Octets{0x95, 0x80}));
}

TEST_F(SfpMemories, CheckBytesAreTheSumsOfTheirRanges) {
  for (const char* module :
       {"", "{calibration: {rx-power: [0.5, 2, 0, 0, 0]}}", "{speeds: [8], serial: OTHER}"}) {
    const Memory memory = Composed(module);
    EXPECT_EQ(memory[63], Sum(memory, 0, 63)) << module;
    EXPECT_EQ(memory[95], Sum(memory, 64, 95)) << module;
    EXPECT_EQ(memory[351], Sum(memory, 256, 351)) << module;
  }
  const Memory qsfp = Composed("{form: qsfp}");
  EXPECT_EQ(qsfp[191], Sum(qsfp, 128, 191));
  EXPECT_EQ(qsfp[223], Sum(qsfp, 192, 223));
}

TEST_F(SfpMemories, CalibrationConstantsAreInTheirFields) {
  const Memory internal = Composed("{calibration: internal}");
  EXPECT_EQ(internal[92], 0x68);
  EXPECT_EQ(Bytes(internal, 312, 36), Octets(36, 0));
  const Memory external = Composed(
      "{calibration: {temperature: {slope: 1.5, offset: -2}, bias: {slope: 255.5, offset: 258},\n"
      "    tx-power: {offset: 32767}, rx-power: [0.5, 1, -2, 0, 0.0625]}}");
  EXPECT_EQ(external[92], 0x58);
  EXPECT_EQ(Bytes(external, 312, 20),
            (Octets{0x3d, 0x80, 0, 0, 0, 0, 0, 0, 0xc0, 0, 0, 0, 0x3f, 0x80, 0, 0, 0x3f, 0, 0, 0}));
  EXPECT_EQ(Bytes(external, 332, 4), (Octets{0xff, 0x80, 0x01, 0x02}));
  EXPECT_EQ(Bytes(external, 336, 4), (Octets{0x01, 0x00, 0x7f, 0xff}));
  EXPECT_EQ(Bytes(external, 340, 4), (Octets{0x01, 0x80, 0xff, 0xfe}));
  EXPECT_EQ(Bytes(external, 344, 4), (Octets{0x01, 0x00, 0x00, 0x00}));  // left out: 1.0 and 0
}

TEST_F(SfpMemories, ModuleWithoutDiagnosticsHasNoA2) {
  const Memory memory = Composed("{diagnostics: false}");
  EXPECT_EQ(Bytes(memory, 92, 3), (Octets{0, 0, 0}));
  EXPECT_EQ(Bytes(memory, 256, 256), Octets(256, 0));
}

TEST_F(SfpMemories, QsfpModuleHasItsIdentityInTheUpperPage) {
  const Memory memory = Composed(
      "{form: qsfp, vendor: LUMEN CO, part: LQ-32, revision: C, serial: Q1, speeds: [16, 32],\n"
      "    measured: {temperature: 40, voltage: 3.3, bias: 6, tx-power: 0.5, rx-power: 0.25}}");
  EXPECT_EQ(Bytes(memory, 0, 2), (Octets{0x11, 0x08}));
  EXPECT_EQ(Bytes(memory, 22, 6), (Octets{40, 0, 0, 0, 0x80, 0xe8}));
  EXPECT_EQ(Bytes(memory, 34, 8), (Octets{0x09, 0xc4, 0x09, 0xc4, 0x09, 0xc4, 0x09, 0xc4}));
  EXPECT_EQ(Bytes(memory, 42, 2), (Octets{0x0b, 0xb8}));
  EXPECT_EQ(Bytes(memory, 56, 2), (Octets{0x13, 0x88}));
  EXPECT_EQ(Bytes(memory, 128, 4), (Octets{0x11, 0x8c, 0x0c, 0x00}));
  EXPECT_EQ(Bytes(memory, 135, 5), (Octets{0x20, 0x40, 0x04, 0x28, 0x05}));
  EXPECT_EQ(Text(memory, 148, 16), "LUMEN CO        ");
  EXPECT_EQ(Text(memory, 168, 18), "LQ-32           C ");
  EXPECT_EQ(Bytes(memory, 186, 2), (Octets{0x42, 0x68}));  // 850 * 20
  EXPECT_EQ(Text(memory, 196, 16), "Q1              ");
  EXPECT_EQ(memory[140], 0xff);
  EXPECT_EQ(memory[222], 0x70);  // 28 GBd in steps of 250 MBd
  EXPECT_EQ(Bytes(memory, 256, 256), Octets(256, 0));
}

TEST_F(SfpMemories, EthernetModulesShowTheirSpeeds) {
  EXPECT_EQ(Composed("{ethernet: [10], speeds: []}")[3], 0x10);
  const Memory qsfp = Composed("{form: qsfp, ethernet: [40, 100], speeds: []}");
  EXPECT_EQ(qsfp[131], 0x84);
  EXPECT_EQ(qsfp[192], 0x02);
}

}  // namespace
