#include "framework/report.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_command_run.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"

namespace {

constexpr char kXmlHead[] = "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n";
constexpr char kRuler[] = "****************************************************\n";

constexpr ReportFrame kFrame = {"AdapterInformation", "General Parameters", "GeneralParametersList"};

constexpr RebootField kBefore = {RebootField::kBeforeMessage, true};
constexpr RebootField kAfter = {RebootField::kAfterMessage, false};

TEST(Document, WritesAHeadAndAnEndAroundTheCommandsOwnFields) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  const auto write = [](TestRun& test) {
    const Document document(test.run, "PersonalityInfo", "Failed, Personality read failed");
    test.out.WriteStringField("Personality", "Unknown");
  };
  EXPECT_EQ(PrintedBy([&] { write(xml); }),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n"
            "<structure typeName=\"PersonalityInfo\">\n"
            "<field name=\"Message\">\n"
            "<string>Failed, Personality read failed</string></field>\n"
            "<field name=\"Personality\">\n"
            "<string>Unknown</string></field>\n"
            "</structure>\n"
            "</output>\n");
  EXPECT_EQ(PrintedBy([&] { write(cli); }),
            "****************************************************\n"
            "PersonalityInfo:\n"
            "Message: Failed, Personality read failed\n"
            "Personality: Unknown\n"
            "****************************************************\n");
}

TEST(Document, EndsWithItsScope) {
  TestRun xml;
  PrintedBy([&] { const Document document(xml.run, "S", "Success"); });
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = xml.out.EndStructure(); }), "");
  EXPECT_EQ(status, kBadMode);
}

TEST(Document, ShowsARebootBeforeTheMessage) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  EXPECT_EQ(PrintedBy([&] { const Document document(cli.run, "S", "Success", kBefore); }),
            std::string(kRuler) + "S:\nReboot Required: true\nMessage: Success\n" + kRuler);
  EXPECT_EQ(PrintedBy([&] { const Document document(xml.run, "S", "Success", kBefore); }),
            std::string(kXmlHead) +
                "<structure typeName=\"S\">\n"
                "<field name=\"Reboot Required\">\n<bool>true</bool></field>\n"
                "<field name=\"Message\">\n<string>Success</string></field>\n"
                "</structure>\n</output>\n");
}

TEST(Document, ShowsARebootAfterTheMessage) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  EXPECT_EQ(PrintedBy([&] { const Document document(cli.run, "S", "Success", kAfter); }),
            std::string(kRuler) + "S:\nMessage: Success\nReboot Required: false\n" + kRuler);
  EXPECT_EQ(PrintedBy([&] { const Document document(xml.run, "S", "Success", kAfter); }),
            std::string(kXmlHead) +
                "<structure typeName=\"S\">\n"
                "<field name=\"Message\">\n<string>Success</string></field>\n"
                "<field name=\"Reboot Required\">\n<bool>false</bool></field>\n"
                "</structure>\n</output>\n");
}

TEST(Document, ShowsNoRebootWhereItIsAbsent) {
  TestRun cli({}, OUTPUT_CLI);
  EXPECT_EQ(PrintedBy([&] {
              const Document document(cli.run, "S", "Success", {RebootField::kAbsent, true});
            }),
            std::string(kRuler) + "S:\nMessage: Success\n" + kRuler);
}

TEST(WriteReport, FramesTheTextInXml) {
  TestRun xml;
  ReportText text(256);
  text.Line("Manufacturer: Sorvex\n");
  text.Line("      Model: ZX100\n");
  EXPECT_EQ(PrintedBy([&] { WriteReport(xml.run, kFrame, text); }),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n"
            "<structure typeName=\"AdapterInformation\">\n"
            "<field name=\"Message\">\n"
            "<string>Success</string></field>\n"
            "<field name=\"General Parameters\">\n"
            "<list type=\"structure\">\n"
            "<structure typeName=\"GeneralParametersList\">\n"
            "<field name=\"Data\">\n"
            "<string>Manufacturer: Sorvex\n"
            "      Model: ZX100\n"
            "</string></field>\n"
            "</structure>\n"
            "</list>\n"
            "</field>\n"
            "</structure>\n"
            "</output>\n");
}

TEST(WriteReport, LinesUpTheTextUnderItsFirstLine) {
  TestRun cli({}, OUTPUT_CLI);
  ReportText text(256);
  text.Line("Manufacturer: Sorvex\n");
  text.Line("      Model: ZX100\n");
  EXPECT_EQ(PrintedBy([&] { WriteReport(cli.run, kFrame, text); }),
            "****************************************************\n"
            "AdapterInformation:\n"
            "Message: Success\n"
            "General Parameters: GeneralParametersList:\n"
            "Data: Manufacturer: Sorvex\n"
            "      Model: ZX100\n"
            "****************************************************\n");
}

