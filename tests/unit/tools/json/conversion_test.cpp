#include "tools/json/conversion.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "unit/tools/json/document_texts.h"

namespace zfc_json {
namespace {

struct Converted {
  std::string json;
  Conversion conversion;
};

Converted ConvertText(std::string_view input, const WriterOptions& options = {}) {
  TextSource source(input);
  TextSink sink;
  const Conversion conversion = Convert(source, sink, options);
  return {sink.Text(), conversion};
}

std::string Json(std::string_view input, const WriterOptions& options = {}) {
  return ConvertText(input, options).json;
}

Verdict Result(std::string_view input, bool reboot_status = false) {
  return ConvertText(input).conversion.Result(reboot_status);
}

std::string Problem(std::string_view input) {
  return ConvertText(input).conversion.problem;
}

std::string BooleanField(std::string_view name, std::string_view value) {
  std::string text = "<field name=\"";
  return text.append(name).append("\">\n<bool>").append(value).append("</bool></field>\n");
}

std::string IntegerField(std::string_view name, std::string_view value) {
  std::string text = "<field name=\"";
  return text.append(name).append("\">\n<int>").append(value).append("</int></field>\n");
}

// A document of one structure with a message and more fields.
std::string Simple(std::string_view message, std::string_view more = {}) {
  return DocumentText(StructureText("UpdateNVRAM", StringField("Message", message).append(more)));
}

TEST(Conversion, WritesAStructure) {
  EXPECT_EQ(Json(DocumentText(StructureText("AdapterPersonality", BooleanField("Reboot Required", "true") +
                                                                      StringField("Message", "Success") +
                                                                      StringField("Personality", "FC")))),
            R"({"structure":"AdapterPersonality","message":"Success","success":true,"rebootRequired":true,)"
            R"("fields":{"Reboot Required":true,"Message":"Success","Personality":"FC"},"list":null})"
            "\n");
}

TEST(Conversion, WritesAFailure) {
  EXPECT_EQ(
      Json(DocumentText(StructureText(
          "FECInfo", StringField("Message", "Failed, FEC read failed") + ListField("FEC", "")))),
      R"({"structure":"FECInfo","message":"Failed, FEC read failed","success":false,"rebootRequired":null,)"
      R"("fields":{"Message":"Failed, FEC read failed","FEC":[]},"list":null})"
      "\n");
}

TEST(Conversion, WritesListsOfStructures) {
  const std::string elements = StructureText("FECList", StringField("FEC_Status", "true") +
                                                            IntegerField("Correctable FEC errors", "41")) +
                               StructureText("FECList", "<field name=\"FEC_Status\">\n</field>\n");
  EXPECT_EQ(Json(Simple("Success", ListField("FEC", elements) + StringField("Last", "x"))),
            R"({"structure":"UpdateNVRAM","message":"Success","success":true,"rebootRequired":null,)"
            R"("fields":{"Message":"Success","FEC":[)"
            R"({"structure":"FECList","fields":{"FEC_Status":"true","Correctable FEC errors":41}},)"
            R"({"structure":"FECList","fields":{"FEC_Status":null}}],"Last":"x"},"list":null})"
            "\n");
}

TEST(Conversion, WritesListsInLists) {
  const std::string inner =
      ListField("Inner", StructureText("I", IntegerField("N", "1")) + StructureText("I", ""));
  EXPECT_EQ(
      Json(Simple("Success", ListField("Outer", StructureText("O", inner) + StructureText("O", inner)))),
      R"({"structure":"UpdateNVRAM","message":"Success","success":true,"rebootRequired":null,)"
      R"("fields":{"Message":"Success","Outer":[)"
      R"({"structure":"O","fields":{"Inner":[{"structure":"I","fields":{"N":1}},{"structure":"I","fields":{}}]}},)"
      R"({"structure":"O","fields":{"Inner":[{"structure":"I","fields":{"N":1}},{"structure":"I","fields":{}}]}}]},)"
      R"("list":null})"
      "\n");
}

TEST(Conversion, WritesAListDocument) {
  EXPECT_EQ(
      Json(LunListText({"LUN_0", "LUN_1"})),
      R"({"structure":"LunList","message":null,"success":true,"rebootRequired":null,"fields":null,"list":[)"
      R"({"structure":"LunList","fields":{"LUNs/Namespaces":"LUN_0"}},)"
      R"({"structure":"LunList","fields":{"LUNs/Namespaces":"LUN_1"}}]})"
      "\n");
  EXPECT_EQ(
      Json(LunListText({})),
      R"({"structure":null,"message":null,"success":true,"rebootRequired":null,"fields":null,"list":[]})"
      "\n");
}

TEST(Conversion, WritesAnEmptyDocument) {
  EXPECT_EQ(
      Json(DocumentText("")),
      R"({"structure":null,"message":null,"success":false,"rebootRequired":null,"fields":null,"list":null})"
      "\n");
  EXPECT_EQ(Result(DocumentText("")), kFailed);
}

TEST(Conversion, WritesReportsWithTextAndLines) {
  constexpr std::string_view kBefore =
      R"({"structure":"LunInformation","message":"Success","success":true,"rebootRequired":null,)"
      R"("fields":{"Message":"Success","LunInfo":[{"structure":"LunInfoList","fields":{"Data":)";
  constexpr std::string_view kAfter = "}}]},\"list\":null}\n";
  constexpr std::string_view kText = R"("text":"Lun Number: 0\n      Lun Size In MB: 102400\n  odd\n")";
  constexpr std::string_view kLines =
      R"("lines":[{"section":null,"group":null,"label":"Lun Number","value":"0","unit":null,"number":0},)"
      R"({"section":null,"group":null,"label":"Lun Size In MB","value":"102400","unit":"MB","number":102400},)"
      R"({"section":null,"group":"Lun Size In MB","text":"odd"}])";
  const auto expected = [&](std::string_view content) {
    std::string json(kBefore);
    return json.append("{").append(content).append("}").append(kAfter);
  };
  const std::string input = ReportText("Lun Number: 0\n      Lun Size In MB: 102400\n  odd\n");
  EXPECT_EQ(Json(input), expected(std::string(kText).append(",").append(kLines)));
  EXPECT_EQ(Json(input, {.parsed = false}), expected(kText));
  EXPECT_EQ(Json(input, {.raw = false}), expected(kLines));
}

TEST(Conversion, NamesTheFieldsThatAreNotUtf8) {
  EXPECT_EQ(Json(Simple("Success",
                        StringField("A", "\xE9") + StringField("B", "\xC3\xA9") + StringField("C", "\xFF"))),
            R"({"structure":"UpdateNVRAM","message":"Success","success":true,"rebootRequired":null,)"
            "\"fields\":{\"Message\":\"Success\",\"A\":\"\xC3\xA9\",\"B\":\"\xC3\xA9\",\"C\":\"\xC3\xBF\"},"
            R"("list":null,"latin1":["A","C"]})"
            "\n");
  EXPECT_EQ(
      Json(LunListText({"\xE9", "x"})),
      R"({"structure":"LunList","message":null,"success":true,"rebootRequired":null,"fields":null,"list":[)"
      "{\"structure\":\"LunList\",\"fields\":{\"LUNs/Namespaces\":\"\xC3\xA9\"},\"latin1\":[\"LUNs/"
      "Namespaces\"]},"
      R"({"structure":"LunList","fields":{"LUNs/Namespaces":"x"}}]})"
      "\n");
  // A line counts as the report does: here its own bytes are UTF-8 and those of the report are not.
  const std::string report = Json(ReportText("A: \xC3\xA9\nB: \xFF\n"), {.raw = false});
  EXPECT_NE(report.find("\"label\":\"A\",\"value\":\"\xC3\x83\xC2\xA9\""), std::string::npos) << report;
  EXPECT_NE(report.find(R"("latin1":["Data"])"), std::string::npos) << report;
}

TEST(Conversion, StructureHas256FieldsAtMost) {
  const auto with_fields = [](int count) {
    std::string fields;
    for (int i = 0; i < count; ++i) fields += StringField("Field " + std::to_string(i), "x");
    return Problem(DocumentText(StructureText("T", fields)));
  };
  EXPECT_EQ(with_fields(256), "");
  EXPECT_NE(with_fields(257).find("fewer fields"), std::string::npos);
}

TEST(Conversion, MessageGoesBeforeTheVerdictAndOtherTextsAreNeither) {
  const std::string verdict = StringField("Test Result", "Success");
  EXPECT_NE(
      Json(Simple("Failed, link down", verdict)).find(R"("message":"Failed, link down","success":false)"),
      std::string::npos);
  EXPECT_NE(Json(DocumentText(StructureText("CTDiagResult", StringField("Diagnostic Test", "CT"))))
                .find(R"("message":null,"success":false)"),
            std::string::npos);
}

TEST(Conversion, TakesTheVerdictOfTests) {
  EXPECT_EQ(Json(DocumentText(StructureText("CTDiagResult", StringField("Diagnostic Test", "CT") +
                                                                StringField("Test Result", "Success")))),
            R"({"structure":"CTDiagResult","message":"Success","success":true,"rebootRequired":null,)"
            R"("fields":{"Diagnostic Test":"CT","Test Result":"Success"},"list":null})"
            "\n");
  // Only of the document itself.
  const std::string inner = ListField(
      "L", StructureText("S", StringField("Message", "Success") + BooleanField("Reboot Required", "true")));
  const Converted converted = ConvertText(DocumentText(StructureText("T", inner)));
  EXPECT_NE(converted.json.find(R"("message":null,"success":false,"rebootRequired":null)"),
            std::string::npos);
  EXPECT_EQ(converted.conversion.Result(true), kFailed);
}

TEST(Conversion, ReadsTheRebootTextsOfAFlashUpdate) {
  struct Row {
    const char* text;
    const char* json;
  };
  constexpr Row kRows[] = {
      {"false", R"("rebootRequired":false,)"},
      {"true", R"("rebootRequired":true,)"},
      {"Cold Boot Required", R"("rebootRequired":true,)"},
      {"perhaps", R"("rebootRequired":null,)"},
  };
  for (const Row& row : kRows) {
    const std::string json = Json(Simple("Success", StringField("Reboot Required", row.text)));
    EXPECT_NE(json.find(row.json), std::string::npos) << json;
  }
}

TEST(Conversion, StreamsTheElementsOfAListDocument) {
  const WriterOptions stream = {.stream = true};
  EXPECT_EQ(Json(LunListText({"LUN_0", "LUN_1"}), stream),
            R"({"structure":"LunList","fields":{"LUNs/Namespaces":"LUN_0"}})"
            "\n"
            R"({"structure":"LunList","fields":{"LUNs/Namespaces":"LUN_1"}})"
            "\n");
  EXPECT_EQ(Json(LunListText({}), stream), "");
  EXPECT_EQ(ConvertText(LunListText({}), stream).conversion.Result(false), kSucceeded);
  const std::string other =
      Simple("Success", ListField("FEC", StructureText("FECList", IntegerField("N", "1"))));
  EXPECT_EQ(Json(other, stream), Json(other));
  // An element that is complete is out, one that is not is not.
  const std::string cut = LunListText({"LUN_0", "LUN_1"});
  const Converted broken = ConvertText(cut.substr(0, cut.size() - 40), stream);
  EXPECT_EQ(broken.json, R"({"structure":"LunList","fields":{"LUNs/Namespaces":"LUN_0"}})"
                         "\n");
  EXPECT_EQ(broken.conversion.Result(false), kNoDocument);
}

TEST(Conversion, WritesNothingOfABrokenDocument) {
  const std::string good = Simple("Success");
  const Converted converted = ConvertText(good + good.substr(0, 100));
  EXPECT_EQ(converted.json, Json(good));
  EXPECT_EQ(converted.conversion.Result(false), kNoDocument);
  EXPECT_EQ(converted.conversion.documents, 1U);
}

TEST(Conversion, EndsWithTheWorstOfAllDocuments) {
  const std::string good = Simple("Success");
  const std::string bad = Simple("Failed, File not found");
  const std::string reboot = Simple("Success", BooleanField("Reboot Required", "true"));
  EXPECT_EQ(Result(good), kSucceeded);
  EXPECT_EQ(Result(LunListText({})), kSucceeded);
  EXPECT_EQ(Result(bad), kFailed);
  EXPECT_EQ(Result(Simple("Succes")), kFailed);
  EXPECT_EQ(Result(good + bad + good), kFailed);
  EXPECT_EQ(Result(reboot), kSucceeded);
  EXPECT_EQ(Result(reboot, true), kRebootRequired);
  EXPECT_EQ(Result(reboot + good, true), kRebootRequired);
  EXPECT_EQ(Result(reboot + bad, true), kFailed);
  EXPECT_EQ(Result(good, true), kSucceeded);
  EXPECT_EQ(Result(good + "<?xml"), kSucceeded);
  EXPECT_EQ(Result(bad + good.substr(0, 60), true), kNoDocument);
}

TEST(Conversion, SaysWhatItGotInPlaceOfADocument) {
  EXPECT_EQ(Problem(""), "no document: there is no output at all");
  EXPECT_EQ(Problem(" \r\n"), "no document: there is no output at all");
  EXPECT_EQ(Problem("\nUnknown command or invalid target identifier!\r\nmore"),
            "no document, but \"Unknown command or invalid target identifier!\"");
  EXPECT_EQ(Problem("\x1B[2J\xFF"), "no document, but \"\\u001b[2J\xC3\xBF\"");
  EXPECT_EQ(
      Problem(std::string(52, '*') + "\nAdapterList:\n"),
      "no document: this is the text form of a command. The XML form is needed: the word without 'cli'");
  EXPECT_EQ(Problem(std::string(kHeadText) + "x"),
            "broken document: byte 50: expected a list, a structure or </output>");
  EXPECT_EQ(Problem(Simple("Success")), "");
}

}  // namespace
}  // namespace zfc_json
