#include "tools/json/report_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zfc_json {
namespace {

// Every line as "section|group|label|value|number|unit".
std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> found;
  ReportReader report(text);
  for (ReportLine line; report.Next(line);) {
    std::string all(line.section);
    for (const std::string_view part :
         {line.group, line.label, line.value, line.number.number, line.number.unit}) {
      all.append("|").append(part);
    }
    found.push_back(all);
  }
  return found;
}

using Expected = std::vector<std::string>;

TEST(ReportReader, ReadsLabelsWithValues) {
  EXPECT_EQ(Lines("Model: ZX100\n"
                  "      Vendor ID: 0x1c9e\n"
                  "      Chip Revision: 2\n"
                  "      Temperature In Celsius: 51\n"
                  "      Port Name: 21:00:00:0e:1e:11:22:33\n"
                  "      Ethernet Speed: \n"
                  "      Egress Power: Tx: -2.2 dBm, Rx: -4.0 dBm\n"),
            (Expected{"||Model|ZX100||", "||Vendor ID|0x1c9e||", "||Chip Revision|2|2|",
                      "||Temperature In Celsius|51|51|C", "||Port Name|21:00:00:0e:1e:11:22:33||",
                      "||Ethernet Speed|||", "||Egress Power|Tx: -2.2 dBm, Rx: -4.0 dBm||"}));
}

TEST(ReportReader, EndsWithTheTextAndNotOnlyWithALine) {
  EXPECT_EQ(Lines(""), Expected{});
  EXPECT_EQ(Lines("\n\n   \n"), Expected{});
  EXPECT_EQ(Lines("Model: ZX100"), Expected{"||Model|ZX100||"});
}

TEST(ReportReader, ReadsHeadingsBetweenRulers) {
  EXPECT_EQ(Lines("\n---------------------------------\n"
                  "SFP Diagnostics Param Information\n"
                  "---------------------------------\n"
                  "Vcc: 3.300000000 V\n"
                  "---------------------------------\n"
                  "Port Speed Information\n"
                  "---------------------------------\n"
                  "Port Operating Speed: 16 Gbps\n"),
            (Expected{"SFP Diagnostics Param Information||Vcc|3.300000000 V|3.300000000|V",
                      "Port Speed Information||Port Operating Speed|16 Gbps|16|Gbps"}));
}

TEST(ReportReader, ReadsHeadingsOfTwoLines) {
  EXPECT_EQ(Lines("      -----------------------------------\n"
                  "      Rx Fabric Performance Impact \n"
                  "      Notifications\n"
                  "      -----------------------------------\n"
                  "      PUN Count: 7\n"),
            (Expected{"Rx Fabric Performance Impact Notifications||PUN Count|7|7|"}));
}

TEST(ReportReader, PassesRulersWithoutHeading) {
  EXPECT_EQ(Lines("----------\nA: 1\nB: 2\nC: 3\n----------\n"),
            (Expected{"||A|1|1|", "||B|2|2|", "||C|3|3|"}));
  EXPECT_EQ(Lines("----------\n----------\nA: 1\n"), (Expected{"||A|1|1|"}));
  EXPECT_EQ(Lines("----------"), Expected{});
}

TEST(ReportReader, ReadsHeadingsWithAColonAndBareOnes) {
  EXPECT_EQ(Lines("Media Information:\n"
                  "                         Media: Installed\n"
                  "\nAddress A0\n"
                  "                     Connector: LC\n"
                  "      Storage 0:\n"
                  "      Enable: true\n"),
            (Expected{"Media Information||Media|Installed||", "Address A0||Connector|LC||",
                      "Storage 0||Enable|true||"}));
}

TEST(ReportReader, GroupsFlags) {
  EXPECT_EQ(Lines("          Diag Monitoring Type: -Address change required: 0x0\n"
                  "                                -Power Measurement: 0x1\n"
                  "                        CC_EXT: 0xb4 \n"
                  "                        Vendor: -none: 0x2\n"),
            (Expected{"|Diag Monitoring Type|Address change required|0x0||",
                      "|Diag Monitoring Type|Power Measurement|0x1||", "||CC_EXT|0xb4||",
                      "||Vendor|-none: 0x2||"}));
}