TEST(WriteReport, NamesTheDataFieldAsTheFrameDoes) {
  TestRun cli({}, OUTPUT_CLI);
  ReportText text(16);
  text.Line("x\n");
  const ReportFrame frame = {"A", "B", "C", "Loopback Data"};
  EXPECT_EQ(PrintedBy([&] { WriteReport(cli.run, frame, text); }),
            std::string(kRuler) + "A:\nMessage: Success\nB: C:\nLoopback Data: x\n" + kRuler);
}

TEST(WriteReport, ShowsARebootInItsPlace) {
  TestRun cli({}, OUTPUT_CLI);
  ReportText text(16);
  text.Line("x\n");
  const std::string data = "General Parameters: GeneralParametersList:\nData: x\n";
  EXPECT_EQ(PrintedBy([&] { WriteReport(cli.run, kFrame, text, kBefore); }),
            kRuler + ("AdapterInformation:\nReboot Required: true\nMessage: Success\n" + data) + kRuler);
  EXPECT_EQ(PrintedBy([&] { WriteReport(cli.run, kFrame, text, kAfter); }),
            kRuler + ("AdapterInformation:\nMessage: Success\nReboot Required: false\n" + data) + kRuler);
}

TEST(WriteReport, WritesAnEmptyText) {
  TestRun cli({}, OUTPUT_CLI);
  const ReportText text(16);
  EXPECT_EQ(PrintedBy([&] { WriteReport(cli.run, kFrame, text); }),
            std::string(kRuler) +
                "AdapterInformation:\nMessage: Success\nGeneral Parameters: GeneralParametersList:\nData: " +
                kRuler);
}

TEST(WriteReport, LeavesTheFieldOfATextWithoutMemoryEmpty) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  ReportText text(SIZE_MAX / 2);
  text.Line("x\n");
  EXPECT_EQ(PrintedBy([&] {
              WriteReport(xml.run, {"A", "B", "C"}, text);
            }),
            std::string(kXmlHead) +
                "<structure typeName=\"A\">\n"
                "<field name=\"Message\">\n<string>Success</string></field>\n"
                "<field name=\"B\">\n<list type=\"structure\">\n<structure typeName=\"C\">\n"
                "<field name=\"Data\">\n</field>\n"
                "</structure>\n</list>\n</field>\n"
                "</structure>\n</output>\n");
}

// What becomes of a report's text on its way into the document.
std::string Written(const std::string& data) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  ReportText text(data.size() + 1);
  text.Line("%s", data.c_str());
  const std::string document = PrintedBy([&] { WriteReport(cli.run, {"A", "B", "C"}, text); });
  const std::string head = std::string(kRuler) + "A:\nMessage: Success\nB: C:\nData: ";
  EXPECT_EQ(document.substr(0, head.size()), head);
  EXPECT_EQ(document.substr(document.size() - std::string(kRuler).size()), kRuler);
  return document.substr(head.size(), document.size() - head.size() - std::string(kRuler).size());
}

TEST(WriteReport, ReadsTwoPercentSignsAsOne) {
  EXPECT_EQ(Written("50%% done\n"), "50% done\n");
  EXPECT_EQ(Written("%%%%"), "%%");
  EXPECT_EQ(Written("%%d"), "%d");
  EXPECT_EQ(Written("%%%d"), "%");
}

TEST(WriteReport, DropsAConversion) {
  EXPECT_EQ(Written("100%s of it\n"), "100 of it\n");
  for (const char conversion : std::string("diouxXeEfFgGaAcspnmCS")) {
    EXPECT_EQ(Written(std::string("<%") + conversion + ">"), "<>") << conversion;
  }
  EXPECT_EQ(Written("%d%s%n"), "");
}

TEST(WriteReport, DropsAConversionWithAllItsParts) {
  for (const char* conversion :
       {"%-5d",  "%+d", "%#x",  "%05u", "% d",  "%12s", "%.3f", "%8.3f", "%.f", "%*d",         "%.*s",
        "%*.*f", "%hd", "%hhu", "%ld",  "%lld", "%jd",  "%zu",  "%td",   "%Lf", "%-+ #08.2lx", "%'d"}) {
    EXPECT_EQ(Written(std::string("<") + conversion + ">"), "<>") << conversion;
  }
}

TEST(WriteReport, ReadsABlankAfterAPercentSignAsAFlag) {
  EXPECT_EQ(Written("100% sure"), "100ure");
}

