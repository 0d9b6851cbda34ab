#include "framework/serializer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"

namespace {

constexpr char kXmlHead[] = "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n";
constexpr char kXmlEnd[] = "</output>\n";
const std::string kRuler = std::string(52, '*') + "\n";

using Operation = std::function<StatusCode(Serializer&)>;

// What one operation prints and returns in a document of the given mode.
struct Outcome {
  StatusCode status;
  std::string printed;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << "status " << outcome.status << ", printed " << testing::PrintToString(outcome.printed);
}

Outcome InDocument(OutputMode mode, const Operation& operation) {
  Serializer out;
  PrintedBy([&] { out.Open(mode); });
  Outcome outcome = {};
  outcome.printed = PrintedBy([&] { outcome.status = operation(out); });
  return outcome;
}

void ExpectPrints(const Operation& operation, const std::string& xml, const std::string& cli) {
  EXPECT_EQ(InDocument(OUTPUT_XML, operation), (Outcome{kSuccess, xml}));
  EXPECT_EQ(InDocument(OUTPUT_CLI, operation), (Outcome{kSuccess, cli}));
}

// Every operation but Open and Close.
const std::vector<Operation>& InnerOperations() {
  static const std::vector<Operation> operations = {
      [](Serializer& out) { return out.BeginList(kStringList); },
      [](Serializer& out) { return out.BeginList(kStructureList); },
      [](Serializer& out) { return out.BeginList(static_cast<ListKind>(4)); },
      [](Serializer& out) { return out.EndList(); },
      [](Serializer& out) { return out.WriteStringList({"a"}); },
      [](Serializer& out) { return out.WriteStringList({}); },
      [](Serializer& out) { return out.WriteIntList({1}); },
      [](Serializer& out) { return out.WriteIntList({}); },
      [](Serializer& out) { return out.WriteBoolList({true}); },
      [](Serializer& out) { return out.WriteBoolList({}); },
      [](Serializer& out) { return out.BeginStructure("S"); },
      [](Serializer& out) { return out.EndStructure(); },
      [](Serializer& out) { return out.BeginField("F"); },
      [](Serializer& out) { return out.EndField(); },
      [](Serializer& out) { return out.WriteStringField("F", "v"); },
      [](Serializer& out) { return out.WriteIntField("F", 1, kSigned32); },
      [](Serializer& out) { return out.WriteIntField("F", 1, static_cast<IntKind>(5)); },
      [](Serializer& out) { return out.WriteBoolField("F", true); },
      [](Serializer& out) { return out.WriteText("v"); },
      [](Serializer& out) { return out.WriteFormatted(5, "%s", "text"); },
      [](Serializer& out) { return out.WriteFormatted(0, "%s", ""); },
  };
  return operations;
}

// All operations but Open return 12 and print nothing.
void ExpectShut(Serializer& out) {
  std::vector<Operation> operations = InnerOperations();
  operations.emplace_back([](Serializer& shut) { return shut.Close(); });
  for (std::size_t i = 0; i < operations.size(); ++i) {
    StatusCode status = kSuccess;
    EXPECT_EQ(PrintedBy([&] { status = operations[i](out); }), "") << "operation " << i;
    EXPECT_EQ(status, 12u) << "operation " << i;
  }
}

TEST(Serializer, OpensADocument) {
  Serializer xml;
  Serializer cli;
  StatusCode status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = xml.Open(OUTPUT_XML); }), kXmlHead);
  EXPECT_EQ(status, kSuccess);
  status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = cli.Open(OUTPUT_CLI); }), kRuler);
  EXPECT_EQ(status, kSuccess);
}

TEST(Serializer, ClosesADocument) {
  ExpectPrints([](Serializer& out) { return out.Close(); }, kXmlEnd, kRuler);
}

TEST(Serializer, RulerHas52Asterisks) {
  EXPECT_EQ(InDocument(OUTPUT_CLI, [](Serializer& out) { return out.Close(); }).printed,
            "****************************************************\n");
}

