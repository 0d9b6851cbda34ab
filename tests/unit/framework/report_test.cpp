#include "framework/report.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"

namespace {

constexpr char kXmlHead[] = "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n";
constexpr char kRuler[] = "****************************************************\n";

constexpr ReportFrame kFrame = {"AdapterInformation", "General Parameters", "GeneralParametersList"};

constexpr RebootField kAhead = {RebootField::kAheadOfMessage, true};
constexpr RebootField kBehind = {RebootField::kBehindMessage, false};

TEST(Document, WritesAHeadAndAnEndAroundTheCommandsOwnFields) {
  Serializer out;
  const auto write = [&](OutputMode mode) {
    const Document document(out, mode, "PersonalityInfo", "Failed, Personality read failed");
    out.WriteStringField("Personality", "Unknown");
  };
  EXPECT_EQ(PrintedBy([&] { write(OUTPUT_XML); }),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n"
            "<structure typeName=\"PersonalityInfo\">\n"
            "<field name=\"Message\">\n"
            "<string>Failed, Personality read failed</string></field>\n"
            "<field name=\"Personality\">\n"
            "<string>Unknown</string></field>\n"
            "</structure>\n"
            "</output>\n");
  EXPECT_EQ(PrintedBy([&] { write(OUTPUT_CLI); }),
            "****************************************************\n"
            "PersonalityInfo:\n"
            "Message: Failed, Personality read failed\n"
            "Personality: Unknown\n"
            "****************************************************\n");
}

TEST(Document, EndsWithItsScope) {
  Serializer out;
  PrintedBy([&] { const Document document(out, OUTPUT_XML, "S", "Success"); });
  StatusCode status = kSuccess;
  EXPECT_EQ(PrintedBy([&] { status = out.EndStructure(); }), "");
  EXPECT_EQ(status, kBadMode);
}

TEST(Document, TellsOfARebootAheadOfTheMessage) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] { const Document document(out, OUTPUT_CLI, "S", "Success", kAhead); }),
            std::string(kRuler) + "S:\nReboot Required: true\nMessage: Success\n" + kRuler);
  EXPECT_EQ(PrintedBy([&] { const Document document(out, OUTPUT_XML, "S", "Success", kAhead); }),
            std::string(kXmlHead) +
                "<structure typeName=\"S\">\n"
                "<field name=\"Reboot Required\">\n<bool>true</bool></field>\n"
                "<field name=\"Message\">\n<string>Success</string></field>\n"
                "</structure>\n</output>\n");
}

TEST(Document, TellsOfARebootBehindTheMessage) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] { const Document document(out, OUTPUT_CLI, "S", "Success", kBehind); }),
            std::string(kRuler) + "S:\nMessage: Success\nReboot Required: false\n" + kRuler);
  EXPECT_EQ(PrintedBy([&] { const Document document(out, OUTPUT_XML, "S", "Success", kBehind); }),
            std::string(kXmlHead) +
                "<structure typeName=\"S\">\n"
                "<field name=\"Message\">\n<string>Success</string></field>\n"
                "<field name=\"Reboot Required\">\n<bool>false</bool></field>\n"
                "</structure>\n</output>\n");
}

TEST(Document, TellsOfNoRebootWhereItIsAbsent) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] {
              const Document document(out, OUTPUT_CLI, "S", "Success", {RebootField::kAbsent, true});
            }),
            std::string(kRuler) + "S:\nMessage: Success\n" + kRuler);
}