TEST(ReportReader, GroupsLinesAfterATab) {
  EXPECT_EQ(Lines("SFP Flag: 0x8051\n"
                  "\tPort Tx Type: Short Wave Laser\n"
                  "\tOptical Port: On\n"
                  "PN Port Physical Type: 0x40000000\n"
                  "\tThe sending VN_Port uses an FC-FS-3 PN_Port or PF Port\n"),
            (Expected{"||SFP Flag|0x8051||", "|SFP Flag|Port Tx Type|Short Wave Laser||",
                      "|SFP Flag|Optical Port|On||", "||PN Port Physical Type|0x40000000||",
                      "|PN Port Physical Type||The sending VN_Port uses an FC-FS-3 PN_Port or PF Port||"}));
}

TEST(ReportReader, JoinsDumps) {
  EXPECT_EQ(Lines("               Vendor Specific: 0x00 0x01 \n"
                  "                                0x02 0x03 \n"
                  "                                0x04 \n"
                  "          SFP Firmware Version: 0x02 0x07 \n"),
            (Expected{"||Vendor Specific|0x00 0x01 0x02 0x03 0x04||", "||SFP Firmware Version|0x02 0x07||"}));
}

TEST(ReportReader, ReadsTheTableOfMeasurements) {
  EXPECT_EQ(
      Lines("Media Information:\n"
            "\n                 Temperature   Voltage     Tx Bias    Tx Power    Rx Power\n"
            "\n                     (C)         (V)        (mA)        (mW)        (mW)\n"
            "\n              --------------   -------     -------    --------    --------\n"
            "\n        Value      36.50         3.30        7.00      0.6000      2.0000\n"
            "\n       Status     Normal       Normal       Fault      Normal      Normal\n"
            "\n    Low Alarm      -5.00         3.00        2.00      0.2000      0.2000\n"
            "\nAddress A0\n"
            "                     Connector: LC\n"),
      (Expected{"Media Information|Temperature|Value|36.50|36.50|C",
                "Media Information|Voltage|Value|3.30|3.30|V", "Media Information|Tx Bias|Value|7.00|7.00|mA",
                "Media Information|Tx Power|Value|0.6000|0.6000|mW",
                "Media Information|Rx Power|Value|2.0000|2.0000|mW",
                "Media Information|Temperature|Status|Normal||", "Media Information|Voltage|Status|Normal||",
                "Media Information|Tx Bias|Status|Fault||", "Media Information|Tx Power|Status|Normal||",
                "Media Information|Rx Power|Status|Normal||",
                "Media Information|Temperature|Low Alarm|-5.00|-5.00|C",
                "Media Information|Voltage|Low Alarm|3.00|3.00|V",
                "Media Information|Tx Bias|Low Alarm|2.00|2.00|mA",
                "Media Information|Tx Power|Low Alarm|0.2000|0.2000|mW",
                "Media Information|Rx Power|Low Alarm|0.2000|0.2000|mW", "Address A0||Connector|LC||"}));
}

TEST(ReportReader, KeepsWhatOnlyResemblesTheUnitsOfATable) {
  const auto below_the_head = [](const std::string& line) {
    std::string report = " Temperature   Voltage     Tx Bias    Tx Power    Rx Power\n  ";
    return Lines(report.append(line).append("\n"));
  };
  EXPECT_EQ(below_the_head("(C)  (V)  (mA)  (mW)  (mW)"), Expected());
  for (const std::string line : {"(C)", "(V)", "no units", "(C)  (V)  (mA)  (mW)  (mW)  (dBm)"}) {
    EXPECT_EQ(below_the_head(line), Expected{"|||" + line + "||"}) << line;
  }
}

TEST(ReportReader, KeepsATableRowThatRunsTogether) {
  EXPECT_EQ(Lines(" Temperature   Voltage     Tx Bias    Tx Power    Rx Power\n"
                  "        Value 1234567.50         3.30        7.00      0.6000      2.0000\n"),
            (Expected{"|||Value 1234567.50         3.30        7.00      0.6000      2.0000||"}));
}

TEST(ReportReader, KeepsLinesWithoutLabelAndOddOnes) {
  EXPECT_EQ(Lines("Host NQN: nqn.one\n  and more\n: empty label\n      a:b\n"),
            (Expected{"||Host NQN|nqn.one||", "|Host NQN||and more||", "|Host NQN||: empty label||",
                      "|Host NQN||a:b||"}));
}

}  // namespace
}  // namespace zfc_json