TEST(Serializer, IsShutBeforeTheFirstOpen) {
  Serializer out;
  ExpectShut(out);
}

TEST(Serializer, IsShutAfterClose) {
  for (const OutputMode mode : {OUTPUT_XML, OUTPUT_CLI}) {
    Serializer out;
    PrintedBy([&] {
      out.Open(mode);
      out.Close();
    });
    ExpectShut(out);
  }
}

TEST(Serializer, CloseTwiceReturns12AndPrintsNothingTheSecondTime) {
  Serializer out;
  PrintedBy([&] { out.Open(OUTPUT_XML); });
  StatusCode status = kNoCallback;
  EXPECT_EQ(PrintedBy([&] { status = out.Close(); }), kXmlEnd);
  EXPECT_EQ(status, kSuccess);
  EXPECT_EQ(PrintedBy([&] { status = out.Close(); }), "");
  EXPECT_EQ(status, 12u);
}

TEST(Serializer, StoresAnUnknownModeAndReturns12) {
  for (const std::uint32_t mode : {0u, 3u, 4u, 0xFFFFFFFFu}) {
    Serializer out;
    PrintedBy([&] { out.Open(OUTPUT_XML); });
    StatusCode status = kSuccess;
    EXPECT_EQ(PrintedBy([&] { status = out.Open(static_cast<OutputMode>(mode)); }), "");
    EXPECT_EQ(status, 12u);
    ExpectShut(out);
  }
}

TEST(Serializer, OpensAgainAfterClose) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] {
              out.Open(OUTPUT_XML);
              out.Close();
              out.Open(OUTPUT_CLI);
              out.Close();
              out.Open(OUTPUT_XML);
              out.Close();
            }),
            kXmlHead + std::string(kXmlEnd) + kRuler + kRuler + kXmlHead + kXmlEnd);
}

TEST(Serializer, OpenInADocumentBeginsTheOtherForm) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] {
              out.Open(OUTPUT_XML);
              out.Open(OUTPUT_CLI);
              out.BeginStructure("S");
            }),
            kXmlHead + kRuler + "S:\n");
}

TEST(Serializer, BeginsAListOfEachKind) {
  ExpectPrints([](Serializer& out) { return out.BeginList(static_cast<ListKind>(0)); },
               "<list type=\"string\">\n", "");
  ExpectPrints([](Serializer& out) { return out.BeginList(static_cast<ListKind>(1)); },
               "<list type=\"int\">\n", "");
  ExpectPrints([](Serializer& out) { return out.BeginList(static_cast<ListKind>(2)); },
               "<list type=\"bool\">\n", "");
  ExpectPrints([](Serializer& out) { return out.BeginList(static_cast<ListKind>(3)); },
               "<list type=\"structure\">\n", "");
}

TEST(Serializer, RefusesAnUnknownListKindInXmlAlone) {
  for (const std::uint32_t kind : {4u, 5u, 0xFFFFFFFFu}) {
    const Operation begin = [kind](Serializer& out) { return out.BeginList(static_cast<ListKind>(kind)); };
    EXPECT_EQ(InDocument(OUTPUT_XML, begin), (Outcome{kBadMode, ""}));
    EXPECT_EQ(InDocument(OUTPUT_CLI, begin), (Outcome{kSuccess, ""}));
  }
}

TEST(Serializer, EndsAList) {
  ExpectPrints([](Serializer& out) { return out.EndList(); }, "</list>\n", "");
}

TEST(Serializer, WritesAStringListWithACommaAfterEveryElement) {
  ExpectPrints(
      [](Serializer& out) {
        return out.WriteStringList({"one", "two"});
      },
      "<string>one</string><string>two</string>", "one,two,\n");
}