TEST(WriteReport, FramesTheTextInXml) {
  Serializer out;
  ReportText text(256);
  text.Line("Manufacturer: Sorvex\n");
  text.Line("      Model: ZX100\n");
  EXPECT_EQ(PrintedBy([&] { WriteReport(out, OUTPUT_XML, kFrame, text); }),
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
  Serializer out;
  ReportText text(256);
  text.Line("Manufacturer: Sorvex\n");
  text.Line("      Model: ZX100\n");
  EXPECT_EQ(PrintedBy([&] { WriteReport(out, OUTPUT_CLI, kFrame, text); }),
            "****************************************************\n"
            "AdapterInformation:\n"
            "Message: Success\n"
            "General Parameters: GeneralParametersList:\n"
            "Data: Manufacturer: Sorvex\n"
            "      Model: ZX100\n"
            "****************************************************\n");
}

TEST(WriteReport, NamesTheDataFieldAsTheFrameDoes) {
  Serializer out;
  ReportText text(16);
  text.Line("x\n");
  const ReportFrame frame = {"A", "B", "C", "Loopback Data"};
  EXPECT_EQ(PrintedBy([&] { WriteReport(out, OUTPUT_CLI, frame, text); }),
            std::string(kRuler) + "A:\nMessage: Success\nB: C:\nLoopback Data: x\n" + kRuler);
}

TEST(WriteReport, TellsOfARebootInItsPlace) {
  Serializer out;
  ReportText text(16);
  text.Line("x\n");
  const std::string data = "General Parameters: GeneralParametersList:\nData: x\n";
  EXPECT_EQ(PrintedBy([&] { WriteReport(out, OUTPUT_CLI, kFrame, text, kAhead); }),
            kRuler + ("AdapterInformation:\nReboot Required: true\nMessage: Success\n" + data) + kRuler);
  EXPECT_EQ(PrintedBy([&] { WriteReport(out, OUTPUT_CLI, kFrame, text, kBehind); }),
            kRuler + ("AdapterInformation:\nMessage: Success\nReboot Required: false\n" + data) + kRuler);
}

TEST(WriteReport, WritesAnEmptyText) {
  Serializer out;
  const ReportText text(16);
  EXPECT_EQ(PrintedBy([&] { WriteReport(out, OUTPUT_CLI, kFrame, text); }),
            std::string(kRuler) +
                "AdapterInformation:\nMessage: Success\nGeneral Parameters: GeneralParametersList:\nData: " +
                kRuler);
}

TEST(WriteReport, LeavesTheFieldOfATextWithoutMemoryEmpty) {
  Serializer out;
  ReportText text(SIZE_MAX / 2);
  text.Line("x\n");
  EXPECT_EQ(PrintedBy([&] {
              WriteReport(out, OUTPUT_XML, {"A", "B", "C"}, text);
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
  Serializer out;
  ReportText text(data.size() + 1);
  text.Line("%s", data.c_str());
  const std::string document = PrintedBy([&] { WriteReport(out, OUTPUT_CLI, {"A", "B", "C"}, text); });
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

TEST(WriteReport, ReadsABlankBehindAPercentSignAsAFlag) {
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

TEST(WriteReport, GoesOnBehindAPercentSignThatStands) {
  EXPECT_EQ(Written("%y %s %"), "%y  %");
  EXPECT_EQ(Written("%y%d"), "%y");
  EXPECT_EQ(Written("%l%d"), "%l");
}

TEST(WriteReport, LeavesATextOfPercentSignsWithinItsLimit) {
  EXPECT_EQ(Written(std::string(1000, '%')), std::string(500, '%'));
}

TEST(WriteReportError, HoldsAnEmptyListInXml) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] { WriteReportError(out, OUTPUT_XML, kFrame, "Failed, Invalid parameter"); }),
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
  Serializer out;
  EXPECT_EQ(PrintedBy([&] { WriteReportError(out, OUTPUT_CLI, kFrame, "Failed, Invalid parameter"); }),
            "****************************************************\n"
            "AdapterInformation:\n"
            "Message: Failed, Invalid parameter\n"
            "General Parameters: ****************************************************\n");
}

TEST(WriteReportError, TellsOfARebootInItsPlace) {
  Serializer out;
  EXPECT_EQ(
      PrintedBy([&] { WriteReportError(out, OUTPUT_CLI, kFrame, "Failed, X", kAhead); }),
      std::string(kRuler) +
          "AdapterInformation:\nReboot Required: true\nMessage: Failed, X\nGeneral Parameters: " + kRuler);
  EXPECT_EQ(
      PrintedBy([&] { WriteReportError(out, OUTPUT_CLI, kFrame, "Failed, X", kBehind); }),
      std::string(kRuler) +
          "AdapterInformation:\nMessage: Failed, X\nReboot Required: false\nGeneral Parameters: " + kRuler);
}

void WriteIdentifiers(Serializer& out, OutputMode mode, const std::vector<std::string>& identifiers) {
  IdentifierList list(out, mode, "AdapterList", "Adapters");
  for (const std::string& identifier : identifiers) list.Write(identifier);
}

TEST(IdentifierList, WritesAStructureForEachIdentifier) {
  Serializer out;
  const std::vector<std::string> identifiers = {"Adapter_ZX100_A1", "Adapter_ZX200_%s<&>"};
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(out, OUTPUT_XML, identifiers); }),
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
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(out, OUTPUT_CLI, identifiers); }),
            "****************************************************\n"
            "AdapterList:\n"
            "Adapters: Adapter_ZX100_A1\n"
            "AdapterList:\n"
            "Adapters: Adapter_ZX200_%s<&>\n"
            "****************************************************\n");
}

