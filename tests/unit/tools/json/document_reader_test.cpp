#include "tools/json/document_reader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "unit/tools/json/document_texts.h"

namespace zfc_json {
namespace {

using Event = DocumentReader::Event;

// Every part on a line of its own. What ends nothing but a field is left out.
std::string Parts(std::string_view input, std::size_t piece = 65536) {
  TextSource source(input, piece);
  DocumentReader reader(source);
  std::string parts;
  for (;;) {
    switch (reader.Next()) {
      case Event::kDocument:
        parts += "document\n";
        break;
      case Event::kList:
        parts += "list\n";
        break;
      case Event::kStructure:
        parts.append("structure ").append(reader.Name()) += '\n';
        break;
      case Event::kField:
        parts.append("field ").append(reader.Name()) += '\n';
        break;
      case Event::kString:
        parts.append("string ").append(reader.Text()) += '\n';
        break;
      case Event::kInteger:
        parts.append("integer ").append(reader.Text()) += '\n';
        break;
      case Event::kBoolean:
        parts.append("boolean ").append(reader.Text()) += '\n';
        break;
      case Event::kEndField:
        break;
      case Event::kEndStructure:
        parts += "end structure\n";
        break;
      case Event::kEndList:
        parts += "end list\n";
        break;
      case Event::kEndDocument:
        parts += "end document\n";
        break;
      case Event::kEndInput:
        return parts;
      case Event::kBroken:
        return parts + reader.Problem();
    }
  }
}

// The strings of all documents, and what is wrong.
std::vector<std::string> Strings(std::string_view input, std::size_t piece = 65536) {
  TextSource source(input, piece);
  DocumentReader reader(source);
  std::vector<std::string> strings;
  for (;;) {
    const Event event = reader.Next();
    if (event == Event::kString) strings.emplace_back(reader.Text());
    if (event == Event::kBroken) strings.push_back("broken: " + reader.Problem());
    if (event == Event::kEndInput || event == Event::kBroken) return strings;
  }
}

std::string Problem(std::string_view input) {
  TextSource source(input);
  DocumentReader reader(source);
  for (;;) {
    const Event event = reader.Next();
    if (event == Event::kEndInput) return "";
    if (event == Event::kBroken) return reader.Problem();
  }
}

TEST(DocumentReader, ReadsEveryKindOfPart) {
  const std::string input =
      "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n"
      "<structure typeName=\"FECInfo\">\n"
      "<field name=\"Message\">\n"
      "<string>Success</string></field>\n"
      "<field name=\"Reboot Required\">\n"
      "<bool>false</bool></field>\n"
      "<field name=\"FEC\">\n"
      "<list type=\"structure\">\n"
      "<structure typeName=\"FECList\">\n"
      "<field name=\"Correctable FEC errors\">\n"
      "<int>-41</int></field>\n"
      "<field name=\"Data\">\n"
      "</field>\n"
      "</structure>\n"
      "</list>\n"
      "</field>\n"
      "</structure>\n"
      "</output>\n";
  const std::string expected =
      "document\n"
      "structure FECInfo\n"
      "field Message\nstring Success\n"
      "field Reboot Required\nboolean false\n"
      "field FEC\nlist\n"
      "structure FECList\n"
      "field Correctable FEC errors\ninteger -41\n"
      "field Data\n"
      "end structure\nend list\n"
      "end structure\nend document\n";
  for (const std::size_t piece : {1, 2, 7, 65536}) EXPECT_EQ(Parts(input, piece), expected) << piece;
}

TEST(DocumentReader, ReadsListsAndDocumentsInARow) {
  EXPECT_EQ(Parts(LunListText({"LUN_0", "LUN_1"}) + LunListText({}) + DocumentText("")),
            "document\nlist\n"
            "structure LunList\nfield LUNs/Namespaces\nstring LUN_0\nend structure\n"
            "structure LunList\nfield LUNs/Namespaces\nstring LUN_1\nend structure\n"
            "end list\nend document\n"
            "document\nlist\nend list\nend document\n"
            "document\nend document\n");
}

TEST(DocumentReader, PassesOverWhatIsOutside) {
  const std::string input =
      "<TORPI_Call> says & more\n" + LunListText({"a"}) + "$>" + LunListText({"b"}) + "\r\nbye\n";
  TextSource source(input);
  DocumentReader reader(source);
  int documents = 0;
  for (Event event = reader.Next(); event != Event::kEndInput; event = reader.Next()) {
    ASSERT_NE(event, Event::kBroken);
    if (event == Event::kDocument) ++documents;
  }
  EXPECT_EQ(documents, 2);
  EXPECT_EQ(reader.OutsideBytes(), 21U + 2U + 3U);  // without white space
  EXPECT_EQ(reader.OutsideText(), "<TORPI_Call> says & more\n$>\r\nbye\n");
}

TEST(DocumentReader, FindsNothingInOtherTexts) {
  for (const std::string_view input : {"", "Unknown command\r\n", "<?xml version=\"1.0\"?><output>\n", "<"}) {
    EXPECT_EQ(Parts(input), "") << input;
  }
}

// Texts that no XML reader takes, or takes as something else.
TEST(DocumentReader, EndsATextAtTheTagThatFits) {
  constexpr std::string_view kTexts[] = {
      "",
      "R&D <b>",
      "</string>",
      "</string></field>\n",
      "</string></field>\n</structure>\n",
      "</string></field>\n</structure>\n</list>\n</field>\n",
      "</string></field>\n</structure>\n</list>\n</field>\n</structure>\n</output>\n",
      "</string></field>\n</structure>\n</output>\n",
      "</string></field>\n<field name=\"Data\">\n<string>",
      "</string></field>\n<field name=\"Other\">\nno value",
      "</string></field>\n<field name=\"Oth<er\">\n<string>",
      "</string></field>\n</structure>\n<structure typeName=\"Other\">\n<field name=\"Data\">\n<string>",
      "</string></field>\n</structure>\n</list>\n</field>\n<field name=\"Message\">\n<string>",
      "</string></field>\n<?xml",
      "<![CDATA[ ]]> &amp; &#0; <!-- -- -->",
      "\xFF\xFE\x01\x7F",
      "</output>\n",
  };
  for (const std::string_view text : kTexts) {
    for (const std::size_t piece : {1, 65536}) {
      EXPECT_EQ(Strings(ReportText(text) + LunListText({"next"}), piece),
                (std::vector<std::string>{"Success", std::string(text), "next"}));
      EXPECT_EQ(Strings(LunListText({"before", text, "after"}), piece),
                (std::vector<std::string>{"before", std::string(text), "after"}));
    }
  }
}

TEST(DocumentReader, ReadsBackWhatTheWriterWrote) {
  constexpr std::string_view kPieces[] = {
      "<",
      ">",
      "&",
      "\n",
      "a",
      "text ",
      "\xFF",
      "\"",
      "</string>",
      "</field>\n",
      "</string></field>\n",
      "</structure>\n",
      "</list>\n",
      "</output>\n",
      "<string>",
      "<field name=\"Message\">\n",
      "<structure typeName=\"Other\">\n",
      "<?xml version=\"1.0\"?>",
      "</string></field>\n</structure>\n</list>\n</output>\n",
      "</string></field>\n</structure>\n</list>\n</field>\n</structure>\n</output>\n",
  };
  std::mt19937 random(20260314);
  const auto below = [&random](std::size_t bound) { return random() % bound; };
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (std::size_t count = below(12); count > 0; --count) text += kPieces[below(std::size(kPieces))];
    const std::string next = "next";
    const std::size_t piece = 1 + below(100);
    ASSERT_EQ(Strings(ReportText(text) + LunListText({next}), piece),
              (std::vector<std::string>{"Success", text, next}));
    // Ahead of an element and at the end of a list; ahead of other fields.
    ASSERT_EQ(Strings(LunListText({text, next, text}), piece), (std::vector<std::string>{text, next, text}));
    const std::string fields =
        StringField("Message", text) + StringField("Data", text) + StringField("Last", text);
    ASSERT_EQ(Strings(DocumentText(StructureText("Some", fields)), piece),
              (std::vector<std::string>{text, text, text}));
  }
}

// What can't be recovered: a text that is, byte for byte, the end of a value and the beginning of the next.
TEST(DocumentReader, TakesAPerfectCopyForTheRealThing) {
  const std::string copy =
      "a</string></field>\n</structure>\n<structure typeName=\"LunList\">\n<field "
      "name=\"LUNs/Namespaces\">\n<string>b";
  EXPECT_EQ(Strings(LunListText({copy})), (std::vector<std::string>{"a", "b"}));
}

TEST(DocumentReader, BreaksOnADocumentThatIsCutOff) {
  const std::string whole = ReportText("Model: ZX100\n");
  for (std::size_t length = kHeadText.size(); length < whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    EXPECT_NE(Problem(cut), "") << length;
    EXPECT_NE(Problem(cut + whole), "") << length;
  }
  EXPECT_EQ(Problem(whole), "");
  // One that is cut off in its head is none.
  EXPECT_EQ(Problem(whole.substr(0, kHeadText.size() - 1)), "");
}

std::string IntegerField(std::string_view name) {
  std::string text = "<field name=\"";
  return text.append(name).append("\">\n<int>1</int></field>\n");
}

TEST(DocumentReader, SaysWhereADocumentBreaks) {
  struct Row {
    std::string content;
    const char* problem;
  };
  // The head is 50 bytes long.
  const Row rows[] = {
      {"text", "byte 50: expected a list, a structure or </output>"},
      {"<list type=\"string\">\n", "byte 50: expected a list, a structure or </output>"},
      {ListText("") + ListText(""), "byte 82: expected </output>"},
      {"<structure typeName=\"\">\n", "byte 71: expected the type of a structure"},
      {"<structure typeName=\"a<b\">\n", "byte 71: expected the type of a structure"},
      {"<structure typeName=\"" + std::string(65, 'a') + "\">\n",
       "byte 71: expected the type of a structure"},
      {StructureText("S", "text"), "byte 75: expected a field or </structure>"},
      {StructureText("S", "<field name=\"a\"b\">\n"), "byte 88: expected the name of a field"},
      {StructureText("S", IntegerField("A") + IntegerField("A")),
       "byte 126: expected a field of another name"},
      {StructureText("S", "<field name=\"A\">\n<int>07</int></field>\n"),
       "byte 97: expected a number, true or false"},
      {StructureText("S", "<field name=\"A\">\n<bool>yes</bool></field>\n"),
       "byte 98: expected a number, true or false"},
      {StructureText("S", "<field name=\"A\">\n<int>" + std::string(30, '1') + "</int></field>\n"),
       "byte 97: expected a number, true or false"},
      {StructureText("S", "<field name=\"A\">\n<float>1</float></field>\n"),
       "byte 92: expected a value, a list or </field>"},
      {ListText(StructureText("S", "") + StructureText("T", "")),
       "byte 133: expected a structure of the list's type"},
      {ListText("text"), "byte 74: expected a structure or </list>"},
  };
  for (const Row& row : rows) EXPECT_EQ(Problem(DocumentText(row.content)), row.problem) << row.content;
  EXPECT_EQ(Problem(kHeadText),
            "byte 50: expected a list, a structure or </output>, got the end of the input");
}

TEST(DocumentReader, BreaksOnWhatGrowsWithoutEnd) {
  std::string nested;
  for (int depth = 0; depth < 20; ++depth) {
    nested += "<field name=\"F" + std::to_string(depth) +
              "\">\n<list type=\"structure\">\n<structure typeName=\"S\">\n";
  }
  EXPECT_NE(Problem(std::string(kHeadText) + "<structure typeName=\"S\">\n" + nested)
                .find("fewer lists in each other"),
            std::string::npos);
  std::string fields;
  for (int field = 0; field < 300; ++field) fields += StringField("F" + std::to_string(field), "");
  EXPECT_NE(Problem(DocumentText(StructureText("S", fields))).find("expected fewer fields"),
            std::string::npos);
  const std::string endless(std::size_t{17} << 20, 'x');
  EXPECT_NE(Problem(ReportText(endless)).find("expected a shorter text"), std::string::npos);
}

}  // namespace
}  // namespace zfc_json