TEST(Serializer, WritesAnIntList) {
  ExpectPrints(
      [](Serializer& out) {
        return out.WriteIntList({0, -1, 2147483647, std::numeric_limits<std::int32_t>::min()});
      },
      "<int>0</int><int>-1</int><int>2147483647</int><int>-2147483648</int>",
      "0,-1,2147483647,-2147483648,\n");
}

TEST(Serializer, WritesABoolList) {
  ExpectPrints(
      [](Serializer& out) {
        return out.WriteBoolList({true, false});
      },
      "<bool>true</bool><bool>false</bool>", "true,false,\n");
}

TEST(Serializer, WritesAnEmptyList) {
  ExpectPrints([](Serializer& out) { return out.WriteStringList({}); }, "", "\n");
  ExpectPrints([](Serializer& out) { return out.WriteIntList({}); }, "", "\n");
  ExpectPrints([](Serializer& out) { return out.WriteBoolList({}); }, "", "\n");
}

TEST(Serializer, WritesAStructure) {
  ExpectPrints([](Serializer& out) { return out.BeginStructure("AdapterInformation"); },
               "<structure typeName=\"AdapterInformation\">\n", "AdapterInformation:\n");
  ExpectPrints([](Serializer& out) { return out.EndStructure(); }, "</structure>\n", "");
}

TEST(Serializer, WritesAField) {
  ExpectPrints([](Serializer& out) { return out.BeginField("General Parameters"); },
               "<field name=\"General Parameters\">\n", "General Parameters: ");
  ExpectPrints([](Serializer& out) { return out.EndField(); }, "</field>\n", "");
}

TEST(Serializer, WritesAStringField) {
  ExpectPrints([](Serializer& out) { return out.WriteStringField("Message", "Success"); },
               "<field name=\"Message\">\n<string>Success</string></field>\n", "Message: Success\n");
}

TEST(Serializer, FramesAListItemAsAStructureWithOneStringField) {
  ExpectPrints(
      [](Serializer& out) {
        const Serializer::ItemFrame frame = out.FrameOfItem("PortList", "Ports");
        return out.WriteText(frame.before + "FC_%s<&>" + frame.after);
      },
      "<structure typeName=\"PortList\">\n"
      "<field name=\"Ports\">\n<string>FC_%s<&></string></field>\n"
      "</structure>\n",
      "PortList:\nPorts: FC_%s<&>\n");
}

TEST(Serializer, EscapesNothing) {
  ExpectPrints([](Serializer& out) { return out.WriteStringField("<&>", "\"a\" & <b> 'c' 50%s %n"); },
               "<field name=\"<&>\">\n<string>\"a\" & <b> 'c' 50%s %n</string></field>\n",
               "<&>: \"a\" & <b> 'c' 50%s %n\n");
  ExpectPrints([](Serializer& out) { return out.BeginStructure("%s%n"); }, "<structure typeName=\"%s%n\">\n",
               "%s%n:\n");
}

TEST(Serializer, WritesABoolField) {
  ExpectPrints([](Serializer& out) { return out.WriteBoolField("Reboot Required", true); },
               "<field name=\"Reboot Required\">\n<bool>true</bool></field>\n", "Reboot Required: true\n");
  ExpectPrints([](Serializer& out) { return out.WriteBoolField("Reboot Required", false); },
               "<field name=\"Reboot Required\">\n<bool>false</bool></field>\n", "Reboot Required: false\n");
}

struct IntCase {
  std::uint32_t kind;
  std::int64_t value;
  const char* xml;
  const char* cli;
};