TEST(IdentifierList, WritesAnEmptyList) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(out, OUTPUT_XML, {}); }),
            std::string(kXmlHead) + "<list type=\"structure\">\n</list>\n</output>\n");
  EXPECT_EQ(PrintedBy([&] { WriteIdentifiers(out, OUTPUT_CLI, {}); }), std::string(kRuler) + kRuler);
}

TEST(IdentifierList, EndsItsDocumentWithItsScope) {
  Serializer out;
  PrintedBy([&] { WriteIdentifiers(out, OUTPUT_XML, {"x"}); });
  EXPECT_EQ(out.EndList(), kBadMode);
}

// A field with two structures between the fields of a document.
void WriteNested(Serializer& out, OutputMode mode) {
  const Document document(out, mode, "D", "Success");
  {
    const ListField list(out, "L");
    { const ListStructure empty(out, "A"); }
    const ListStructure structure(out, "B");
    out.WriteStringField("F", "v");
  }
  out.WriteStringField("G", "w");
}

TEST(ListField, HoldsStructures) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] { WriteNested(out, OUTPUT_XML); }),
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
  EXPECT_EQ(PrintedBy([&] { WriteNested(out, OUTPUT_CLI); }),
            std::string(kRuler) + "D:\nMessage: Success\nL: A:\nB:\nF: v\nG: w\n" + kRuler);
}

class RebootQuestion : public testing::Test {
 protected:
  RebootQuestion() { ResetLibrary(); }
};

TEST_F(RebootQuestion, IsTrueForFlagOneAlone) {
  Library().reboot_flag = 0;
  EXPECT_FALSE(IsRebootRequired("SomeClass"));
  Library().reboot_flag = 1;
  EXPECT_TRUE(IsRebootRequired("SomeClass"));
  Library().reboot_flag = 2;
  EXPECT_FALSE(IsRebootRequired("SomeClass"));
  Library().reboot_flag = 0xFF;
  EXPECT_FALSE(IsRebootRequired("SomeClass"));
}

TEST_F(RebootQuestion, IsTrueWhenTheFlagIsLeftAlone) {
  Library().reboot_flag.reset();
  EXPECT_TRUE(IsRebootRequired("SomeClass"));
}

TEST_F(RebootQuestion, IsTrueWhenTheCallFailsWhateverItsFlag) {
  for (const std::uint32_t result : {1u, 13u, 150u, 0x80000000u}) {
    Library().reboot_result = result;
    for (const std::uint8_t flag : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{2}}) {
      Library().reboot_flag = flag;
      EXPECT_TRUE(IsRebootRequired("SomeClass")) << "result " << result << ", flag " << int{flag};
    }
    Library().reboot_flag.reset();
    EXPECT_TRUE(IsRebootRequired("SomeClass")) << "result " << result << ", flag not written";
  }
}

TEST_F(RebootQuestion, IsAskedOnceAndOutsideAnyBracket) {
  const NoLibraryOutputFile none;
  Library().chatter = "library text\n";
  EXPECT_EQ(PrintedBy([] { IsRebootRequired("SomeClass"); }), "library text\n");
  EXPECT_EQ(Library().calls, (std::vector<std::string>{"IsRebootRequired"}));
  EXPECT_FALSE(std::filesystem::exists("/var/tmp/torpi-output.log"));
}

}  // namespace