TEST(WriteReport, LeavesAnyOtherPercentSign) {
  EXPECT_EQ(Written("100%"), "100%");
  EXPECT_EQ(Written("100%\n"), "100%\n");
  EXPECT_EQ(Written("% "), "% ");
  EXPECT_EQ(Written("%y"), "%y");
  EXPECT_EQ(Written("%5"), "%5");
  EXPECT_EQ(Written("%l"), "%l");
  EXPECT_EQ(Written("%ll"), "%ll");
  EXPECT_EQ(Written("%-08.3q"), "%-08.3q");
  EXPECT_EQ(Written("%5%"), "%5%");
  EXPECT_EQ(Written("(20%)"), "(20%)");
  EXPECT_EQ(Written("%,d"), "%,d");
}

TEST(WriteReport, GoesOnAfterAPercentSignThatIsKept) {
  EXPECT_EQ(Written("%y %s %"), "%y  %");
  EXPECT_EQ(Written("%y%d"), "%y");
  EXPECT_EQ(Written("%l%d"), "%l");
}

TEST(WriteReport, LeavesATextOfPercentSignsWithinItsLimit) {
  EXPECT_EQ(Written(std::string(1000, '%')), std::string(500, '%'));
}

TEST(WriteReportError, HoldsAnEmptyListInXml) {
  TestRun xml;
  EXPECT_EQ(PrintedBy([&] { WriteReportError(xml.run, kFrame, "Failed, Invalid parameter"); }),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n"
            "<structure typeName=\"AdapterInformation\">\n"
            "<field name=\"Message\">\n"
            "<string>Failed, Invalid parameter</string></field>\n"
            "<field name=\"General Parameters\">\n"
            "<list type=\"structure\">\n"
            "</list>\n"
            "</field>\n"
            "</structure>\n"
            "</output>\n");
}

TEST(WriteReportError, EndsTheTextOnTheLineOfTheEmptyList) {
  TestRun cli({}, OUTPUT_CLI);
  EXPECT_EQ(PrintedBy([&] { WriteReportError(cli.run, kFrame, "Failed, Invalid parameter"); }),
            "****************************************************\n"
            "AdapterInformation:\n"
            "Message: Failed, Invalid parameter\n"
            "General Parameters: ****************************************************\n");
}

TEST(WriteReportError, ShowsARebootInItsPlace) {
  TestRun cli({}, OUTPUT_CLI);
  EXPECT_EQ(
      PrintedBy([&] { WriteReportError(cli.run, kFrame, "Failed, X", kBefore); }),
      std::string(kRuler) +
          "AdapterInformation:\nReboot Required: true\nMessage: Failed, X\nGeneral Parameters: " + kRuler);
  EXPECT_EQ(
      PrintedBy([&] { WriteReportError(cli.run, kFrame, "Failed, X", kAfter); }),
      std::string(kRuler) +
          "AdapterInformation:\nMessage: Failed, X\nReboot Required: false\nGeneral Parameters: " + kRuler);
}

void WriteIdentifiers(CommandRun& run, const std::vector<std::string>& identifiers) {
  IdentifierList list(run, "AdapterList", "Adapters");
  for (const std::string& identifier : identifiers) list.Write(identifier);
}

TEST(IdentifierList, WritesAStructureForEachIdentifier) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  const std::vector<std::string> identifiers = {"Adapter_ZX100_A1", "Adapter_ZX200_%s<&>"};
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(xml.run, identifiers); }),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n"
            "<list type=\"structure\">\n"
            "<structure typeName=\"AdapterList\">\n"
            "<field name=\"Adapters\">\n"
            "<string>Adapter_ZX100_A1</string></field>\n"
            "</structure>\n"
            "<structure typeName=\"AdapterList\">\n"
            "<field name=\"Adapters\">\n"
            "<string>Adapter_ZX200_%s<&></string></field>\n"
            "</structure>\n"
            "</list>\n"
            "</output>\n");
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(cli.run, identifiers); }),
            "****************************************************\n"
            "AdapterList:\n"
            "Adapters: Adapter_ZX100_A1\n"
            "AdapterList:\n"
            "Adapters: Adapter_ZX200_%s<&>\n"
            "****************************************************\n");
}

TEST(IdentifierList, WritesAnEmptyList) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(xml.run, {}); }),
            std::string(kXmlHead) + "<list type=\"structure\">\n</list>\n</output>\n");
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(cli.run, {}); }), std::string(kRuler) + kRuler);
}

TEST(IdentifierList, EndsItsDocumentWithItsScope) {
  TestRun xml;
  PrintedBy([&] { WriteIdentifiers(xml.run, {"x"}); });
  EXPECT_EQ(xml.out.EndList(), kBadMode);
}