TEST(Serializer, WritesAnIntFieldOfEachKind) {
  constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
  const IntCase cases[] = {
      {0, 5, "5", "5"},
      {0, -5, "-5", "-5"},
      {0, 0x100000007, "7", "7"},
      {0, 0xFFFFFFFF, "-1", "-1"},
      {1, 5, "5", "5"},
      {1, -1, "4294967295", "4294967295"},
      {1, 0x100000007, "7", "7"},
      {2, kMin, "-9223372036854775808", "-9223372036854775808"},
      {2, 0x100000007, "4294967303", "4294967303"},
      {3, -1, "18446744073709551615", "18446744073709551615"},
      {3, kMax, "9223372036854775807", "9223372036854775807"},
      {4, 255, "255", "ff"},
      {4, -1, "-1", "ffffffff"},
      {4, 0x80000000, "-2147483648", "80000000"},
      {4, 0xABCDEF, "11259375", "abcdef"},
      {4, 0, "0", "0"},
  };
  for (const IntCase& test : cases) {
    SCOPED_TRACE(testing::Message() << "kind " << test.kind << ", value " << test.value);
    ExpectPrints(
        [&](Serializer& out) { return out.WriteIntField("N", test.value, static_cast<IntKind>(test.kind)); },
        std::string("<field name=\"N\">\n<int>") + test.xml + "</int></field>\n",
        std::string("N: ") + test.cli + "\n");
  }
}

TEST(Serializer, WritesAnIntFieldOfAnUnknownKindWithoutAValue) {
  for (const std::uint32_t kind : {5u, 6u, 0xFFFFFFFFu}) {
    ExpectPrints([kind](Serializer& out) { return out.WriteIntField("N", 1, static_cast<IntKind>(kind)); },
                 "<field name=\"N\">\n</field>\n", "N: ");
  }
}

TEST(Serializer, WritesAFormattedText) {
  ExpectPrints([](Serializer& out) { return out.WriteFormatted(100, "%s=%d%%", "speed", 16); },
               "<string>speed=16%</string>", "speed=16%");
}

TEST(Serializer, CutsAFormattedTextAtItsLimit) {
  ExpectPrints([](Serializer& out) { return out.WriteFormatted(3, "abcdef"); }, "<string>abc</string>",
               "abc");
  ExpectPrints([](Serializer& out) { return out.WriteFormatted(6, "abcdef"); }, "<string>abcdef</string>",
               "abcdef");
  ExpectPrints([](Serializer& out) { return out.WriteFormatted(5, "abcdef"); }, "<string>abcde</string>",
               "abcde");
  ExpectPrints([](Serializer& out) { return out.WriteFormatted(0, "abcdef"); }, "<string></string>", "");
}

TEST(Serializer, WritesAnEmptyFormattedTextAsAnEmptyStringElement) {
  ExpectPrints([](Serializer& out) { return out.WriteFormatted(0, "%s", ""); }, "<string></string>", "");
}

TEST(Serializer, WritesALongFormattedTextWhole) {
  const std::string text(100000, 'x');
  ExpectPrints([&](Serializer& out) { return out.WriteFormatted(text.size(), "%s", text.c_str()); },
               "<string>" + text + "</string>", text);
}

TEST(Serializer, TakesTheFormattedTextItselfAsNoFormat) {
  ExpectPrints([](Serializer& out) { return out.WriteFormatted(100, "%s", "100%s %n %d"); },
               "<string>100%s %n %d</string>", "100%s %n %d");
}

// Alone among the operations, this one fails for want of memory before it looks at the mode.
TEST(Serializer, RefusesAFormattedTextThatFitsInNoMemory) {
  for (const std::size_t limit : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 2}) {
    const Operation write = [limit](Serializer& out) { return out.WriteFormatted(limit, "%s", "text"); };
    EXPECT_EQ(InDocument(OUTPUT_XML, write), (Outcome{kMemoryError, ""}));
    EXPECT_EQ(InDocument(OUTPUT_CLI, write), (Outcome{kMemoryError, ""}));
    EXPECT_EQ(InDocument(OUTPUT_NONE, write), (Outcome{kMemoryError, ""}));
  }
}

// A whole document, in both forms, by the same calls.
void WriteSample(Serializer& out, OutputMode mode) {
  out.Open(mode);
  out.BeginList(kStructureList);
  out.BeginStructure("AdapterList");
  out.WriteStringField("Adapters", "Adapter_ZX100_AB12345");
  out.EndStructure();
  out.EndList();
  out.Close();
}

TEST(Serializer, BreaksLinesAsTheOperationsDo) {
  Serializer out;
  EXPECT_EQ(PrintedBy([&] { WriteSample(out, OUTPUT_XML); }),
            "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n"
            "<list type=\"structure\">\n"
            "<structure typeName=\"AdapterList\">\n"
            "<field name=\"Adapters\">\n"
            "<string>Adapter_ZX100_AB12345</string></field>\n"
            "</structure>\n"
            "</list>\n"
            "</output>\n");
  EXPECT_EQ(PrintedBy([&] { WriteSample(out, OUTPUT_CLI); }),
            "****************************************************\n"
            "AdapterList:\n"
            "Adapters: Adapter_ZX100_AB12345\n"
            "****************************************************\n");
}

// What a document looks like when memory gives out after `operation`.
void ExpectEnded(OutputMode mode, const Operation& operation, const std::string& document) {
  EXPECT_EXIT(
      {
        dup2(STDERR_FILENO, STDOUT_FILENO);  // standard error alone can be checked
        Serializer out;
        out.Open(mode);
        operation(out);
        EndWithoutMemory();
      },
      testing::ExitedWithCode(0), testing::Eq(document + "zfcesxcli: out of memory\n"));
}

StatusCode BeginAReport(Serializer& out) {
  out.BeginStructure("S");
  out.WriteStringField("Message", "Success");
  out.BeginField("F");
  out.BeginList(kStructureList);
  out.BeginStructure("Past");
  out.EndStructure();
  out.BeginStructure("T");
  return out.BeginField("Data");
}

TEST(SerializerDeathTest, EndsWhatIsOpenWhenMemoryGivesOut) {
  ExpectEnded(OUTPUT_XML, &BeginAReport,
              kXmlHead +
                  std::string("<structure typeName=\"S\">\n"
                              "<field name=\"Message\">\n<string>Success</string></field>\n"
                              "<field name=\"F\">\n<list type=\"structure\">\n"
                              "<structure typeName=\"Past\">\n</structure>\n"
                              "<structure typeName=\"T\">\n<field name=\"Data\">\n"
                              "</field>\n</structure>\n</list>\n</field>\n</structure>\n") +
                  kXmlEnd);
  ExpectEnded(OUTPUT_CLI, &BeginAReport, kRuler + "S:\nMessage: Success\nF: Past:\nT:\nData: " + kRuler);
}

TEST(SerializerDeathTest, EndsNoDocumentThatIsNotOpen) {
  const Operation close = [](Serializer& out) { return out.Close(); };
  ExpectEnded(OUTPUT_XML, close, kXmlHead + std::string(kXmlEnd));
  ExpectEnded(OUTPUT_CLI, close, kRuler + kRuler);
  ExpectEnded(OUTPUT_NONE, &BeginAReport, "");
}

TEST(SerializerDeathTest, EndsTheDocumentThatWasOpenedLast) {
  ExpectEnded(
      OUTPUT_XML,
      [](Serializer& out) {
        out.BeginStructure("S");
        out.Open(OUTPUT_XML);
        return out.BeginField("F");
      },
      kXmlHead + std::string("<structure typeName=\"S\">\n") + kXmlHead + "<field name=\"F\">\n</field>\n" +
          kXmlEnd);
  ExpectEnded(
      OUTPUT_XML, [](Serializer& out) { return out.Open(OUTPUT_NONE); }, kXmlHead);
}

// An end without a beginning prints, as everywhere, and ends nothing else.
TEST(SerializerDeathTest, EndsWhatStrayEndsLeaveOpen) {
  ExpectEnded(
      OUTPUT_XML,
      [](Serializer& out) {
        out.BeginList(kStructureList);
        return out.EndField();
      },
      kXmlHead + std::string("<list type=\"structure\">\n</field>\n</list>\n") + kXmlEnd);
}

}  // namespace