// What a crash in the middle of a long list loses: the stream's buffer, and nothing on top of it.
TEST(IdentifierList, KeepsNothingBackButTheStreamsBuffer) {
  constexpr std::size_t kStreamBuffer = 4096;
  constexpr std::size_t kItems = 1000;
  const std::string item = "AdapterList:\nAdapters: Adapter_ZX100_A1\n";
  TestRun cli({}, OUTPUT_CLI);
  const CapturedStdout captured;
  IdentifierList list(cli.run, "AdapterList", "Adapters");
  for (std::size_t i = 0; i < kItems; ++i) list.Write("Adapter_ZX100_A1");
  EXPECT_GE(captured.BytesWritten() + kStreamBuffer, std::string(kRuler).size() + kItems * item.size());
}

TEST(IdentifierList, WritesAShortIdentifierAfterALongOne) {
  TestRun cli({}, OUTPUT_CLI);
  const std::string longest(5000, 'x');
  EXPECT_EQ(PrintedBy([&] {
              WriteIdentifiers(cli.run, {longest, "y"});
            }),
            kRuler + ("AdapterList:\nAdapters: " + longest) + "\nAdapterList:\nAdapters: y\n" + kRuler);
}

// A field with two structures between the fields of a document.
void WriteNested(CommandRun& run) {
  const Document document(run, "D", "Success");
  {
    const ListField list(run.out, "L");
    { const ListStructure empty(run.out, "A"); }
    const ListStructure structure(run.out, "B");
    run.out.WriteStringField("F", "v");
  }
  run.out.WriteStringField("G", "w");
}

TEST(ListField, HoldsStructures) {
  TestRun xml;
  TestRun cli({}, OUTPUT_CLI);
  EXPECT_EQ(PrintedBy([&] { WriteNested(xml.run); }),
            std::string(kXmlHead) +
                "<structure typeName=\"D\">\n"
                "<field name=\"Message\">\n<string>Success</string></field>\n"
                "<field name=\"L\">\n"
                "<list type=\"structure\">\n"
                "<structure typeName=\"A\">\n"
                "</structure>\n"
                "<structure typeName=\"B\">\n"
                "<field name=\"F\">\n<string>v</string></field>\n"
                "</structure>\n"
                "</list>\n"
                "</field>\n"
                "<field name=\"G\">\n<string>w</string></field>\n"
                "</structure>\n"
                "</output>\n");
  EXPECT_EQ(PrintedBy([&] { WriteNested(cli.run); }),
            std::string(kRuler) + "D:\nMessage: Success\nL: A:\nB:\nF: v\nG: w\n" + kRuler);
}

class RebootQuestion : public testing::Test {
 protected:
  RebootQuestion() { ResetLibrary(); }

  TestRun test_;
};

TEST_F(RebootQuestion, IsTrueForFlagOneAlone) {
  Library().reboot_flag = 0;
  EXPECT_FALSE(IsRebootRequired(test_.run));
  Library().reboot_flag = 1;
  EXPECT_TRUE(IsRebootRequired(test_.run));
  Library().reboot_flag = 2;
  EXPECT_FALSE(IsRebootRequired(test_.run));
  Library().reboot_flag = 0xFF;
  EXPECT_FALSE(IsRebootRequired(test_.run));
}

TEST_F(RebootQuestion, IsTrueWhenTheFlagIsLeftAlone) {
  Library().reboot_flag.reset();
  EXPECT_TRUE(IsRebootRequired(test_.run));
}

TEST_F(RebootQuestion, IsTrueWhenTheCallFailsWhateverItsFlag) {
  for (const std::uint32_t result : {1u, 13u, 150u, 0x80000000u}) {
    Library().reboot_result = result;
    for (const std::uint8_t flag : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{2}}) {
      Library().reboot_flag = flag;
      EXPECT_TRUE(IsRebootRequired(test_.run)) << "result " << result << ", flag " << int{flag};
    }
    Library().reboot_flag.reset();
    EXPECT_TRUE(IsRebootRequired(test_.run)) << "result " << result << ", flag not written";
  }
}

TEST_F(RebootQuestion, IsAskedOnceAndOutsideAnyBracket) {
  const NoLibraryOutputFile none;
  Library().chatter = "library text\n";
  EXPECT_EQ(PrintedBy([&] { IsRebootRequired(test_.run); }), "library text\n");
  EXPECT_EQ(Library().calls, (std::vector<std::string>{"IsRebootRequired"}));
  EXPECT_FALSE(std::filesystem::exists("/var/tmp/torpi-output.log"));
}

}  // namespace
